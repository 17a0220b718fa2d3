// The search of a run without a window, as the program writes it.
#include "support/program.h"

namespace hl {
namespace {

using namespace test;

struct FindOfTheProgram : testing::Test {
    FindOfTheProgram() {
        makeTree(top, {"a/", "b/"});
        makeFile(top + "/a/film.MKV", 3000);
        makeFile(top + "/b/\"x\" \xFF.iso", 5);
        must(::link((top + "/a/film.MKV").c_str(), (top + "/b/again").c_str()));
        const timespec old[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
        for (const char* path : {"/a/film.MKV", "/b/\"x\" \xFF.iso"})
            must(::utimensat(AT_FDCWD, (top + path).c_str(), old, 0));
    }
    Ended find(const std::string& filter, std::vector<std::string> more = {}) const {
        std::vector<std::string> line = {"-s", "--find", filter, "-", top};
        line.insert(line.end(), more.begin(), more.end());
        return program.run(line);
    }

    const TempDir dir;
    const std::string top = dir.path();
    const Program program;
    const std::string header = "\"Path\",\"Size (Bytes)\",\"On disk\",\"Modified\",\"Owner\",\"Kind\"\r\n";
};

TEST_F(FindOfTheProgram, WritesCsvOrBarePathsOfEachName) {
    const Ended iso = find("size<=5 age>1y name=*.iso");
    const std::string user = outputOf("printf %s \"$(id -un)\"");
    EXPECT_EQ(iso.output, header + "\"" + top + "/b/\"\"x\"\" \uFFFD.iso\",5,0,\"2001-09-09T01:46:40Z\",\"" +
                              user + "\",\"disk image\"\r\n");
    EXPECT_EQ(iso.status, 0);
    EXPECT_EQ(iso.errors, "");
    EXPECT_EQ(find("iso", {"--format=nul"}).output, top + "/b/\"x\" \xFF.iso" + std::string(1, '\0'));
    const std::string both = find("size=3000", {"--format", "csv"}).output;
    EXPECT_TRUE(has(both, "/a/film.MKV\",3000,"));
    EXPECT_TRUE(has(both, "/b/again\",3000,"));
    const Ended none = find("size>1T");
    EXPECT_EQ(none.output, header);
    EXPECT_EQ(none.status, 0);
    const std::string file = program.home("found.csv");
    EXPECT_EQ(program.run({"-s", file, "--find=type=l", top, top + "/gone"}).status, 1);
    EXPECT_EQ(contentOf(file), header);
}

TEST_F(FindOfTheProgram, NamesATermThatMakesNoSenseAndWritesNothing) {
    writeFile(program.home("old.csv"), "old");
    const std::pair<const char*, const char*> cases[] = {
        {"size>1G size>x", "size>x"}, {"colour=red", "colour=red"},
        {"name>a", "name>a"},         {"owner=\"no such user\"", "owner=\"no such user\""},
        {"a \"b c", "\"b c"},         {"name=[a", "name=[a"}};
    for (const auto& [filter, term] : cases) {
        const Ended ended = program.run({"-s", "--find", filter, program.home("old.csv"), top});
        EXPECT_EQ(ended.status, 2) << filter;
        EXPECT_TRUE(has(ended.errors, "\"" + std::string(term) + "\"")) << filter;
        EXPECT_EQ(std::ranges::count(ended.errors, '\n'), 1) << ended.errors;
    }
    EXPECT_EQ(find("").status, 2) << "an empty filter is none";
    EXPECT_EQ(program.run({"-s", "--find=a", program.home("old.csv"), top + "/gone"}).status, 1);
    EXPECT_EQ(contentOf(program.home("old.csv")), "old");
    EXPECT_EQ(find("a", {"--find=b"}).status, 2);
    EXPECT_EQ(find("a", {"-d1"}).status, 2);
}

TEST_F(FindOfTheProgram, TellsWhatItCouldNotRead) {
    makeTree(top, {"shut/hidden"});
    must(::chmod(top.c_str(), 0755));
    must(::chmod((top + "/shut").c_str(), 0));
    const std::string file = program.home("found");
    const Ended ended = program.run({"-s", "--find=size>=0", "--format=nul", file, top}, becomeNobody);
    must(::chmod((top + "/shut").c_str(), 0700));
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(has(ended.errors, "Nicht gelesen: " + top + "/shut/: ")) << ended.errors;
    EXPECT_EQ(std::ranges::count(contentOf(file), '\0'), 3);
}

}  // namespace
}  // namespace hl
