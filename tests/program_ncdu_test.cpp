// What is written for ncdu, held against what ncdu itself writes of the same tree.
#include "support/program.h"

namespace hl::test {
namespace {

bool isThere(const char* tool) {
    return !outputOf("command -v " + std::string(tool)).empty();
}

struct NcduOfTheProgram : testing::Test {
    NcduOfTheProgram() {
        makeTree(top, {"a/", "a/\"b\\\x01\n\xFF/", "a/empty/", "shut/"});
        makeFile(top + "/a/film", 300'000);
        makeFile(top + "/a/\"b\\\x01\n\xFF/x", 5);
        must(::link((top + "/a/film").c_str(), (top + "/again").c_str()));
        must(::symlink("a", (top + "/to folder").c_str()));
        must(::symlink("nowhere", (top + "/dangling").c_str()));
        must(::mkfifo((top + "/fifo").c_str(), 0600));
    }
    std::string same(const std::string& one, const std::string& other) const {
        return outputOf("python3 " HARBORLANTERN_SOURCE_DIR "/tests/support/same_ncdu.py '" + one + "' '" +
                        other + "'");
    }

    const TempDir dir;
    const std::string top = dir.path();
    const Program program;
    const std::string ours = program.home("ours.ncdu.json"), theirs = program.home("theirs.json");
};

TEST_F(NcduOfTheProgram, IsTheSameTreeAsNcduWrites) {
    if (!isThere("ncdu") || !isThere("python3")) GTEST_SKIP() << "There is no ncdu or no python3";
    ASSERT_EQ(program.run({"-s", ours, top}).status, 0);
    outputOf("ncdu -0xeo '" + theirs + "' '" + top + "'");
    EXPECT_TRUE(has(same(ours, theirs), "11 entries, 0 differences"))
        << same(ours, theirs) << contentOf(ours);
    outputOf("ncdu -0 -e -f '" + ours + "' -o '" + theirs + "'");
    EXPECT_TRUE(has(same(ours, theirs), "11 entries, 0 differences")) << contentOf(ours);
}

TEST_F(NcduOfTheProgram, SaysWhatIsNotInItAndWhy) {
    must(::chmod((top + "/shut").c_str(), 0));
    must(::chmod(top.c_str(), 0755));
    const Ended ended = program.run({"-s", "--format=ncdu", "--exclude=empty/", "-", top}, becomeNobody);
    must(::chmod((top + "/shut").c_str(), 0700));
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(has(ended.output, "{\"name\":\"empty\",\"excluded\":\"pattern\"}"));
    EXPECT_TRUE(has(ended.output, "\"read_error\":true}]"));
    EXPECT_TRUE(has(ended.errors, "Nicht gelesen: " + top + "/shut/"));
    EXPECT_EQ(program.run({"-s", "--format=ncdu", "-", top + "/gone"}).status, 1);
    for (const auto& line :
         {std::vector<std::string>{"-s2", "--format=ncdu", "-", top}, {"-s", ours, top, top}})
        EXPECT_EQ(program.run(line).status, 2);
}

}  // namespace
}  // namespace hl::test
