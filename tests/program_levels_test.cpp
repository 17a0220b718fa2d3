// A report of some levels, held against the report of all levels of the same tree: it is its lines down to
// that level, although the program keeps no rows for what lies deeper.
#include "support/program.h"

namespace hl::test {
namespace {

/// Returns how many folders the path in the line, which begins with `top`, lies below it; -1 if the line has
/// none or tells of no single folder.
int depthOf(const std::string& line, const std::string& top) {
    const std::size_t at = line.find(top);
    if (at == std::string::npos || line.starts_with("{\"k\":\"e")) return -1;
    const std::size_t from = at + top.size(), end = line.find('"', from);
    return static_cast<int>(std::count(
        line.begin() + static_cast<std::ptrdiff_t>(from),
        end == std::string::npos ? line.end() : line.begin() + static_cast<std::ptrdiff_t>(end), '/'));
}

/// Returns the lines down to a level, less what two runs need not have in common.
std::vector<std::string> linesDownTo(int levels, const std::string& report, const std::string& top) {
    static const std::regex kDiffers("\"(started|ended|levels)\":\\d+");
    std::vector<std::string> lines;
    std::istringstream all(report);
    for (std::string line; std::getline(all, line);)
        if (depthOf(line, top) <= levels) lines.push_back(std::regex_replace(line, kDiffers, ""));
    return lines;
}

struct ReportLevels : testing::Test {
    ReportLevels() { must(::chmod(dir.path().c_str(), 0755)); }
    ~ReportLevels() override {
        for (const std::string& path : shut) ::chmod(path.c_str(), 0755);
    }

    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    void fill(const std::string& path, int depth) {
        makeFolder(path);
        must(::chmod(path.c_str(), 0755));
        for (unsigned i = below(4); i > 0; --i) {
            files.push_back(path + "/f" + std::to_string(i) + (below(4) > 0 ? "" : ".o"));
            makeFile(files.back(), below(2) * below(100'000));
        }
        if (!files.empty() && below(4) == 0)
            must(::link(files[below(static_cast<unsigned>(files.size()))].c_str(), (path + "/name").c_str()));
        if (below(6) == 0) must(::symlink("..", (path + "/up").c_str()));
        if (depth == 0) return;
        for (unsigned i = below(4); i > 0; --i)
            fill(path + (below(3) > 0 ? "/d" : "/build") + std::to_string(i), depth - 1);
        if (depth < 5 && below(12) == 0) must(::chmod(shut.emplace_back(path).c_str(), 0));
    }
    std::string report(const std::string& levels, const std::string& format, const std::string& rule) {
        const Ended ended = program.run({levels, "--format=" + format, rule, "-", top}, becomeNobody);
        return ended.output + "status " + std::to_string(ended.status) + "\n" + ended.errors;
    }

    std::mt19937 random{11};
    const TempDir dir;
    const std::string top = dir.path() + "/t";
    std::vector<std::string> files, shut;
    const Program program;
};

TEST_F(ReportLevels, AreThoseOfTheReportOfAllLevels) {
    for (int tree = 0; tree < 8; ++tree) {
        for (const std::string& path : std::exchange(shut, {})) must(::chmod(path.c_str(), 0755));
        std::filesystem::remove_all(top);
        files.clear();
        fill(top, 6);
        std::vector<std::string> options;
        for (const char* name : {"NoHardlinks", "AddHardlinksOnlyOnce", "CreateListHardlink", "ReckonOnDisk"})
            options.push_back(std::string(name) + "=" + std::to_string(below(2)));
        program.setOptions(options);
        const char* const rules[] = {"--exclude=build*", "--exclude=*.o", "--exclude=nothing"};
        const std::string rule = rules[below(3)];
        for (const char* format : {"csv", "txt", "jsonl"}) {
            const std::string whole = report("-s", format, rule);
            for (const int levels : {1, 2, 3, 5})
                EXPECT_EQ(linesDownTo(levels, report("-s" + std::to_string(levels), format, rule), top),
                          linesDownTo(levels, whole, top))
                    << format << " " << levels << " " << rule << ", tree " << tree;
        }
    }
}

}  // namespace
}  // namespace hl::test
