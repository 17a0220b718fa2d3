#include "platform/linux/process/instances.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace hl::test {
namespace {

using Lines = std::vector<std::string>;

struct InstancesTest : testing::Test {
    InstancesTest() { chmod(dir.path().c_str(), 0700); }

    TempDir dir;
    InstancePlaces places{dir.path(), dir.path()};
    std::string socket = dir.path() + "/prog_APPLICATION";
    LinuxInstances first{"prog", places}, later{"prog", places};

    // Returns what an instance takes of what a later one sends.
    static Lines handedOver(LinuxInstances& taker, const std::function<bool()>& send) {
        auto sent = std::async(std::launch::async, send);
        Lines lines;
        pollfd wait{taker.listen(), POLLIN, 0};
        if (poll(&wait, 1, 20000) == 1)
            taker.receive([&](const std::string& line) { lines.push_back(line); });
        EXPECT_EQ(sent.get(), !lines.empty());
        return lines;
    }

    int connected() const {
        sockaddr_un address{AF_UNIX, {}};
        socket.copy(address.sun_path, sizeof address.sun_path - 1);
        const int peer = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(connect(peer, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return peer;
    }
};

TEST_F(InstancesTest, TheMarkIsOnesAloneAndGoesWithItsHolder) {
    LinuxInstances other("another", places);
    {
        LinuxInstances holder("prog", places);
        EXPECT_TRUE(!later.isHeld() && holder.takeFirst() && holder.takeFirst() && other.takeFirst());
        EXPECT_TRUE(holder.isHeld() && later.isHeld() && !later.takeFirst());
        EXPECT_GE(holder.listen(), 0);
    }
    EXPECT_TRUE(!(later.isHeld() || fs::exists(socket)) && later.takeFirst());
}

// A process that the kernel holds keeps mark and socket unless they are given up.
TEST_F(InstancesTest, WhatIsLetGoIsFreeThoughAnotherProcessHasItToo) {
    ASSERT_TRUE(first.takeFirst() && first.listen() >= 0);
    const pid_t child = fork();
    if (child == 0) ::pause();
    first.letGo();
    EXPECT_TRUE(!later.isHeld() && !fs::exists(socket) && later.takeFirst());
    EXPECT_EQ(handedOver(later, [&] { return first.deliver("line"); }), Lines{"line"});
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

// The line is sent before the first instance listens, as a start right behind it does.
TEST_F(InstancesTest, ALineOfAnyBytesArrivesWhole) {
    ASSERT_TRUE(first.takeFirst());
    for (const std::string& line :
         {std::string(), std::string("\"/a\0b\" \"\xff\n\"", 11), std::string(3 << 20, 'x')}) {
        EXPECT_TRUE(handedOver(first, [&] { return later.deliver(line); }) == Lines{line}) << line.size();
    }
}

TEST_F(InstancesTest, WhatAKilledInstanceLeftIsInNobodysWay) {
    const auto beginAndDie = [&]() -> int {
        LinuxInstances killed("prog", places);
        _exit(killed.takeFirst() && killed.listen() >= 0 ? 0 : 1);
    };
    ASSERT_TRUE(inChild(beginAndDie) == 0 && fs::exists(socket));
    EXPECT_FALSE(later.deliver("lost"));
    ASSERT_TRUE(first.takeFirst());
    EXPECT_EQ(handedOver(first, [&] { return later.deliver("line"); }), Lines{"line"});
}

TEST_F(InstancesTest, AnInstanceThatDoesNotAnswerIsGivenUp) {
    LinuxInstances hasty("prog", places, LinuxInstances::Milliseconds(30));
    ASSERT_TRUE(first.takeFirst());
    EXPECT_TRUE(!hasty.deliver("does not listen yet") && hasty.process() == 0);
    ASSERT_GE(first.listen(), 0);
    EXPECT_TRUE(!hasty.deliver("does not receive") && hasty.process() == ::getpid());
    first.receive([](const std::string& line) { FAIL() << line << ": its sender has given up"; });
}

TEST_F(InstancesTest, ASenderThatStopsInTheMiddleLeavesNoLine) {
    ASSERT_TRUE(first.takeFirst() && first.listen() >= 0);
    for (const std::string_view part :
         {std::string_view("\x64\0\0", 3), std::string_view("\x64\0\0\0\0\0\0\0abc", 11),
          std::string_view("\xff\xff\xff\xff\xff\xff\xff\xff", 8)}) {
        const int peer = connected();
        EXPECT_EQ(write(peer, part.data(), part.size()), static_cast<ssize_t>(part.size()));
        close(peer);
        first.receive([](const std::string&) { FAIL(); });
    }
    // Senders who say nothing do not keep anybody else out, either.
    int silent[6];
    for (int& each : silent) each = connected();
    for (std::size_t i = 0; i < std::size(silent); ++i) first.receive([](const std::string&) { FAIL(); });
    EXPECT_EQ(handedOver(first, [&] { return later.deliver("line"); }), Lines{"line"});
    for (const int each : silent) close(each);
}

TEST_F(InstancesTest, LinesOfAnotherUserAreDropped) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can be another user";
    ASSERT_TRUE(first.takeFirst() && first.listen() >= 0);
    // The folder is open to all, which the program never does, because it must not be what keeps the other
    // user out.
    ASSERT_EQ(chmod(dir.path().c_str(), 0777) | chmod(socket.c_str(), 0777), 0);
    ASSERT_EQ(seteuid(65534), 0);
    const int peer = connected();
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(write(peer, "\1\0\0\0\0\0\0\0x", 9), 9);
    first.receive([](const std::string& line) { FAIL() << line; });
    close(peer);
}

TEST_F(InstancesTest, OnlyAFolderThatIsTheUsersAloneIsUsed) {
    const std::string own = dir.path() + "/shared/prog-" + std::to_string(geteuid());
    fs::create_directories(dir.path() + "/elsewhere");
    chmod((dir.path() + "/elsewhere").c_str(), 0700);
    const std::tuple<const char*, std::function<void()>, bool> cases[] = {
        {"nothing there", [] {}, true},
        {"one of the user's own", [&] { mkdir(own.c_str(), 0700); }, true},
        {"one that others can read", [&] { mkdir(own.c_str(), 0750), chmod(own.c_str(), 0750); }, false},
        {"a link to a good one", [&] { fs::create_symlink(dir.path() + "/elsewhere", own); }, false},
        {"a file", [&] { writeFile(own, ""); }, false}};
    chmod(dir.path().c_str(), 0755);  // So the folder of the run is skipped.
    for (const auto& [what, prepare, usable] : cases) {
        fs::remove_all(dir.path() + "/shared");
        fs::create_directories(dir.path() + "/shared");
        prepare();
        LinuxInstances instances("prog", {dir.path(), dir.path() + "/shared"});
        EXPECT_TRUE(instances.takeFirst()) << what << ": the program starts in any case";
        EXPECT_EQ(instances.listen() >= 0, usable) << what;
        EXPECT_EQ(fs::exists(own + "/prog_APPLICATION"), usable) << what;
    }
    EXPECT_FALSE(fs::exists(socket));
}

}  // namespace
}  // namespace hl::test
