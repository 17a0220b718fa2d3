// What rules leave out of a report, from outside: the lines that are there, what standard error says, and
// lines of which the program makes no sense.

#include "support/program.h"
#include "support/trees.h"

namespace hl::test {
namespace {

/// Returns "name size,files,folders" of each line of a CSV report, the name being what stands below `root`.
std::string linesOf(const std::string& report, const std::string& root) {
    static const std::regex kRow("\"([^\"]*)\",\"(\\d+)\",(\\d+),(\\d+)\r\n");
    const std::string text = contentOf(report);
    std::string lines;
    for (std::sregex_iterator row(text.begin(), text.end(), kRow), end; row != end; ++row)
        lines += (*row)[1].str().substr(root.size()) + " " + (*row)[2].str() + "," + (*row)[3].str() + "," +
                 (*row)[4].str() + "\n";
    return lines;
}

struct ProgramRules : testing::Test {
    ProgramRules() {
        for (const char* path : {"t/cache/in", "t/sub/cache/deep", "t/build/kept"})
            std::filesystem::create_directories(at(path));
        for (const auto& [path, size] : {std::pair("t/a.o", 1),
                                         {"t/keep.o", 2},
                                         {"t/b", 4},
                                         {"t/cache/in/c", 8},
                                         {"t/sub/cache/deep/d", 16},
                                         {"t/sub/e.o", 32},
                                         {"t/build/f", 64},
                                         {"t/build/kept/g", 128}})
            makeFile(at(path), size);
    }
    std::string at(const std::string& path) const { return dir.path() + "/" + path; }

    const TempDir dir;
    const Program program;
    const std::string report = program.home("r.csv");
};

TEST_F(ProgramRules, LeaveOutFoldersThatKeepALineAndFilesThatHaveNone) {
    writeFile(at("rules"), "# from a file\n\n/build/*\n!/build/kept\r\n");
    program.setOptions({"Exclude0=*.o", "Exclude7=/cache/"});
    const std::vector<std::string> line = {"-s",   report, "--exclude-from", at("rules"), "--exclude=!keep.o",
                                           at("t")};
    std::filesystem::remove_all(at("t/sub/cache"));
    std::filesystem::create_directories(at("t/sub/cache"));
    for (const char* ahead : {"1", "0"}) {
        const Ended ended = program.run(line, [=] { ::setenv("HARBORLANTERN_READ_AHEAD", ahead, 1); });
        EXPECT_EQ(ended.status, 0);
        EXPECT_EQ(ended.errors, "durch Regeln ausgelassen: 1 Ordner, 3 Dateien\n");
        EXPECT_EQ(linesOf(report, at("t")),
                  " 134,3,5\n/build 128,1,1\n/build/kept 128,1,0\n/[Dateien] 6,2,0\n"
                  "/cache 0,0,0\n/sub 0,0,1\n/sub/cache 0,0,0\n");
    }
}

TEST_F(ProgramRules, NeverLeaveASourceOutAndCountFromEachSource) {
    const Ended ended =
        program.run({"-s", "--exclude=cache", "--exclude", "/in", report, at("t/sub"), at("t/cache")});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.errors, "durch Regeln ausgelassen: 2 Ordner, 0 Dateien\n");
    EXPECT_EQ(linesOf(report, at("t")),
              "/sub 32,1,1\n/sub/[Dateien] 32,1,0\n/sub/cache 0,0,0\n/cache 0,0,1\n/cache/in 0,0,0\n");
}

TEST_F(ProgramRules, HoldForASearch) {
    const Ended ended = program.run({"-s", "--find=type=f", "--format=nul", "--exclude=*.o",
                                     "--exclude=/sub/cache", "--exclude-caches", "-", at("t")});
    std::set<std::string> found;
    for (std::size_t i = 0; i < ended.output.size();) {
        const std::string path = ended.output.c_str() + i;
        found.insert(path.substr(at("t").size()));
        i += path.size() + 1;
    }
    EXPECT_EQ(found, (std::set<std::string>{"/b", "/cache/in/c", "/build/f", "/build/kept/g"}));
    EXPECT_EQ(ended.errors, "durch Regeln ausgelassen: 1 Ordner, 3 Dateien\n");
}

TEST_F(ProgramRules, LeaveOutCachesByTheirTag) {
    const std::string tag = "Signature: 8a477f597d28d172789f06886806bc55";
    writeFile(at("t/CACHEDIR.TAG"), tag);  // A source is read.
    writeFile(at("t/sub/CACHEDIR.TAG"), tag.substr(0, 42) + "6");
    writeFile(at("t/cache/CACHEDIR.TAG"), tag + "\n# more\n");
    must(::symlink(at("t/CACHEDIR.TAG").c_str(), at("t/build/CACHEDIR.TAG").c_str()));
    makeFolder(at("t/long"));
    for (int i = 0; i < 3000; ++i) makeFile(at("t/long/" + std::string(40, 'x') + std::to_string(i)), 1);
    writeFile(at("t/long/CACHEDIR.TAG"), tag);
    const Ended ended = program.run({"-s1", report, "--exclude-caches", at("t")});
    EXPECT_EQ(ended.errors, "durch Regeln ausgelassen: 2 Ordner, 0 Dateien\n");
    const std::string lines = linesOf(report, at("t"));
    for (const char* line : {"/cache 0,0,0\n", "/long 0,0,0\n", "/build ", "/sub 91,3,2\n"})
        EXPECT_TRUE(has(lines, line)) << lines;
}

TEST_F(ProgramRules, RefuseLinesOfWhichTheyMakeNoSense) {
    writeFile(at("bad"), "fine\na[b\n");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"--exclude=x[", report, at("t")},
         "Die Regel x[ kann nicht gelesen werden: zu einem [ fehlt das ]."},
        {{"--exclude-from", at("bad"), report, at("t")}, "/bad:2: a[b kann nicht"},
        {{"--exclude-from=" + at("none"), report, at("t")}, "/none können nicht gelesen werden"},
        {{"--exclude-from", "-", report, at("t")}, "Zu --exclude-from gehört"},
        {{report, at("t"), "--exclude"}, "Zu --exclude gehört"},
        {{report, at("t"), "--exclude-caches", "--exclude-caches"}, "steht zweimal da"},
    };
    for (const auto& [arguments, text] : cases) {
        std::vector<std::string> line = {"-s"};
        line.insert(line.end(), arguments.begin(), arguments.end());
        const Ended ended = program.run(line);
        EXPECT_EQ(ended.status, 2) << text;
        EXPECT_TRUE(has(ended.errors, text)) << ended.errors;
    }
    EXPECT_EQ(program.run({at("t"), "--exclude=a"}).status, 2) << "not for the window";
    EXPECT_FALSE(std::filesystem::exists(report));
    // What is written as no rule, and names of any bytes, go through the line as they are.
    makeFile(at("t/say \"-d3\" %41"), 5);
    EXPECT_EQ(program.run({"-s", report, at("t"), "--exclude", "say \"-d3\" %41", "--exclude=#none"}).errors,
              "durch Regeln ausgelassen: 0 Ordner, 1 Dateien\n");
}

}  // namespace
}  // namespace hl::test
