// What has changed between two scans, held against a reckoning with the paths alone.
#include "scan/saved/compare.h"

#include "scan/saved/scan_writer.h"
#include "support/program.h"

namespace hl::test {
namespace {

struct Made {
    std::uint64_t inode = 0;
    std::int64_t created = 0;
    std::uint64_t bytes = 0;
    std::uint32_t flags = kScanCreated;
};
using Tree = std::map<std::string, Made>;  ///< By the path below the source, "" for the source.

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
}
std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}
bool liesBelow(const std::string& path, const std::string& folder) {
    return path != folder && (folder.empty() || path.starts_with(folder + "/"));
}

void write(const Tree& tree, const std::string& path, ScanWriter& writer, std::string& out) {
    std::vector<std::string> children;
    for (const auto& [each, made] : tree)
        if (!each.empty() && parentOf(each) == path) children.push_back(each);
    const Made& made = tree.at(path);
    ScanRecord record{.flags = made.flags, .inode = made.inode, .created = made.created};
    const std::string name = path.empty() ? "" : nameOf(path);
    record.name = name;
    record.children = children.size();
    if (made.bytes > 0) record.own = {1, made.bytes, 0};
    writer.folder(out, record);
    for (const std::string& child : children) write(tree, child, writer, out);
}

ScanFile fileOf(const Tree& tree) {
    SavedScan scan;
    scan.header = {.source = "/s", .device = 1, .complete = true};
    std::string bytes;
    ScanWriter writer(0);
    writer.begin(bytes, scanHeaderLine(scan.header));
    write(tree, "", writer, bytes);
    writer.end(bytes, scan);
    ScanReading reading = readScan(bytes);
    EXPECT_EQ(reading.problem, ScanProblem::kNone);
    return std::move(reading.file);
}

/// Each change as "kind earlier path > later path: bytes".
using Lines = std::multiset<std::string>;

Lines linesOf(const Tree& before, const Tree& after, ScanChanges* all = nullptr) {
    const FolderList was = FolderList::of(fileOf(before)), is = FolderList::of(fileOf(after));
    ScanChanges changes = compareScans(was, is);
    Lines lines;
    for (const FolderChange& change : changes.folders) {
        const char* kinds[] = {"same ", "renamed ", "new ", "gone "};
        std::string line = kinds[static_cast<int>(change.kind)];
        if (change.before != FolderList::kNone) line += was.path(change.before);
        line += ">";
        if (change.kind != FolderChange::Kind::kGone) line += is.path(change.after);
        lines.insert(line + ": " + std::to_string(change.bytes()));
    }
    if (all != nullptr) *all = std::move(changes);
    return lines;
}

Lines mirrored(const Lines& lines) {
    Lines others;
    for (const std::string& line : lines) {
        std::string kind = line.substr(0, line.find(' '));
        kind = kind == "new" ? "gone" : kind == "gone" ? "new" : kind;
        const std::size_t from = line.find(' ') + 1, arrow = line.find('>'), colon = line.rfind(": ");
        others.insert(kind + " " + line.substr(arrow + 1, colon - arrow - 1) + ">" +
                      line.substr(from, arrow - from) + ": " +
                      std::to_string(-std::stoll(line.substr(colon + 2))));
    }
    return others;
}

/// Makes trees, and edits them as people do.
class Editor {
  public:
    explicit Editor(unsigned seed) : random_(seed) {}

    Tree tree() {
        Tree made = {{"", fresh()}};
        for (unsigned i = below(25); i > 0; --i) add(made);
        return made;
    }
    void edit(Tree& tree) {
        const std::string path = anyOf(tree);
        switch (below(6)) {
            case 0:
                return add(tree);
            case 1:
                tree[path].bytes = below(1000);
                return;
            case 2:
                return remove(tree, path);
            case 3: {  // The inode is used again.
                const std::uint64_t inode = tree[path].inode;
                remove(tree, path);
                add(tree, inode);
                return;
            }
            default:
                return move(tree, path);
        }
    }

  private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    Made fresh(std::uint64_t inode = 0) {
        ++made_;
        return {.inode = inode != 0 ? inode : made_ + 1000,
                .created = static_cast<std::int64_t>(made_),
                .bytes = below(500)};
    }
    std::string anyOf(const Tree& tree) {
        return std::next(tree.begin(), below(static_cast<unsigned>(tree.size())))->first;
    }
    static std::string join(const std::string& parent, const std::string& name) {
        return parent.empty() ? name : parent + "/" + name;
    }
    void add(Tree& tree, std::uint64_t inode = 0) {
        const std::string path = join(anyOf(tree), std::string(1, static_cast<char>('a' + below(8))));
        tree.emplace(path, fresh(inode));
    }
    static void remove(Tree& tree, const std::string& path) {
        if (path.empty()) return;
        std::erase_if(tree,
                      [&](const auto& each) { return each.first == path || liesBelow(each.first, path); });
    }
    void move(Tree& tree, const std::string& path) {
        const std::string into = anyOf(tree),
                          to = join(into, std::string(1, static_cast<char>('a' + below(8))));
        if (path.empty() || into == path || liesBelow(into, path) || tree.contains(to)) return;
        Tree moved;
        for (const auto& [each, made] : tree)
            if (each == path || liesBelow(each, path)) moved[to + each.substr(path.size())] = made;
        remove(tree, path);
        tree.merge(moved);
    }

    std::mt19937_64 random_;
    std::uint64_t made_ = 0;
};

/// Which folder of the earlier tree each path of the later one is, by paths and identities alone.
std::map<std::string, std::string> samePaths(const Tree& before, const Tree& after) {
    std::map<std::string, std::string> same;
    std::set<std::string> taken;
    const auto pair = [&](const std::string& was, const std::string& is) {
        if (taken.contains(was) || same.contains(is)) return false;
        taken.insert(was);
        same[is] = was;
        return true;
    };
    for (const auto& [path, made] : after)
        if (before.contains(path)) pair(path, path);
    for (const auto& [path, made] : after)
        for (const auto& [was, earlier] : before)
            if (earlier.inode == made.inode && earlier.created == made.created) pair(was, path);
    for (bool found = true; found;) {
        found = false;
        for (const auto& [path, made] : after) {
            const auto parent = same.find(parentOf(path));
            if (path.empty() || parent == same.end()) continue;
            const std::string was = (parent->second.empty() ? "" : parent->second + "/") + nameOf(path);
            found |= before.contains(was) && pair(was, path);
        }
    }
    return same;
}

Lines reckoned(const Tree& before, const Tree& after) {
    const auto same = samePaths(before, after);
    std::map<std::string, std::string> back;
    for (const auto& [is, was] : same) back[was] = is;
    Lines lines;
    const auto trees = [&](const Tree& tree, const std::map<std::string, std::string>& known, bool isNew) {
        for (const auto& [path, made] : tree) {
            if (known.contains(path) || !known.contains(parentOf(path))) continue;
            std::int64_t bytes = 0;
            for (const auto& [each, below] : tree) {
                bool counts = each == path || liesBelow(each, path);
                for (std::string up = each; counts && up != path; up = parentOf(up))
                    counts = !known.contains(up);
                if (counts) bytes += static_cast<std::int64_t>(below.bytes);
            }
            lines.insert(isNew ? "new >" + path + ": " + std::to_string(bytes)
                               : "gone " + path + ">: " + std::to_string(-bytes));
        }
    };
    for (const auto& [is, was] : same) {
        const std::int64_t change =
            static_cast<std::int64_t>(after.at(is).bytes) - static_cast<std::int64_t>(before.at(was).bytes);
        const auto parent = same.find(parentOf(is));
        const bool cameAlong =
            nameOf(is) == nameOf(was) && parent != same.end() && parent->second == parentOf(was);
        const bool alone = !is.empty() && is != was && !cameAlong;
        if (change != 0 || alone)
            lines.insert((alone ? "renamed " : "same ") + was + ">" + is + ": " + std::to_string(change));
    }
    trees(after, same, true);
    trees(before, back, false);
    return lines;
}

TEST(CompareScans, FindsWhatAnyEditsHaveDone) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        Editor editor(seed);
        const Tree before = editor.tree();
        Tree after = before;
        for (unsigned edits = seed % 12; edits > 0; --edits) editor.edit(after);
        ScanChanges changes;
        const Lines lines = linesOf(before, after, &changes);
        ASSERT_EQ(lines, reckoned(before, after)) << seed;
        ASSERT_EQ(linesOf(after, before), mirrored(lines)) << seed;
        std::uint64_t was = 0, is = 0;
        for (const auto& [path, made] : before) was += made.bytes;
        for (const auto& [path, made] : after) is += made.bytes;
        EXPECT_EQ(changes.was.bytes, was);
        EXPECT_EQ(changes.is.bytes, is);
        std::int64_t sum = 0;
        for (const FolderChange& change : changes.folders) sum += change.bytes();
        EXPECT_EQ(sum, static_cast<std::int64_t>(is) - static_cast<std::int64_t>(was)) << seed;
        // What the rows of the report show adds up to the same.
        for (const ScanChanges::Own& own : changes.own) was -= own.was, is -= own.is;
        for (const FolderChange& change : changes.folders)
            if (change.kind == FolderChange::Kind::kGone) was -= change.was.bytes;
        EXPECT_EQ(was, 0U) << seed;
        EXPECT_EQ(is, 0U) << seed;
    }
}

TEST(CompareScans, WhatWasNotReadHasNotGrown) {
    const Made plain{.inode = 1, .bytes = 10};
    for (const std::uint32_t unread : {kScanError, kScanStopped, kScanLeftOut, kScanSnapshot, kScanMount}) {
        Made shut{.inode = 2, .flags = kScanCreated | unread};
        const Tree before = {{"", plain}, {"a", shut}, {"b", {.inode = 3, .bytes = 7}}};
        const Tree after = {{"", plain},
                            {"a", {.inode = 2, .bytes = 500}},
                            {"a/x", {.inode = 4, .bytes = 90}},
                            {"b", {.inode = 3, .bytes = 8}}};
        ScanChanges changes;
        EXPECT_EQ(linesOf(before, after, &changes), Lines{"same b>b: 1"}) << unread;
        EXPECT_EQ(changes.is.bytes, 18U);
        EXPECT_EQ(linesOf(after, before), Lines{"same b>b: -1"}) << unread;
    }
}

TEST(CompareScans, WithoutATimeARenamedFolderHasItsOldFiles) {
    const Made source{.inode = 1, .bytes = 10};
    const std::tuple<Made, Made, const char*> cases[] = {
        {{.inode = 5, .bytes = 9, .flags = 0}, {.inode = 5, .bytes = 9, .flags = 0}, "renamed a>b: 0"},
        {{.inode = 5, .bytes = 9, .flags = 0}, {.inode = 5, .bytes = 8, .flags = 0}, "new >b: 8"},
        {{.inode = 5, .bytes = 0, .flags = 0}, {.inode = 5, .bytes = 0, .flags = 0}, "new >b: 0"},
        {{.inode = 5, .created = 1, .bytes = 9}, {.inode = 5, .bytes = 9, .flags = 0}, "new >b: 9"},
        {{.inode = 5, .created = 1, .bytes = 9}, {.inode = 5, .created = 2, .bytes = 9}, "new >b: 9"},
        {{.inode = 0, .created = 1, .bytes = 9}, {.inode = 0, .created = 1, .bytes = 9}, "new >b: 9"}};
    for (const auto& [was, is, line] : cases)
        EXPECT_EQ(linesOf({{"", source}, {"a", was}}, {{"", source}, {"b", is}}).count(line), 1U) << line;
}

// --- the program

struct GrowthOfTheProgram : testing::Test {
    GrowthOfTheProgram() {
        makeTree(top, {"a/", "same/"});
        makeFile(top + "/a/x", 1000);
        makeFile(top + "/same/y", 50'000);
        EXPECT_EQ(program.run({"-s", old, top}).status, 0);
        makeFile(top + "/a/more", 4000);
        makeTree(top, {"made/", "made/\"deep\"/"});
        makeFile(top + "/made/\"deep\"/z", 300);
        fs::rename(top + "/same", top + "/moved");
    }
    Ended compare(std::vector<std::string> more) const {
        std::vector<std::string> line = {"-s", "--compare", old};
        line.insert(line.end(), more.begin(), more.end());
        return program.run(line);
    }

    const TempDir dir;
    const std::string top = dir.path();
    const Program program;
    const std::string old = program.home("old.hlscan");
};

TEST_F(GrowthOfTheProgram, NamesFoldersThatGrewNewTreesAndTheWhole) {
    const Ended csv = compare({"-", top});
    EXPECT_EQ(
        csv.output,
        "\"Path\",\"State\",\"Before (Bytes)\",\"Now (Bytes)\",\"Change (Bytes)\",\"Earlier path\"\r\n\"" +
            top + "\",\"source\",51000,55300,4300,\"\"\r\n\"" + top +
            "/a\",\"grown\",1000,5000,4000,\"\"\r\n\"" + top + "/made\",\"new\",0,300,300,\"\"\r\n");
    EXPECT_EQ(csv.errors, "");
    EXPECT_EQ(csv.status, 0);
    const Ended lines = compare({"--format=jsonl", "-", top});
    EXPECT_EQ(
        lines.output,
        "{\"k\":\"g\",\"path\":\"" + top +
            "/a\",\"state\":\"grown\",\"before\":1000,\"now\":5000,\"change\":4000}\n{\"k\":\"g\",\"path\":"
            "\"" +
            top +
            "/made\",\"state\":\"new\",\"before\":0,\"now\":300,\"change\":300}\n{\"k\":\"t\",\"path\":\"" +
            top + "\",\"before\":51000,\"now\":55300,\"change\":4300,\"complete\":true}\n");
    EXPECT_TRUE(has(compare({"--format=txt", "-", top}).output,
                    "4000                1000                5000  grown    " + top + "/a\r\n"));
}

TEST_F(GrowthOfTheProgram, EndsWithAStatusOfItsOwnIfAnythingGrewMore) {
    const std::pair<const char*, int> cases[] = {{"4300", 0}, {"4299", 5}, {"4.2K", 0}, {"4K", 5},
                                                 {"1T", 0},   {"1X", 2},   {"", 2}};
    for (const auto& [grown, status] : cases)
        EXPECT_EQ(compare({"--grown", grown, "-", top}).status, status) << grown;
    makeTree(top, {"shut/"});
    must(::chmod(top.c_str(), 0755));
    must(::chmod(program.home("old.hlscan").c_str(), 0644));
    must(::chmod((top + "/shut").c_str(), 0));
    EXPECT_EQ(program.run({"-s", "--compare", old, "--grown=1", "-", top}, becomeNobody).status, 1);
    must(::chmod((top + "/shut").c_str(), 0700));
}

TEST_F(GrowthOfTheProgram, RefusesWhatCannotBeCompared) {
    writeFile(program.home("bad"), "HLSCAN9\n");
    const Ended bad = program.run({"-s", "--compare", program.home("bad"), "-", top});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.output, "");
    EXPECT_TRUE(
        has(bad.errors, program.home("bad") + " kann nicht geöffnet werden: von einer späteren Version"));
    const Ended other = compare({"--exclude=*.o", "-", top});
    EXPECT_EQ(other.status, 1);
    EXPECT_TRUE(has(other.errors, "(rules)")) << other.errors;
    const std::vector<std::vector<std::string>> useless = {
        {"-", top, top},          {"-", top, "--find=a"},      {"-", top, "--balance"},
        {"/x.hlscan", top},       {"--format=ncdu", "-", top}, {"-", top, "-d1"},
        {"-", top, "--compare=x"}};
    for (const auto& line : useless) EXPECT_EQ(compare(line).status, 2) << testing::PrintToString(line);
}

TEST_F(GrowthOfTheProgram, AnOpenedScanMakesTheReportOfThatTime) {
    const Ended report = program.run({"-s", "--open", old, "-"});
    EXPECT_EQ(report.status, 0);
    EXPECT_TRUE(has(report.output, "\"" + top + "/same\",\"50000\",1,0\r\n")) << report.output;
    const std::string again = program.home("again.hlscan");
    EXPECT_EQ(program.run({"-s", "--open", old, again}).status, 0);
    EXPECT_EQ(contentOf(again), contentOf(old));
    const std::string piped = outputOf("HARBORLANTERN_HOME=" + program.home("") + " " +
                                       HARBORLANTERN_PROGRAM " -s --open - - < " + old);
    EXPECT_EQ(piped, report.output);
}

}  // namespace
}  // namespace hl::test
