#include "platform/linux/files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <thread>

#include "base/scope_exit.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

mode_t modeOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

int replaceWith(Files& files, const std::string& path, std::string_view content) {
    int error = 0;
    const auto file = files.replace(path, error);
    if (!file) return error;
    error = file->write(content);
    return error == 0 ? file->commit() : error;
}

int errorOfReplacing(const std::string& path) {
    int error = 0;
    LinuxFiles files;
    EXPECT_EQ(files.replace(path, error), nullptr) << path;
    return error;
}

std::size_t entriesOf(const std::string& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

/// While it lives, the process has the rights of nobody in particular, whoever started it.
class WithoutPrivilege {
  public:
    WithoutPrivilege() : before_(geteuid()) {
        if (before_ == 0 && seteuid(kNobody) != 0) ADD_FAILURE();
    }
    ~WithoutPrivilege() {
        if (before_ == 0 && seteuid(0) != 0) ADD_FAILURE();
    }
    WithoutPrivilege(const WithoutPrivilege&) = delete;
    WithoutPrivilege& operator=(const WithoutPrivilege&) = delete;

  private:
    uid_t before_;
};

/// Both ways in which an unfinished file can live.
class Replacing : public testing::TestWithParam<Unfinished> {
  protected:
    test::TempDir dir;
    LinuxFiles files{GetParam()};
    std::string target = dir.path() + "/target";
};

INSTANTIATE_TEST_SUITE_P(Unfinished, Replacing, testing::Values(Unfinished::kNameless, Unfinished::kNamed));

TEST_P(Replacing, MakesANewFileWithTheModeThatTheUserWants) {
    const mode_t before = umask(027);
    const ScopeExit restore([&] { umask(before); });
    EXPECT_EQ(replaceWith(files, target, "new"), 0);
    EXPECT_EQ(test::contentOf(target), "new");
    EXPECT_EQ(modeOf(target), 0640U);
    EXPECT_EQ(entriesOf(dir.path()), 1U);
}

TEST_P(Replacing, KeepsTheModeOfTheOldFile) {
    test::writeFile(target, "old");
    for (const mode_t mode : {0600U, 0644U, 0777U}) {
        chmod(target.c_str(), mode);
        EXPECT_EQ(replaceWith(files, target, "new"), 0);
        EXPECT_EQ(modeOf(target), mode);
    }
    EXPECT_EQ(test::contentOf(target), "new");
    EXPECT_EQ(entriesOf(dir.path()), 1U);
}

TEST_P(Replacing, KeepsTheOwnerOfTheOldFileWhereThatIsAllowed) {
    if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
    test::writeFile(target, "old");
    ASSERT_EQ(chown(target.c_str(), 1234, 4321), 0);
    EXPECT_EQ(replaceWith(files, target, "new"), 0);
    struct stat status {};
    ASSERT_EQ(stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 4321U);
}

TEST_P(Replacing, ShowsTheOldContentUntilTheLastMoment) {
    test::writeFile(target, "old");
    int error = 0;
    const auto file = files.replace(target, error);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->write("new"), 0);
    EXPECT_EQ(test::contentOf(target), "old");
    EXPECT_EQ(file->commit(), 0);
    EXPECT_EQ(test::contentOf(target), "new");
}

TEST_P(Replacing, LeavesNothingBehindWithoutACommit) {
    int error = 0;
    files.replace(target, error)->write("never");
    EXPECT_EQ(entriesOf(dir.path()), 0U);
    test::writeFile(target, "old");
    files.replace(target, error)->write("never");
    EXPECT_EQ(test::contentOf(target), "old");
    EXPECT_EQ(entriesOf(dir.path()), 1U);
}

TEST_P(Replacing, CommitsOnce) {
    int error = 0;
    const auto file = files.replace(target, error);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->commit(), 0);
    EXPECT_NE(file->commit(), 0);
    EXPECT_EQ(entriesOf(dir.path()), 1U);
}

TEST_P(Replacing, LeavesNothingBehindWhereTheCommitFails) {
    int error = 0;
    const auto file = files.replace(target, error);
    ASSERT_NE(file, nullptr);
    fs::create_directory(target);  // Meanwhile, by somebody else.
    EXPECT_EQ(file->commit(), EISDIR);
    EXPECT_EQ(entriesOf(dir.path()), 1U);
}

TEST_P(Replacing, FollowsALinkAndKeepsIt) {
    fs::create_directory(dir.path() + "/far");
    const std::string far = dir.path() + "/far/file";
    test::writeFile(far, "old");
    fs::create_symlink("far/file", dir.path() + "/near");
    fs::create_symlink(dir.path() + "/near", target);
    EXPECT_EQ(replaceWith(files, target, "new"), 0);
    EXPECT_EQ(test::contentOf(far), "new");
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(entriesOf(dir.path() + "/far"), 1U);
}

TEST_P(Replacing, MakesTheFileThatADanglingLinkNames) {
    fs::create_symlink("later", target);
    EXPECT_EQ(replaceWith(files, target, "new"), 0);
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(test::contentOf(dir.path() + "/later"), "new");
}

TEST_P(Replacing, TakesNamesOfAnyBytesAndOfFullLength) {
    for (const std::string& name : {std::string("\xFF\n\""), std::string(255, 'n')}) {
        EXPECT_EQ(replaceWith(files, dir.path() + "/" + name, "1"), 0);
        EXPECT_EQ(replaceWith(files, dir.path() + "/" + name, "2"), 0);
        EXPECT_EQ(test::contentOf(dir.path() + "/" + name), "2");
    }
}

TEST_P(Replacing, RefusesAFolderThatMayNotBeWritten) {
    ASSERT_EQ(chmod(dir.path().c_str(), 0555), 0);
    const ScopeExit restore([&] { chmod(dir.path().c_str(), 0755); });
    const WithoutPrivilege nobody;
    int error = 0;
    EXPECT_EQ(files.replace(target, error), nullptr);
    EXPECT_EQ(error, EACCES);
}

TEST_P(Replacing, RespectsAWriteProtectedFile) {
    test::writeFile(target, "old");
    chmod(target.c_str(), 0444);
    ASSERT_EQ(chmod(dir.path().c_str(), 0777), 0);
    const WithoutPrivilege nobody;
    int error = 0;
    EXPECT_EQ(files.replace(target, error), nullptr);
    EXPECT_EQ(error, EACCES);
    EXPECT_EQ(test::contentOf(target), "old");
}

TEST(LinuxFiles, SaysWhyAFileCannotBeReplaced) {
    const test::TempDir dir;
    test::writeFile(dir.path() + "/file", "");
    fs::create_symlink("loop", dir.path() + "/loop");
    EXPECT_EQ(errorOfReplacing(dir.path() + "/missing/file"), ENOENT);
    EXPECT_EQ(errorOfReplacing(""), ENOENT);
    EXPECT_EQ(errorOfReplacing(dir.path()), EISDIR);
    EXPECT_EQ(errorOfReplacing(dir.path() + "/"), EISDIR);
    EXPECT_EQ(errorOfReplacing("/"), EISDIR);
    EXPECT_EQ(errorOfReplacing(dir.path() + "/new/"), EISDIR);
    EXPECT_EQ(errorOfReplacing(dir.path() + "/file/below"), ENOTDIR);
    EXPECT_EQ(errorOfReplacing(dir.path() + "/loop"), ELOOP);
}

TEST(LinuxFiles, WritesADeviceAsItIs) {
    LinuxFiles files;
    EXPECT_EQ(replaceWith(files, "/dev/full", "text"), ENOSPC);
    EXPECT_EQ(replaceWith(files, "/dev/null", "text"), 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(LinuxFiles, RemembersAFailedWriteUntilTheCommit) {
    LinuxFiles files;
    int error = 0;
    const auto file = files.replace("/dev/full", error);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->write("text"), ENOSPC);
    EXPECT_EQ(file->write(""), ENOSPC);
    EXPECT_EQ(file->commit(), ENOSPC);
}

TEST(LinuxFiles, WritesAFileThatHasNoNameAnyMore) {
    const test::TempDir dir;
    const int opened = open((dir.path() + "/gone").c_str(), O_RDWR | O_CREAT, 0600);
    const ScopeExit close([&] { ::close(opened); });
    ASSERT_EQ(::write(opened, "longer than new", 15), 15);
    fs::remove(dir.path() + "/gone");
    LinuxFiles files;
    EXPECT_EQ(replaceWith(files, "/proc/self/fd/" + std::to_string(opened), "new"), 0);
    char buffer[20];
    EXPECT_EQ(pread(opened, buffer, sizeof buffer, 0), 3);
    EXPECT_EQ(entriesOf(dir.path()), 0U);
}

TEST(LinuxFiles, GetsAllThroughAPipeInSpiteOfInterruptions) {
    const test::TempDir dir;
    const std::string pipe = dir.path() + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    struct sigaction act {};
    struct sigaction before {};
    act.sa_handler = [](int) {};  // Without SA_RESTART: calls in work end with EINTR.
    sigaction(SIGALRM, &act, &before);
    const itimerval often{{0, 500}, {0, 500}};
    const itimerval never{};
    const ScopeExit restore([&] {
        setitimer(ITIMER_REAL, &never, nullptr);
        sigaction(SIGALRM, &before, nullptr);
    });
    setitimer(ITIMER_REAL, &often, nullptr);

    std::string received;
    std::thread reader([&] { received = test::contentOf(pipe); });
    std::string sent;
    for (int i = 0; i < 400000; ++i) sent += std::to_string(i);
    LinuxFiles files;
    EXPECT_EQ(replaceWith(files, pipe, sent), 0);
    reader.join();
    EXPECT_TRUE(received == sent);
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(LinuxFiles, SurvivesAPipeWhoseReaderWentAway) {
    const test::TempDir dir;
    const std::string pipe = dir.path() + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    LinuxFiles files;
    int error = 0;
    const auto file = files.replace(pipe, error);
    ASSERT_NE(file, nullptr);
    close(reader);
    EXPECT_EQ(file->write("text"), EPIPE);
    EXPECT_EQ(file->commit(), EPIPE);
}

TEST(LinuxFiles, ReadsAsMuchAsIsAllowed) {
    const test::TempDir dir;
    const std::string path = dir.path() + "/file";
    const std::string content(200000, 'x');
    test::writeFile(path, content);
    LinuxFiles files;
    int error = -1;
    EXPECT_EQ(files.readWhole(path, content.size(), error), content);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(files.readWhole(path, SIZE_MAX, error), content);
    EXPECT_EQ(files.readWhole(path, content.size() - 1, error), std::nullopt);
    EXPECT_EQ(error, EFBIG);
    EXPECT_EQ(files.readWhole("/dev/zero", 1000, error), std::nullopt);
    EXPECT_EQ(error, EFBIG);
}

TEST(LinuxFiles, SaysWhyAFileCannotBeRead) {
    const test::TempDir dir;
    LinuxFiles files;
    int error = 0;
    EXPECT_EQ(files.readWhole(dir.path() + "/missing", 10, error), std::nullopt);
    EXPECT_EQ(error, ENOENT);
    EXPECT_EQ(files.readWhole(dir.path(), 10, error), std::nullopt);
    EXPECT_EQ(error, EISDIR);
}

TEST(LinuxFiles, DoesNotWaitForTheWriterOfAPipe) {
    const test::TempDir dir;
    ASSERT_EQ(mkfifo((dir.path() + "/pipe").c_str(), 0600), 0);
    LinuxFiles files;
    int error = 0;
    EXPECT_EQ(files.readWhole(dir.path() + "/pipe", 10, error), "");
}

TEST(LinuxFiles, AppendsToAFileThatItMakesItself) {
    const test::TempDir dir;
    LinuxFiles files;
    EXPECT_EQ(files.append(dir.path() + "/log", "one\r\n"), 0);
    EXPECT_EQ(files.append(dir.path() + "/log", "two\r\n"), 0);
    EXPECT_EQ(test::contentOf(dir.path() + "/log"), "one\r\ntwo\r\n");
    EXPECT_EQ(files.append(dir.path() + "/missing/log", "x"), ENOENT);
    EXPECT_EQ(files.append(dir.path(), "x"), EISDIR);
    EXPECT_EQ(files.append("/dev/full", "x"), ENOSPC);
}

TEST(LinuxFiles, KnowsWhatExists) {
    const test::TempDir dir;
    LinuxFiles files;
    EXPECT_TRUE(files.exists(dir.path()));
    EXPECT_FALSE(files.exists(dir.path() + "/x"));
    fs::create_symlink("nowhere", dir.path() + "/dangling");
    EXPECT_FALSE(files.exists(dir.path() + "/dangling"));
}

TEST(LinuxFiles, DoesWithoutALockOfAFolderThatIsMissing) {
    LinuxFiles files;
    const test::TempDir dir;
    EXPECT_EQ(files.lockFolderOf(dir.path() + "/missing/file"), nullptr);
    EXPECT_NE(files.lockFolderOf(dir.path() + "/file"), nullptr);
    EXPECT_NE(files.lockFolderOf(dir.path() + "/file"), nullptr) << "the first one was let go";
}

}  // namespace
}  // namespace hl
