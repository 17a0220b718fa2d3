// The search held against GNU find: random filters over a made tree, and what is no plain file.
#include "scan/find_walk.h"

#include "platform/linux/scan/file_system.h"
#include "platform/linux/scan/read_ahead.h"
#include "support/program.h"
#include "support/recording_calls.h"
#include "support/test_scan.h"

namespace hl::test {
namespace {

constexpr std::int64_t kFindStarted = 1'700'000'000;

class FoundPaths final : public FindHost {
  public:
    std::set<std::string> paths;
    std::vector<std::string> errors;
    std::size_t most = 1'000'000;

    bool found(const FoundFile& file) override {
        paths.insert(std::string(file.folder).append(file.name));
        return paths.size() < most;
    }
    void notRead(std::string_view path, const std::string& reason) override {
        errors.push_back(std::string(path) + " " + reason);
    }
};

struct FindBench : TestScan {
    LinuxFileSystem machine{limitsOfThisMachine(true)};
    Services onDisk{store, texts, log, files, machine, pump, console, diagnostics, paths, numbers};
    ScanContext context{onDisk, state, options, combo, report, top, hardlinks, junctions, host, host};

    FindEnd find(const std::string& folder, const std::string& filter, FoundPaths& to,
                 FindDetail detail = FindDetail::kFacts) {
        auto read = FindFilter::read(filter, {});
        return findFiles(
            context, folder + "/",
            {.filter = std::get<FindFilter>(std::move(read)), .started = kFindStarted, .detail = detail}, to);
    }
};

/// Makes filters, each with the arguments of find that mean the same.
class FilterMaker {
  public:
    explicit FilterMaker(unsigned seed) : random_(seed) {}

    std::pair<std::string, std::string> make() {
        std::string filter, arguments;
        for (unsigned terms = pick(4); terms-- > 0;) {
            const auto [term, same] = makeTerm();
            const bool negated = pick(4) == 0;
            filter += (negated ? "!" : "") + term + " ";
            arguments += (negated ? " ! \\( " : " \\( ") + same + " \\)";
        }
        return {filter, arguments};
    }

  private:
    unsigned pick(unsigned below) { return static_cast<unsigned>(random_() % below); }
    template <std::size_t N>
    std::string oneOf(const char* const (&texts)[N]) {
        return texts[pick(N)];
    }

    std::pair<std::string, std::string> makeTerm() {
        switch (pick(5)) {
            case 0:
                return makeSize();
            case 1:
                return makeAge();
            case 2: {
                const std::string type = oneOf({"f", "l", "o"});
                const bool other = pick(2) == 0;
                const std::string is = type == "o" ? "! -type f ! -type l" : "-type " + type;
                return {"type" + std::string(other ? "!=" : "=") + type, other ? "! \\( " + is + " \\)" : is};
            }
            case 3: {
                const std::string uid = oneOf({"0", "65534", "12"});
                return {"owner=#" + uid, "-uid " + uid};
            }
            default:
                return makeName();
        }
    }

    std::pair<std::string, std::string> makeSize() {
        constexpr std::pair<const char*, std::int64_t> kUnits[] = {{"", 1}, {"B", 1}, {"k", 1024}};
        const std::string sign = oneOf({"=", "!=", ">", ">=", "<", "<="});
        const auto [unit, factor] = kUnits[pick(3)];
        const std::int64_t number = pick(3) == 0 ? pick(4) : pick(3000);
        const std::string bytes = std::to_string(number * factor) + "c";
        const std::string below = "-size -" + bytes, above = "-size +" + bytes, equal = "-size " + bytes;
        const std::string same = sign == "="    ? equal
                                 : sign == "!=" ? "! " + equal
                                 : sign == ">"  ? above
                                 : sign == "<"  ? below
                                 : sign == ">=" ? "! " + below
                                                : "! " + above;
        return {"size" + sign + std::to_string(number) + unit, same};
    }

    // Files are written at whole seconds, so "newer than a second before" is "at least as new".
    std::pair<std::string, std::string> makeAge() {
        constexpr std::pair<const char*, std::int64_t> kUnits[] = {
            {"h", 3600}, {"d", 86400}, {"w", 7 * 86400}, {"m", 30 * 86400}};
        const std::string sign = oneOf({">", ">=", "<", "<="});
        const auto [unit, factor] = kUnits[pick(4)];
        const std::int64_t number = pick(40);
        const std::int64_t moment = kFindStarted - number * factor;
        const auto newer = [](std::int64_t than) { return "-newermt @" + std::to_string(than); };
        const std::string same = sign == "<"    ? newer(moment)
                                 : sign == ">=" ? "! " + newer(moment)
                                 : sign == "<=" ? newer(moment - 1)
                                                : "! " + newer(moment - 1);
        return {"age" + sign + std::to_string(number) + unit, same};
    }

    std::pair<std::string, std::string> makeName() {
        std::string pattern, arguments;
        for (unsigned alternatives = 1 + pick(2); alternatives-- > 0;) {
            std::string one;
            for (unsigned parts = 1 + pick(4); parts-- > 0;)
                one += oneOf({"*", "?", "a", "B", "[a-c]", "[!x]", ".", "iso", "*"});
            pattern += (pattern.empty() ? "" : "|") + one;
            arguments += (arguments.empty() ? "" : " -o ") + ("-iname '" + one + "'");
        }
        return {"name=" + pattern, "\\( " + arguments + " \\)"};
    }

    std::mt19937 random_;
};

void makeOddTree(const std::string& root, unsigned seed) {
    std::mt19937 random(seed);
    const auto pick = [&](unsigned below) { return static_cast<unsigned>(random() % below); };
    const std::string letters = "abBcxX.1 \n\xFF";
    std::vector<std::string> folders = {root};
    for (int i = 0; i < 400; ++i) {
        std::string path = folders[pick(static_cast<unsigned>(folders.size()))] + "/";
        for (unsigned length = 1 + pick(4); length-- > 0;)
            path += letters[pick(static_cast<unsigned>(letters.size()))];
        path += std::to_string(i) + (pick(3) == 0 ? ".ISO" : "");
        const unsigned kind = pick(12);
        if (kind == 0) {
            makeFolder(path);
            folders.push_back(path);
            continue;
        }
        if (kind == 1) {
            must(::symlink(pick(2) == 0 ? root.c_str() : "nowhere", path.c_str()));
        } else if (kind == 2) {
            must(::mkfifo(path.c_str(), 0600));
        } else {
            makeFile(path, static_cast<off_t>(pick(2) == 0 ? pick(4) : pick(3'000'000)));
        }
        const timespec time{kFindStarted - static_cast<time_t>(pick(60 * 86400)) + 86400, 0};
        const timespec times[] = {time, time};
        must(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW));
        if (pick(3) == 0 && ::geteuid() == 0) must(::lchown(path.c_str(), pick(2) == 0 ? 12 : kNobody, 0));
    }
}

/// Returns the paths that find prints for the arguments; it knows all but folders.
std::set<std::string> pathsOfFind(const std::string& root, const std::string& arguments) {
    const std::string text = outputOf("LC_ALL=C find '" + root + "' ! -type d" + arguments + " -print0");
    std::set<std::string> paths;
    for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(rest.find('\0') + 1))
        paths.emplace(rest.substr(0, rest.find('\0')));
    return paths;
}

TEST(FindWalk, AgreesWithFindFor500RandomFilters) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    const TempDir tree;
    makeOddTree(tree.path(), seed);
    FindBench bench;
    FilterMaker filters(seed);
    std::size_t hits = 0;
    for (int i = 0; i < 500; ++i) {
        const auto [filter, arguments] = filters.make();
        const std::set<std::string> truth = pathsOfFind(tree.path(), arguments);
        hits += truth.size();
        for (const FindDetail detail : {FindDetail::kPath, FindDetail::kAll}) {
            FoundPaths found;
            ASSERT_EQ(bench.find(tree.path(), filter, found, detail), FindEnd::kDone);
            ASSERT_EQ(found.paths, truth) << filter << "\nfind" << arguments;
            ASSERT_EQ(found.errors, std::vector<std::string>());
        }
    }
    EXPECT_GT(hits, 5000U);
}

TEST(FindWalk, EndsWhenItIsStoppedOrEnoughIsFoundAndNamesWhatItCouldNotRead) {
    const TempDir tree;
    makeTree(tree.path(), {"a/1", "a/2", "b/3"});
    FindBench bench;
    FoundPaths two;
    two.most = 2;
    EXPECT_EQ(bench.find(tree.path(), "", two), FindEnd::kEnough);
    EXPECT_EQ(two.paths.size(), 2U);
    for (const auto how : {kCancelStop, kCancelEscape}) {
        bench.state.CancelState = how;
        FoundPaths none;
        EXPECT_EQ(bench.find(tree.path(), "", none), FindEnd::kStopped);
        EXPECT_TRUE(none.paths.empty());
    }
    bench.state.CancelState = kCancelNone;
    FoundPaths gone;
    EXPECT_EQ(bench.find(tree.path() + "/c", "", gone), FindEnd::kDone);
    ASSERT_EQ(gone.errors.size(), 1U);
    EXPECT_TRUE(has(gone.errors[0], tree.path() + "/c/ "));
}

struct RecordedFileSystem final : FileSystem {
    std::shared_ptr<RecordingCalls> calls;

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override {
        return std::make_unique<ReadAhead>(calls, std::string(source), options,
                                           ReadAheadLimits{.helpersWarm = 0, .helpersCold = 0}, wait);
    }
    Result<PathFacts> look(std::string_view /*path*/) override { return systemError(ENOENT); }
    Result<std::string> target(std::string_view /*path*/) override { return systemError(ENOENT); }
    bool countsBeforeCompression(std::string_view /*path*/) override { return false; }
};

TEST(FindWalk, LooksOnlyAtFilesWhoseNameMayBeWanted) {
    const TempDir tree;
    makeTree(tree.path(), {"a/1.iso", "a/2.txt", "b/3.txt", "4.ISO"});
    must(::symlink("a", (tree.path() + "/link.iso").c_str()));
    const std::tuple<const char*, FindDetail, int> cases[] = {{"name=*.iso", FindDetail::kFacts, 3},
                                                              {"name=*.iso", FindDetail::kPath, 0},
                                                              {"kind=\"disk image\"", FindDetail::kPath, 0},
                                                              {"type=l", FindDetail::kFacts, 1},
                                                              {"size>1", FindDetail::kPath, 5}};
    for (const auto& [filter, detail, looks] : cases) {
        const auto calls = std::make_shared<RecordingCalls>();
        RecordedFileSystem machine;
        machine.calls = calls;
        TestScan bench;
        const Services services{bench.store, bench.texts,   bench.log,         bench.files, machine,
                                bench.pump,  bench.console, bench.diagnostics, bench.paths, bench.numbers};
        ScanContext context{services,  bench.state,     bench.options,   bench.combo, bench.report,
                            bench.top, bench.hardlinks, bench.junctions, bench.host,  bench.host};
        FoundPaths found;
        auto read = FindFilter::read(filter, {});
        findFiles(context, tree.path() + "/",
                  {.filter = std::get<FindFilter>(std::move(read)), .detail = detail}, found);
        EXPECT_EQ(calls->looks, looks) << filter;
    }
}

}  // namespace
}  // namespace hl::test
