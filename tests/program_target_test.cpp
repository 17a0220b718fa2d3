// Tests where the program writes: what was at the target of a report before, and what is left there.
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>

#include "platform/linux/change/files.h"
#include "platform/linux/process/descriptor.h"
#include "support/program.h"
#include "support/results.h"
#include "support/trashing.h"

namespace hl::test {
namespace {

struct ProgramTarget : testing::Test {
    ProgramTarget() { makeFile(source + "/\x1b[31mred", 5); }
    Ended report(const std::string& target, const std::function<void()>& before = nullptr) const {
        return program.run({"-s", target, source}, before);
    }

    const TempDir dir, away;
    const Program program;
    const std::string source =
        (fs::create_directory(away.path() + "/\x1b[32msource"), away.path() + "/\x1b[32msource");
};

struct Obstacle {
    const char* name;
    const char* protection;  ///< The kernel's protection, if nothing else can refuse.
    std::function<void(const std::string& path, const std::string& victim)> make;
};
const Obstacle kObstacles[] = {
    {"link to a file", nullptr, [](auto& path, auto& victim) { fs::create_symlink(victim, path); }},
    {"link to nothing", nullptr, [](auto& path, auto& victim) { fs::create_symlink(victim + "-new", path); }},
    {"file", "regular", [](auto& path, auto&) { writeFile(path, "theirs"); }},
    {"pipe", "fifos", [](auto& path, auto&) { must(::mkfifo(path.c_str(), 0666)); }}};

// Tests a run with "-s", and writing as the window does it. Only what belongs to the user, or to the folder's
// owner, is written.
TEST_F(ProgramTarget, InASharedFolderNothingOfAnotherUserIsFollowedOrWritten) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root, to be two users";
    const std::string shared = dir.path() + "/shared", victim = dir.path() + "/victim", x = shared + "/x.csv";
    makeFolder(shared);
    must(::chmod(shared.c_str(), 01777));
    writeFile(victim, "precious");
    LinuxFiles files;
    files.refuseUnreadPipes();
    std::string missing;
    for (const auto& [name, protection, make] : kObstacles) {
        const std::string settings = "/proc/sys/fs/protected_" + std::string(protection ? protection : "");
        if (protection != nullptr && contentOf(settings) < "1") {
            missing += settings + " is 0. ";
            continue;
        }
        make(x, victim);
        for (const uid_t owner : {kNobody, ::geteuid()}) {
            must(::lchown(x.c_str(), owner, owner));
            const bool ours = owner == ::geteuid();
            if (ours && fs::is_fifo(fs::symlink_status(x))) continue;
            // Without a reader, a fault would show as a run that never ends.
            const Descriptor reader = fs::is_fifo(fs::symlink_status(x)) ? openToLook(x) : Descriptor();
            const std::string before = snapshotOf(dir.path());
            EXPECT_EQ(numberOf(files.replace(x)), ours ? 0 : EACCES) << name;
            const Ended ended = report(x);
            EXPECT_EQ(ended.status, ours ? 0 : 1) << name << ended.errors;
            EXPECT_EQ(ended.errors.find("Permission denied") != std::string::npos, !ours) << ended.errors;
            EXPECT_EQ(snapshotOf(dir.path()) == before, !ours) << name;
        }
        fs::remove(x);
        fs::remove(victim + "-new");
        writeFile(victim, "precious");
    }
    if (!missing.empty()) GTEST_SKIP() << "The kernel does not protect everything here: " << missing;
}

TEST_F(ProgramTarget, IsFoundOutBeforeTheScan) {
    const std::string pipe = dir.path() + "/pipe", none = dir.path() + "/none/r.csv";
    for (const std::string& target : {none, dir.path()}) {
        EXPECT_EQ(report(target).status, 1);
        EXPECT_FALSE(has(contentOf(program.home("Harborlantern.log")), "Einlesen"));
    }
    // The pipe must not be opened just to try it: its reader would take that for the end.
    must(::mkfifo(pipe.c_str(), 0600));
    auto reader = std::async(std::launch::async, [&] { return contentOf(pipe); });
    EXPECT_EQ(report(pipe).status, 0);
    EXPECT_TRUE(has(reader.get(), ",\"5\",1,0\r\n"));
}

TEST_F(ProgramTarget, InAFolderThatOnlyGrowsNoRestIsLeft) {
    const int folder = openFolder(dir.path());
    const auto setFlags = [&](int flags) { return ::ioctl(folder, FS_IOC_SETFLAGS, &flags) == 0; };
    writeFile(dir.path() + "/old.csv", "old");
    const auto caught = *LinuxFiles(Unfinished::kNamed).replace(dir.path() + "/old.csv");
    EXPECT_TRUE(caught->write("new"));
    if (!setFlags(FS_APPEND_FL)) GTEST_SKIP() << "no folders here that only grow";
    EXPECT_EQ(numberOf(caught->commit()), EPERM);
    const int refused = report(dir.path() + "/old.csv").status, made = report(dir.path() + "/new.csv").status;
    setFlags(0);
    ::close(folder);
    EXPECT_TRUE(fs::remove(caught->leftBehind())) << "is told of a rest that cannot be helped";
    EXPECT_EQ(refused, 1);
    EXPECT_EQ(made, 0);
    EXPECT_EQ(contentOf(dir.path() + "/old.csv"), "old");
    EXPECT_EQ(namesIn(dir.path()).size(), 2U);
}

TEST_F(ProgramTarget, ATerminalGetsStandInsForControlCharacters) {
    const int master = must(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    must(::grantpt(master) + ::unlockpt(master));
    const std::string terminal = ::ptsname(master);
    const int slave = must(::open(terminal.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    for (const std::string target : {"-", "/dev/stdout", terminal.c_str()}) {
        EXPECT_EQ(report(target, [&] { ::dup2(slave, STDOUT_FILENO); }).status, 0);
        char text[4096];
        const std::string_view shown(
            text, static_cast<std::size_t>(must(static_cast<int>(::read(master, text, sizeof text)))));
        EXPECT_TRUE(has(shown, "␛[32msource\"")) << target;
        EXPECT_EQ(shown.find('\x1b'), std::string::npos) << target;
    }
    ::close(slave);
    ::close(master);
}

TEST_F(ProgramTarget, ALockOnTheFolderOfTheSettingsHoldsNobodyUp) {
    const int folder = openFolder(program.home(""));
    fs::remove(program.home("Harborlantern.ini"));  // Without it, the run has a setting to save.
    must(::flock(folder, LOCK_EX));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(report(dir.path() + "/r.csv").status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(1900));
    ::close(folder);
}

}  // namespace
}  // namespace hl::test
