#include "platform/linux/change/files.h"

#include "support/results.h"

namespace hl::test {
namespace {

int replaceWith(Files& files, const std::string& path, std::string_view content) {
    return numberOf(replaceWhole(files, path, content));
}

/// Tests both ways in which an unfinished file can exist.
struct Replacing : testing::TestWithParam<Unfinished> {
    TempDir dir;
    LinuxFiles files{GetParam()};
    std::string target = dir.path() + "/target";
};

INSTANTIATE_TEST_SUITE_P(Unfinished, Replacing, testing::Values(Unfinished::kNameless, Unfinished::kNamed));

TEST_P(Replacing, MakesANewFileWithTheModeThatTheUserWants) {
    const mode_t before = umask(027);
    EXPECT_EQ(replaceWith(files, target, "new"), 0);
    umask(before);
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_EQ(factsOf(target).st_mode & 07777, 0640U);
    EXPECT_EQ(namesIn(dir.path()).size(), 1U);
}

TEST_P(Replacing, ShowsTheOldContentUntilTheLastMomentAndKeepsModeAndOwner) {
    writeFile(target, "old");
    const bool mayGiveAway = chown(target.c_str(), 1234, 4321) == 0;
    EXPECT_EQ(mayGiveAway, geteuid() == 0);
    chmod(target.c_str(), 0707);
    const struct stat before = factsOf(target);
    const auto file = *files.replace(target);
    EXPECT_EQ(numberOf(file->write("new")), 0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(numberOf(file->commit()), 0);
    EXPECT_EQ(contentOf(target), "new");
    const struct stat after = factsOf(target);
    EXPECT_EQ(std::tie(after.st_mode, after.st_uid, after.st_gid),
              std::tie(before.st_mode, before.st_uid, before.st_gid));
    EXPECT_EQ(namesIn(dir.path()).size(), 1U);
}

TEST_P(Replacing, LeavesNothingBehindWithoutACommitOrWhereTheCommitFails) {
    const auto unused = files.replace(target);
    EXPECT_EQ(namesIn(dir.path()).size(), 0U) << "a kill would leave it";
    EXPECT_TRUE((*files.replace(target))->write("never"));
    EXPECT_EQ(namesIn(dir.path()).size(), 0U);
    const auto file = *files.replace(target);
    fs::create_directory(target);  // Somebody else makes it meanwhile.
    EXPECT_EQ(numberOf(file->commit()), EISDIR);
    EXPECT_EQ(namesIn(dir.path()).size(), 1U);
}

TEST_P(Replacing, FollowsALinkAndKeepsIt) {
    fs::create_directory(dir.path() + "/far");
    fs::create_symlink("far/file", dir.path() + "/near");
    fs::create_symlink(dir.path() + "/near", target);
    for (const char* content : {"made where a dangling link points", "new"}) {
        EXPECT_EQ(replaceWith(files, target, content), 0);
        EXPECT_EQ(contentOf(dir.path() + "/far/file"), content);
        EXPECT_TRUE(fs::is_symlink(target));
        EXPECT_EQ(namesIn(dir.path() + "/far").size(), 1U);
    }
}

TEST_P(Replacing, RespectsWriteProtectionOfTheFileAndOfTheFolder) {
    writeFile(target, "old");
    chmod(target.c_str(), 0444);
    const bool isRoot = geteuid() == 0;  // No protection stops root.
    for (const mode_t mode : {0777U, 0555U}) {
        ASSERT_EQ(chmod(dir.path().c_str(), mode), 0);
        ASSERT_EQ(seteuid(isRoot ? kNobody : geteuid()), 0);
        EXPECT_EQ(replaceWith(files, mode == 0777U ? target : dir.path() + "/new", "new"), EACCES);
        ASSERT_EQ(seteuid(isRoot ? 0 : geteuid()), 0);
    }
    chmod(dir.path().c_str(), 0755);
    EXPECT_EQ(contentOf(target), "old");
}

struct WholeFiles : testing::Test {
    std::string in(const std::string& name) const { return dir.path() + "/" + name; }

    TempDir dir;
    LinuxFiles files;
};

TEST_F(WholeFiles, SaysWhyAFileCannotBeReplaced) {
    writeFile(in("file"), "");
    fs::create_symlink("loop", in("loop"));
    const std::pair<std::string, int> cases[] = {
        {in("missing/file"), ENOENT}, {"", ENOENT},  {dir.path(), EISDIR},
        {in("new/"), EISDIR},         {"/", EISDIR}, {in("file/below"), ENOTDIR},
        {in("loop"), ELOOP}};
    for (const auto& [path, expected] : cases) EXPECT_EQ(replaceWith(files, path, ""), expected) << path;
}

TEST_F(WholeFiles, WritesADeviceAsItIsAndRemembersAFailureUntilTheCommit) {
    EXPECT_EQ(replaceWith(files, "/dev/null", "text"), 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    const auto file = *files.replace("/dev/full");
    EXPECT_EQ(numberOf(file->write("text")), ENOSPC);
    EXPECT_EQ(numberOf(file->commit()), ENOSPC);
}

TEST_F(WholeFiles, SurvivesAPipeWithoutAReaderAndDoesNotWaitForAWriter) {
    const std::string pipe = in("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(numberOf(files.readWhole(pipe, 10)), ESPIPE);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    const auto file = *files.replace(pipe);
    close(reader);
    EXPECT_EQ(numberOf(file->write("text")), EPIPE);
    // Otherwise the window would stand still until somebody reads.
    files.refuseUnreadPipes();
    EXPECT_EQ(numberOf(files.replace(pipe)), ENXIO);
}

TEST_F(WholeFiles, ALockThatIsHeldIsWaitedForOnceAndNoFileOfAnotherUserIsALock) {
    LinuxFiles others;
    const auto lock = others.lockFolderOf(in("x"));
    EXPECT_EQ(factsOf(in(".harborlantern-lock")).st_mode & 0777, 0600U);
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(files.lockFolderOf(in("x")), nullptr);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(3));
    if (chown(in(".harborlantern-lock").c_str(), kNobody, kNobody) != 0) return;  // This is not root.
    EXPECT_EQ(LinuxFiles().lockFolderOf(in("x")), nullptr);
}

TEST_F(WholeFiles, ReadsAsMuchAsIsAllowedOrSaysWhyNot) {
    const std::string content(200000, 'x');
    writeFile(in("file"), content);
    EXPECT_EQ(*files.readWhole(in("file"), content.size()), content);
    EXPECT_EQ(*files.readWhole(in("file"), SIZE_MAX), content);
    const std::pair<std::string, int> cases[] = {
        {in("file"), EFBIG}, {"/dev/zero", EFBIG}, {in("missing"), ENOENT}, {dir.path(), EISDIR}};
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(numberOf(files.readWhole(path, content.size() - 1)), expected) << path;
}

}  // namespace
}  // namespace hl::test
