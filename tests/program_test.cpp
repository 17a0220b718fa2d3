// Tests the program from outside: what a report says of a tree, and how a run ends.

#include "support/program.h"
#include "base/text.h"
#include "support/kinds.h"
#include "support/mounted.h"

namespace hl::test {
namespace {

struct Numbers {
    std::uint64_t size = 0;
    int files = 0, folders = 0;
    bool operator==(const Numbers&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Numbers& n) {
    return out << n.size << " bytes, " << n.files << " files, " << n.folders << " folders";
}
using Rows = std::map<std::string, Numbers>;

/// Reads a CSV report with the delimiter ",". Paths may hold anything, so a row ends at the first line end
/// behind `","digits",digits,digits`. The report ends at the first thing that is no row.
Rows readReport(const std::string& path) {
    static const std::regex kRow("\"([\\s\\S]*?)\",\"(\\d+)\",(\\d+),(\\d+)\r\n");
    const std::string text = contentOf(path);
    Rows rows;
    const std::size_t head = text.find("\r\n");
    if (head == std::string::npos) return rows;
    const auto begin = text.begin() + static_cast<std::ptrdiff_t>(head + 2);
    for (std::sregex_iterator row(begin, text.end(), kRow, std::regex_constants::match_continuous), end;
         row != end; ++row)
        rows[(*row)[1]] = {std::stoull((*row)[2]), std::stoi((*row)[3]), std::stoi((*row)[4])};
    return rows;
}

/// Makes a random tree and remembers the right result.
class TreeMaker {
  public:
    explicit TreeMaker(unsigned seed) : random_(seed) {}

    Numbers make(const std::string& path, int depth, Rows& truth) {
        Numbers sum, direct;
        const unsigned folders = depth > 4 ? 0 : pick(5);
        for (unsigned count = pick(9); direct.files < static_cast<int>(count); ++direct.files)
            direct.size += makeEntry(nameIn(path) + "~" + std::to_string(direct.files));
        for (unsigned i = 0; i < folders; ++i) {
            const std::string child = nameIn(path) + std::to_string(i);
            makeFolder(child);
            const Numbers below = make(child, depth + 1, truth);
            sum = {sum.size + below.size, sum.files + below.files, sum.folders + below.folders + 1};
        }
        if (pick(4) == 0) {  // A link to a folder counts as an empty folder.
            must(::symlink("..", (path + "/up").c_str()));
            truth[path + "/up"] = {};
            ++sum.folders;
        }
        if (sum.folders > 0 && direct.files > 0) truth[path + "/[Dateien]"] = direct;
        return truth[path] = {sum.size + direct.size, sum.files + direct.files, sum.folders};
    }

  private:
    unsigned pick(unsigned below) { return static_cast<unsigned>(random_() % below); }

    /// Returns the path of an odd name, to which the caller adds a number that no other name there has.
    std::string nameIn(const std::string& folder) {
        static constexpr const char* kNames[] = {"plain",     "größe ",   " lead",
                                                 "new\nline", "tab\t",    "say \"hi\"",
                                                 "-s",        "\x1b[31m", "\xE2\x80\xAEright",
                                                 "%1",        "a,b;c"};
        return folder + "/" + kNames[pick(std::size(kNames))];
    }
    std::uint64_t makeEntry(const std::string& path) {
        const unsigned kind = pick(8);
        if (kind == 0) return must(::symlink("gone/far", path.c_str())), 8;
        if (kind == 1) return must(::mkfifo(path.c_str(), 0600)), 0;
        if (kind == 2 && ::link(lastFile_.c_str(), path.c_str()) == 0) return lastSize_;
        lastFile_ = path;
        lastSize_ = pick(100'000);
        makeFile(path, static_cast<off_t>(lastSize_));
        return lastSize_;
    }

    std::mt19937 random_;
    std::string lastFile_;
    std::uint64_t lastSize_ = 0;
};

struct ProgramRun : testing::Test {
    void oneFile() const { makeFile(dir.path() + "/file", 5); }

    const TempDir dir;
    const Program program;
    const std::string report = program.home("r.csv");
};

TEST_F(ProgramRun, AgreesWithTheTruthToTheByteAndWithItselfWhoeverReads) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        const TempDir tree;
        Rows truth;
        TreeMaker(seed).make(tree.path(), 0, truth);
        const std::string on = program.home("on.csv"), off = program.home("off.csv");
        EXPECT_EQ(program.run({"-s", on, tree.path()}).status, 0);
        EXPECT_EQ(
            program.run({"-s", off, tree.path()}, [] { setenv("HARBORLANTERN_READ_AHEAD", "0", 1); }).status,
            0);
        EXPECT_EQ(readReport(on), truth);
        EXPECT_EQ(contentOf(on), contentOf(off));
    }
}

TEST_F(ProgramRun, CountsEveryKindOfEntryAndEntersNoOtherMount) {
    makeSocket(dir.path() + "/socket");
    must(::mkfifo((dir.path() + "/pipe").c_str(), 0600));
    makeFile(dir.path() + "/file", 77);
    makeFile(dir.path() + "/" + std::string(255, 'x'), 1);
    EXPECT_EQ(program.run({"-s", report, dir.path()}).status, 0);
    EXPECT_EQ(readReport(report)[dir.path()], (Numbers{78, 4, 0}));
    // If /dev/shm is a mount of its own, it is an empty row.
    if (inodeOf("/dev/shm") == 0 || factsOf("/dev/shm").st_dev == factsOf("/dev").st_dev) return;
    const TempDir inside("/dev/shm");
    makeFile(inside.path() + "/file", 5);
    program.run({"-s1", report, "/dev"});
    EXPECT_EQ(readReport(report).at("/dev/shm"), Numbers());
}

// Otherwise two links upwards would be followed in more ways than anybody can wait for.
TEST_F(ProgramRun, EndsACircleOfLinksAndMountsWhereItComesBackToAFolderAbove) {
    const std::string& top = dir.path();
    makeTree(top, {"a/file", "a/b/mount/", "c/file"});
    must(::symlink("../..", (top + "/a/b/up").c_str()));
    must(::symlink("..", (top + "/a/up").c_str()));
    must(::symlink("../../c", (top + "/a/b/beside").c_str()));
    const Mounted bound(top + "/a", top + "/a/b/mount", nullptr, MS_BIND);
    program.setOptions({"ScanHardlinks=1"});
    const Ended ended = program.run({"-s", report, top});
    EXPECT_EQ(ended.status, 1);
    EXPECT_FALSE(has(ended.errors, "/c"));
    EXPECT_EQ(std::ranges::count(ended.errors, '\n'), bound.done() ? 3 : 2) << ended.errors;
    EXPECT_TRUE(has(ended.errors, "/a/b/up/: #40 - "));
    EXPECT_EQ(readReport(report)[top], (Numbers{3, 3, 7}));

    // Below a link the path leads through folders that are not above the source, down to the source again.
    const std::string deep = dir.path() + "/deep";
    makeTree(deep, {"1/2/3/4/5/6/file"});
    for (const auto& [name, target] : {std::pair{"up1", ".."}, {"up2", "../.."}, {"up3", "../../.."}})
        must(::symlink(target, (deep + "/1/2/3/4/5/6/" + name).c_str()));
    EXPECT_EQ(program.run({"-s", report, deep + "/1/2/3/4/5/6"}).status, 1);
    EXPECT_EQ(readReport(report)[deep + "/1/2/3/4/5/6"].size, 1) << "each way down ends at the source";
}

TEST_F(ProgramRun, CountsFilesOfEqualNumbersOnTwoDisksEachOnce) {
    program.setOptions({"ScanHardlinks=1", "AddHardlinksOnlyOnce=1"});
    const Mounted one("none", dir.path() + "/one", "tmpfs"), two("none", dir.path() + "/two", "tmpfs");
    if (!one.done() || !two.done()) GTEST_SKIP() << "needs root, to mount two disks";
    for (const char* disk : {"/one", "/two"}) {
        makeFile(dir.path() + disk + "/file", 1000);
        must(::link((dir.path() + disk + "/file").c_str(), (dir.path() + disk + "/again").c_str()));
    }
    EXPECT_EQ(program.run({"-s", report, dir.path()}).status, 0);
    EXPECT_EQ(readReport(report)[dir.path()], (Numbers{2000, 4, 2}));
}

TEST_F(ProgramRun, ReadsAChainOfAHundredThousandFoldersWithFewDescriptors) {
    const TempDir tree("/dev/shm");
    constexpr int kDepth = 100'000;
    makeChain(tree.path(), kDepth, "d");
    const auto few = [] {
        const struct rlimit limit = {64, 64};
        must(::setrlimit(RLIMIT_NOFILE, &limit));
    };
    EXPECT_EQ(program.run({"-s2", report, tree.path()}, few).status, 0);
    EXPECT_EQ(readReport(report)[tree.path()], (Numbers{kDepth, kDepth, kDepth}));
}

TEST_F(ProgramRun, NamesWhatItCouldNotReadAndReadsTheRest) {
    must(::chmod(dir.path().c_str(), 0755));
    makeTree(dir.path(), {"denied/file", "listable/file", "open/file"});
    must(::chmod((dir.path() + "/denied").c_str(), 0));
    must(::chmod((dir.path() + "/listable").c_str(), 0444));
    const Ended ended = program.run({"-s", report, dir.path()}, becomeNobody);
    EXPECT_EQ(ended.status, 1);
    for (const std::string& denied : {dir.path() + "/denied", dir.path() + "/listable"}) {
        ::chmod(denied.c_str(), 0700);
        EXPECT_TRUE(has(ended.errors, denied + "/: #13 - "));
    }
    Rows rows = readReport(report);
    EXPECT_EQ(rows[dir.path() + "/denied"], Numbers());
    EXPECT_EQ(rows[dir.path() + "/listable"], (Numbers{0, 1, 0}));
    EXPECT_EQ(rows[dir.path()], (Numbers{1, 2, 3}));
    EXPECT_TRUE(has(contentOf(program.home("Harborlantern.log")), "Zugriffsfehler: 2"));
}

TEST_F(ProgramRun, KeepsAnOlderReportWhenTheNewOneCannotBeWritten) {
    oneFile();
    const std::string old = dir.path() + "/old.csv";
    writeFile(old, "precious");
    // A limit of the file size plays a disk that becomes full during the writing.
    const auto full = [] {
        const struct rlimit limit = {16, 16};
        ::signal(SIGXFSZ, SIG_IGN);
        must(::setrlimit(RLIMIT_FSIZE, &limit));
    };
    EXPECT_EQ(program.run({"-s", old, dir.path()}, full).status, 1);
    for (const std::string& path : {std::string("/dev/full"), dir.path() + "/none/r.csv", dir.path()}) {
        const Ended ended = program.run({"-s", path, dir.path()});
        EXPECT_EQ(ended.status, 1) << path;
        EXPECT_TRUE(has(ended.errors, path));
    }
    EXPECT_EQ(contentOf(old), "precious");
    EXPECT_EQ(program.run({"-s", old, dir.path()}).status, 0);
    EXPECT_NE(contentOf(old), "precious");
    EXPECT_EQ(namesIn(dir.path()), (std::set<std::string>{"file", "old.csv"})) << "nothing half-written";
}

TEST_F(ProgramRun, EndsWithTheStatusThatItsUsersScriptsCount) {
    oneFile();
    const std::tuple<std::vector<std::string>, int, std::string> cases[] = {
        {{"-s", report, dir.path()}, 0, ""},
        {{"-s0", "-d3", report, dir.path()}, 0, ""},
        {{"-s3-d1", report, dir.path()}, 0, ""},
        {{"-s", "-", dir.path()}, 0, ""},
        {{"-s", report, dir.path(), "/does/not/exist"}, 1, "Die Quelle /does/not/exist gibt es nicht.\n"},
        {{"-s", report, dir.path() + "/file"}, 1, "#20 - "},
        {{"-s", report, "/does/not/exist"}, 1, report + " wurde nicht geschrieben: es wurde nichts"},
        {{"-s", dir.path() + "/none/r.csv", dir.path()}, 1, "geschrieben: No such file or directory\n"},
        {{"-s", report}, 2, "-s"},
        {{"-s", "-"}, 2, "-s"},
        {{"-s", "--format=pdf", report, dir.path()}, 2, "--format=pdf"},
        {{"--format=txt", report, dir.path()}, 2, "-s"},
        {{"-s"}, 2, "-s"},
        {{"-x", report, dir.path()}, 2, "-x"},
        {{"-s", report, ""}, 2, "leer"},
        {{"--help"}, 0, ""},
        {{"--version"}, 0, ""},
        {{dir.path()}, 3, "-s"}};
    for (const auto& [arguments, status, says] : cases) {
        const Ended ended = program.run(arguments);
        const std::string line = testing::PrintToString(arguments);
        EXPECT_EQ(ended.status, status) << line << ended.errors;
        EXPECT_EQ(ended.errors.empty(), says.empty()) << line << ended.errors;
        EXPECT_TRUE(has(ended.errors, says)) << line;
        EXPECT_FALSE(has(ended.errors, "error.log")) << line;
    }
    EXPECT_FALSE(fs::exists(program.home("error.log"))) << "no error of the program itself";
}

TEST_F(ProgramRun, WritesItsReportToStandardOutputAndInTheFormatThatIsAskedFor) {
    makeChain(dir.path(), 5, "d");
    const auto inFolder = [&] { must(::chdir(dir.path().c_str())); };
    const std::string txt = "Größe (Bytes)", csv = "\"Pfad\"", file = dir.path() + "/-";
    const std::tuple<std::vector<std::string>, std::string, int> cases[] = {
        {{"-s", "-", "."}, csv + ",", 6},
        {{"-s3-d1", "-", "."}, csv + ";", 4},  // These are the source and three levels below it.
        {{"-s1", "--format=txt", "-d2", "-", "."}, txt + "\t", 2},
        {{"-s", "--", "-", "."}, csv, 6},
        {{"-s", "/dev/stdout", "."}, csv, 6}};
    for (const auto& [arguments, head, rows] : cases) {
        const Ended ended = program.run(arguments, inFolder);
        EXPECT_TRUE(ended.output.starts_with(head)) << testing::PrintToString(arguments) << ended.output;
        EXPECT_EQ(std::ranges::count(ended.output, '\n') - 1, rows * 2 - 1) << ended.output;
        EXPECT_TRUE(ended.status == 0 && ended.errors.empty()) << ended.errors;
        EXPECT_FALSE(fs::exists(file));
    }
    EXPECT_EQ(program.run({"-s", "--format=txt", "./-", "."}, inFolder).output, "");
    EXPECT_TRUE(contentOf(file).starts_with(txt));
    EXPECT_EQ(program.run({"-s", "--format=csv", "r.txt", "."}, inFolder).status, 0);
    EXPECT_TRUE(contentOf(dir.path() + "/r.txt").starts_with(csv));
}

TEST_F(ProgramRun, EndsWithoutAWordWhenNobodyReadsItsOutputAnyMore) {
    oneFile();
    const Ended ended = program.run({"-s", "-", dir.path()}, [] {
        int ends[2];
        must(::pipe(ends));
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
    });
    EXPECT_EQ(ended.status, 1) << "the report is not whole";
    EXPECT_EQ(ended.errors, "");
    EXPECT_FALSE(fs::exists(program.home("error.log")));
}

TEST_F(ProgramRun, WritesNoSettingsUnlessItReadsOrShowsSomething) {
    const std::string settings = program.home("Harborlantern.ini");
    const std::vector<std::string> lines[] = {{"--version"}, {"--help"},     {"-x"},
                                              {"-s"},        {"-s", report}, {dir.path()}};
    for (const auto& line : lines) {
        fs::remove(settings);
        program.run(line);
        EXPECT_FALSE(fs::exists(settings)) << testing::PrintToString(line);
    }
    program.run({"-s", report, dir.path()});
    EXPECT_TRUE(fs::exists(settings)) << "a run keeps the language that was found";
}

TEST_F(ProgramRun, ReadsSourcesByAnyNameGivenInAnyWay) {
    for (const std::string name :
         {"-s", "-d3 x", "trailing ", " ", "say \"hi\"", "\xFF\xFE", "new\nline", ".hidden", "%1"}) {
        const std::string folder = dir.path() + "/" + name;
        makeFolder(folder);
        makeFile(folder + "/f", 9);
        for (const std::string& source : {folder, folder + "/", folder + "//", "./" + name, ".///" + name,
                                          folder + "/gone/..", "gone/.././" + name}) {
            const auto inFolder = [&] { must(::chdir(dir.path().c_str())); };
            const Ended ended = program.run({"-s", report, source}, inFolder);
            EXPECT_EQ(ended.status, 0) << source << ended.errors;
            const Rows rows = readReport(report);
            ASSERT_EQ(rows.size(), 1U) << source;
            EXPECT_EQ(rows.begin()->first, decodable(folder)) << source;
            EXPECT_EQ(rows.begin()->second, (Numbers{9, 1, 0})) << source;
        }
    }
}

TEST_F(ProgramRun, GoesOnWithSettingsThatMakeNoSense) {
    oneFile();
    writeFile(program.home("Harborlantern.ini"), std::string("\0\xFF[[[\n=\nOptionen]\r[Optionen\nx", 29));
    EXPECT_EQ(program.run({"-s", report, dir.path()}).status, 0);
    const std::string log = program.home("error.log");
    for (const auto& [settings, named] :
         {std::pair<std::string, std::string>{
              "[Allgemein]\r\nLang=7\r\n[Optionen]\r\nFileSizeFormat=many\r\n", "FileSizeFormat=many"},
          {"[Allgemein]\r\nLang=abc\r\n", "Lang=abc"}}) {
        writeFile(program.home("Harborlantern.ini"), settings);
        const Ended ended = program.run({"-s", report, dir.path()});
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.errors,
                  "Unerwarteter Fehler: Type mismatch: " + named + ". Näheres steht in " + log + ".\n");
        EXPECT_TRUE(has(contentOf(log), "Err: 13 - "));
        EXPECT_EQ(readReport(report).size(), 1U);
        fs::remove(log);
    }
}

TEST_F(ProgramRun, NamesThePackageOfAWindowThatIsNotInstalled) {
    const std::string alone = dir.path() + "/harborlantern";
    fs::copy_file(HARBORLANTERN_PROGRAM, alone);
    const auto start = [&] { ::execl(alone.c_str(), "harborlantern", "/usr", nullptr); };
    for (const bool byPackage : {false, true}) {
        if (byPackage) writeFile(dir.path() + "/installed", "share\n");
        const Ended ended = program.run({}, start);
        EXPECT_EQ(ended.status, 3);
        EXPECT_EQ(ended.errors.find("(harborlantern-gui)") != std::string::npos, byPackage) << ended.errors;
        EXPECT_TRUE(has(ended.errors, " -s "));
    }
}

TEST_F(ProgramRun, ReplacesNoReportWhereMemoryEnds) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer takes more address space than any limit that would be felt";
#endif
    int kept = 0;
    for (rlim_t bytes = 6'000'000; bytes < 12'000'000; bytes += bytes / 16) {
        writeFile(report, "older");
        const rlimit limit = {bytes, bytes};
        const Ended ended =
            program.run({"-s", report, "/usr"}, [&] { must(::setrlimit(RLIMIT_AS, &limit)); });
        const auto told = [&](const char* text) { return ended.errors.find(text) != std::string::npos; };
        const bool replaced = contentOf(report) != "older";
        EXPECT_FALSE(replaced && told("Unerwarteter Fehler")) << ended.errors;
        EXPECT_TRUE(replaced || ended.status != 0);
        if (told("wurde nicht geschrieben: ein unerwarteter Fehler")) ++kept;
    }
    EXPECT_GT(kept, 0);
}

}  // namespace
}  // namespace hl::test
