#include "platform/linux/moving.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <thread>

#include "platform/linux/descriptor.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::writeFile;

int moveTo(const FilePlace& from, const FilePlace& to) {
    Whereabouts whereabouts;
    return moveEntry(from, to, whereabouts);
}

int moveTo(const std::string& from, const std::string& to) {
    return moveTo(FilePlace{.base = from}, FilePlace{.base = to});
}

struct stat factsOf(const std::string& path) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) facts = {};
    return facts;
}

// 0 if there is nothing.
ino_t inodeOf(const std::string& path) {
    return factsOf(path).st_ino;
}

std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
    return names;
}

void makeSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const Descriptor made(socket(AF_UNIX, SOCK_STREAM, 0));
    bind(made.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

void makeFile(const std::string& path) {
    writeFile(path, "content of " + fs::path(path).filename().string());
}

struct Kind {
    const char* name;
    std::function<void(const std::string&)> make;
};

const Kind kKinds[] = {
    {"file", makeFile},
    {"read-only file", [](const auto& path) { makeFile(path), chmod(path.c_str(), 0400); }},
    {"link to a file", [](const auto& path) { fs::create_symlink("/etc/passwd", path); }},
    {"link to a folder", [](const auto& path) { fs::create_symlink("/etc", path); }},
    {"dangling link", [](const auto& path) { fs::create_symlink("no such thing", path); }},
    {"link to itself", [](const auto& path) { fs::create_symlink(fs::path(path).filename(), path); }},
    {"pipe", [](const auto& path) { mkfifo(path.c_str(), 0600); }},
    {"socket", makeSocket},
    {"folder", [](const auto& path) { fs::create_directory(path), makeFile(path + "/inside"); }},
    {"empty folder", [](const auto& path) { fs::create_directory(path); }},
    {"nothing", [](const auto&) {}},
};

const Kind& kind(std::string_view name) {
    for (const Kind& each : kKinds)
        if (each.name == name) return each;
    throw std::logic_error("no such kind");
}

constexpr uid_t kNobody = 65534;

// What `act` returns in a process of a user without rights.
int asNobody(const std::function<int()>& act) {
    const pid_t child = fork();
    if (child == 0) {
        const bool became = setgid(kNobody) == 0 && setuid(kNobody) == 0;
        _exit(became ? act() : 255);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class MovingTest : public testing::Test {
  protected:
    MovingTest() {
        fs::create_directory(at("sub"));
        chmod(dir.path().c_str(), 0755);
    }
    std::string at(const std::string& name) const { return dir.path() + "/" + name; }

    test::TempDir dir;
};

TEST_F(MovingTest, WhateverItIsItIsTheSameUnderItsNewName) {
    const std::string names[] = {"new", "sub/new", std::string(255, 'n'), "\xff\x01\n\\\"'* -", " ", "..."};
    for (const Kind& each : kKinds) {
        if (each.name == std::string("nothing")) continue;
        for (const std::string& name : names) {
            each.make(at("old"));
            const ino_t inode = inodeOf(at("old"));
            ASSERT_NE(inode, 0U) << each.name;
            EXPECT_EQ(moveTo(at("old"), at(name)), 0) << each.name << " to " << name;
            EXPECT_EQ(inodeOf(at("old")), 0U);
            EXPECT_EQ(inodeOf(at(name)), inode);
            // And back, below an open base.
            EXPECT_EQ(moveTo({dir.path(), name}, {dir.path(), "old"}), 0) << each.name << " from " << name;
            EXPECT_EQ(inodeOf(at("old")), inode);
            fs::remove_all(at("old"));
        }
    }
}

TEST_F(MovingTest, AFileReplacesAFileAndNothingReplacesAFolder) {
    struct Case {
        const char* old;
        const char* there;
        int error;
    };
    const Case cases[] = {
        {"file", "file", 0},
        {"file", "read-only file", 0},
        {"file", "dangling link", 0},
        {"file", "link to a folder", 0},
        {"link to a folder", "file", 0},
        {"pipe", "file", 0},
        {"file", "pipe", 0},
        {"file", "folder", EISDIR},
        {"file", "empty folder", EISDIR},
        {"link to a folder", "empty folder", EISDIR},
        {"folder", "folder", EEXIST},
        {"folder", "empty folder", EEXIST},
        {"empty folder", "empty folder", EEXIST},
        {"folder", "file", EEXIST},
        {"folder", "link to a folder", EEXIST},
        {"nothing", "file", ENOENT},
        {"nothing", "folder", ENOENT},
        {"nothing", "nothing", ENOENT},
    };
    for (const Case& c : cases) {
        kind(c.old).make(at("old"));
        kind(c.there).make(at("there"));
        const ino_t old = inodeOf(at("old"));
        const ino_t there = inodeOf(at("there"));
        EXPECT_EQ(moveTo(at("old"), at("there")), c.error) << c.old << " onto " << c.there;
        EXPECT_EQ(inodeOf(at("old")), c.error == 0 ? 0 : old) << c.old << " onto " << c.there;
        EXPECT_EQ(inodeOf(at("there")), c.error == 0 ? old : there) << c.old << " onto " << c.there;
        fs::remove_all(at("old"));
        fs::remove_all(at("there"));
    }
}

TEST_F(MovingTest, APlaceThatCannotBeIsToldAndNothingMoves) {
    makeFile(at("file"));
    fs::create_directories(at("folder/below"));
    struct Case {
        const char* old;
        std::string fresh;
        int error;
    };
    const Case cases[] = {
        {"file", "missing/new", ENOENT},
        {"file", "file/new", ENOTDIR},
        {"file", std::string(256, 'n'), ENAMETOOLONG},
        {"file", ".", EINVAL},
        {"file", "..", EINVAL},
        {"file", std::string("a\0b", 3), EINVAL},
        {"folder", "folder/below/new", EINVAL},
        {"folder/below", "folder", EEXIST},
        {"folder", "folder", 0},
        {"file", "file", 0},
        {"file", "sub/../file", 0},
        {"missing", "missing", ENOENT},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(moveTo({dir.path(), c.old, true}, {dir.path(), c.fresh, true}), c.error)
            << c.old << " to " << c.fresh;
        EXPECT_EQ(namesIn(dir.path()), (std::set<std::string>{"file", "folder", "sub"})) << c.fresh;
        EXPECT_EQ(contentOf(at("file")), "content of file");
        EXPECT_TRUE(fs::exists(at("folder/below")));
    }
}

TEST_F(MovingTest, OfTwoNamesOfOneFileTheNewOneIsLeft) {
    for (const char* other : {"other", "sub/other", "sub/old", "OLD"}) {
        makeFile(at("old"));
        fs::create_hard_link(at("old"), at(other));
        const ino_t inode = inodeOf(at("old"));
        EXPECT_EQ(moveTo(at("old"), at(other)), 0) << other;
        EXPECT_EQ(inodeOf(at("old")), 0U) << other;
        EXPECT_EQ(inodeOf(at(other)), inode) << other;
        EXPECT_EQ(factsOf(at(other)).st_nlink, 1U) << other;
        fs::remove(at(other));
        EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"sub"}) << other;
    }
}

TEST_F(MovingTest, TheLengthOfAPathHasNoLimit) {
    FilePlace place{.base = dir.path()};
    Descriptor folder = openAt(AT_FDCWD, dir.path(), O_PATH | O_DIRECTORY);
    for (int i = 0; i < 100; ++i) {
        const std::string name(200, 'd');
        ASSERT_EQ(mkdirat(folder.number(), name.c_str(), 0755), 0);
        folder = openAt(folder.number(), name, O_PATH | O_DIRECTORY);
        place.below += name + "/";
    }
    makeFile(at("old"));
    const FilePlace deep{place.base, place.below + "new"};
    ASSERT_GT(deep.below.size(), 20'000U);
    EXPECT_EQ(moveTo({at("old")}, deep), 0);
    EXPECT_EQ(faccessat(folder.number(), "new", F_OK, 0), 0);
    EXPECT_EQ(moveTo(deep, {at("back")}), 0);
    EXPECT_EQ(contentOf(at("back")), "content of old");
}

TEST_F(MovingTest, WithoutTheRightToWriteAFolderNothingMoves) {
    if (geteuid() != 0) GTEST_SKIP() << "root alone can become another user";
    fs::create_directory(at("open"));
    chmod(at("open").c_str(), 0777);
    makeFile(at("old"));
    makeFile(at("open/old"));
    chmod(at("open/old").c_str(), 0666);
    EXPECT_EQ(asNobody([&] { return moveTo(at("old"), at("new")); }), EACCES);
    EXPECT_EQ(asNobody([&] { return moveTo(at("old"), at("open/new")); }), EACCES);
    EXPECT_EQ(asNobody([&] { return moveTo(at("open/old"), at("new")); }), EACCES);
    EXPECT_EQ(namesIn(dir.path()), (std::set<std::string>{"old", "open", "sub"}));
    EXPECT_EQ(asNobody([&] { return moveTo(at("open/old"), at("open/new")); }), 0);
}

// A small file system on a folder of its own, or a folder of one that is there.
class OtherMount {
  public:
    explicit OtherMount(const char* options) : options_(options) {
        mounted_ = mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, options) == 0;
        if (mounted_) return;
        shared_ = std::make_unique<test::TempDir>("/dev/shm");
    }
    ~OtherMount() {
        if (mounted_) umount2(folder_.path().c_str(), MNT_DETACH);
    }
    bool isMounted() const { return mounted_; }
    const std::string& path() const { return mounted_ ? folder_.path() : shared_->path(); }
    std::string at(const std::string& name) const { return path() + "/" + name; }

  private:
    const char* options_;
    test::TempDir folder_;
    std::unique_ptr<test::TempDir> shared_;
    bool mounted_ = false;
};

class MovingAcrossTest : public MovingTest {
  protected:
    void SetUp() override {
        if (factsOf(other.path()).st_dev == factsOf(dir.path()).st_dev)
            GTEST_SKIP() << "there is no other file system to move to";
    }
    OtherMount other{"mode=0777,size=256m"};
};

TEST_F(MovingAcrossTest, AFileKeepsWhatBelongsToIt) {
    for (const mode_t mode : {0644U, 0400U, 0751U, 06755U}) {
        for (const char* there : {"nothing", "file", "read-only file", "dangling link", "pipe"}) {
            const std::string name = "\xff new\n";
            const std::string content = "text" + std::string(3 << 20, 'x') + "end";
            writeFile(at("old"), content);
            const bool attributes = setxattr(at("old").c_str(), "user.note", "\0kept", 5, 0) == 0 &&
                                    setxattr(other.path().c_str(), "user.note", "", 0, 0) == 0;
            if (!attributes) removexattr(at("old").c_str(), "user.note");
            const timespec times[] = {{1'000'000'001, 123'456'789}, {999'999'999, 987'654'321}};
            chmod(at("old").c_str(), mode);
            utimensat(AT_FDCWD, at("old").c_str(), times, 0);
            kind(there).make(other.at(name));
            EXPECT_EQ(moveTo(at("old"), other.at(name)), 0) << there;
            EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"sub"});
            EXPECT_EQ(namesIn(other.path()), std::set<std::string>{name}) << there;
            const struct stat facts = factsOf(other.at(name));
            EXPECT_TRUE(contentOf(other.at(name)) == content);
            EXPECT_EQ(facts.st_mode, S_IFREG | mode);
            EXPECT_EQ(facts.st_mtim.tv_sec, times[1].tv_sec);
            EXPECT_EQ(facts.st_mtim.tv_nsec, times[1].tv_nsec);
            EXPECT_EQ(facts.st_atim.tv_nsec, times[0].tv_nsec);
            char note[8] = {};
            EXPECT_EQ(getxattr(other.at(name).c_str(), "user.note", note, sizeof note), attributes ? 5 : -1);
            fs::remove(other.at(name));
        }
    }
}

TEST_F(MovingAcrossTest, ALinkGoesAsTheLinkItIs) {
    for (const char* each : {"link to a file", "link to a folder", "dangling link", "link to itself"}) {
        for (const char* there : {"nothing", "file", "link to a file"}) {
            kind(each).make(at("old"));
            kind(there).make(other.at("new"));
            const timespec times[] = {{1, 2}, {3, 4}};
            utimensat(AT_FDCWD, at("old").c_str(), times, AT_SYMLINK_NOFOLLOW);
            const fs::path text = fs::read_symlink(at("old"));
            EXPECT_EQ(moveTo(at("old"), other.at("new")), 0) << each;
            EXPECT_EQ(fs::read_symlink(other.at("new")), text);
            EXPECT_EQ(factsOf(other.at("new")).st_mtim.tv_nsec, 4);
            EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"sub"});
            EXPECT_EQ(namesIn(other.path()), std::set<std::string>{"new"});
            fs::remove(other.at("new"));
        }
    }
}

TEST_F(MovingAcrossTest, AfterAFailureAllIsAsItWas) {
    struct Case {
        const char* old;
        const char* there;
        int error;
    };
    const Case cases[] = {
        {"folder", "nothing", EXDEV},      {"empty folder", "nothing", EXDEV},
        {"folder", "empty folder", EXDEV}, {"pipe", "nothing", EXDEV},
        {"socket", "file", EXDEV},         {"file", "folder", EISDIR},
        {"file", "empty folder", EISDIR},  {"dangling link", "empty folder", EISDIR},
        {"nothing", "file", ENOENT},
    };
    for (const Case& c : cases) {
        kind(c.old).make(at("old"));
        kind(c.there).make(other.at("there"));
        const ino_t old = inodeOf(at("old"));
        const ino_t there = inodeOf(other.at("there"));
        const auto names = namesIn(other.path());
        EXPECT_EQ(moveTo(at("old"), other.at("there")), c.error) << c.old << " onto " << c.there;
        EXPECT_EQ(inodeOf(at("old")), old);
        EXPECT_EQ(inodeOf(other.at("there")), there);
        EXPECT_EQ(namesIn(other.path()), names);
        EXPECT_EQ(fs::exists(at("old/inside")), c.old == std::string("folder"));
        fs::remove_all(at("old"));
        fs::remove_all(other.at("there"));
    }
}

TEST_F(MovingAcrossTest, AFullDiskLosesNothing) {
    const OtherMount full("mode=0777,size=64k");
    if (!full.isMounted()) GTEST_SKIP() << "root alone can mount a small file system";
    const std::string content(1 << 20, 'x');
    for (const char* there : {"nothing", "file"}) {
        writeFile(at("old"), content);
        kind(there).make(full.at("there"));
        const auto names = namesIn(full.path());
        const std::string before = contentOf(full.at("there"));
        EXPECT_EQ(moveTo(at("old"), full.at("there")), ENOSPC);
        EXPECT_EQ(contentOf(full.at("there")), before);
        EXPECT_EQ(namesIn(full.path()), names);
        EXPECT_TRUE(contentOf(at("old")) == content);
    }
}

TEST_F(MovingAcrossTest, AFileThatChangesMeanwhileStays) {
    const std::string content(64 << 20, 'x');
    writeFile(at("old"), content);
    writeFile(other.at("there"), "before");
    std::atomic<bool> over = false;
    std::thread changing([&] {
        for (mode_t mode = 0600; !over; mode ^= 1) chmod(at("old").c_str(), mode);
    });
    EXPECT_EQ(moveTo(at("old"), other.at("there")), EBUSY);
    over = true;
    changing.join();
    EXPECT_TRUE(contentOf(at("old")) == content);
    EXPECT_EQ(contentOf(other.at("there")), "before");
    EXPECT_EQ(namesIn(other.path()), std::set<std::string>{"there"});
}

// A folder that takes new names but gives none away: that shows only when the old name should go.
TEST_F(MovingAcrossTest, IfTheOldNameCannotGoTheNewOneIsTakenBack) {
    const Descriptor folder = openAt(AT_FDCWD, at("sub"), O_RDONLY | O_DIRECTORY);
    const auto setFlags = [&](int flags) { return ioctl(folder.number(), FS_IOC_SETFLAGS, &flags) == 0; };
    for (const char* each : {"file", "dangling link"}) {
        for (const char* there : {"nothing", "file", "link to a folder"}) {
            kind(each).make(at("sub/old"));
            kind(there).make(other.at("there"));
            const ino_t inode = inodeOf(other.at("there"));
            const auto names = namesIn(other.path());
            if (!setFlags(FS_APPEND_FL)) GTEST_SKIP() << "no folders here that only grow";
            EXPECT_EQ(moveTo(at("sub/old"), other.at("there")), EPERM) << each << " onto " << there;
            setFlags(0);
            EXPECT_EQ(inodeOf(other.at("there")), inode) << each << " onto " << there;
            EXPECT_EQ(namesIn(other.path()), names);
            EXPECT_NE(inodeOf(at("sub/old")), 0U);
            fs::remove(at("sub/old"));
            fs::remove(other.at("there"));
        }
    }
}

TEST_F(MovingAcrossTest, RightsAreLookedAtBeforeAnythingIsCopied) {
    if (geteuid() != 0 || !other.isMounted()) GTEST_SKIP() << "root alone can become another user";
    struct Case {
        mode_t folder, file;
        int error;
        mode_t left;
    };
    const Case cases[] = {
        {0755, 0644, EACCES, 0}, {01777, 0644, EPERM, 0},
        {0777, 0600, EACCES, 0}, {0777, 06755, 0, 0755},  // Nobody lends what is not his.
        {0777, 0444, 0, 0444},
    };
    for (const Case& c : cases) {
        makeFile(at("sub/old"));
        setxattr(at("sub/old").c_str(), "user.note", "kept", 4, 0);
        chmod(at("sub/old").c_str(), c.file);
        chmod(at("sub").c_str(), c.folder);
        EXPECT_EQ(asNobody([&] { return moveTo(at("sub/old"), other.at("new")); }), c.error) << c.folder;
        EXPECT_EQ(inodeOf(at("sub/old")) == 0, c.error == 0);
        EXPECT_EQ(factsOf(other.at("new")).st_mode & 07777, c.left);
        fs::remove(other.at("new"));
        EXPECT_TRUE(namesIn(other.path()).empty());
    }
}

// Where case does not matter, the other spelling leads to the entry itself.
TEST(MovingCaseTest, AChangeOfCaseAloneIsDone) {
    const OtherMount folding("mode=0777,size=1m,casefold");
    const std::string folder = folding.at("folding");
    fs::create_directory(folder);
    const Descriptor open = openAt(AT_FDCWD, folder, O_RDONLY | O_DIRECTORY);
    int flags = FS_CASEFOLD_FL;
    if (ioctl(open.number(), FS_IOC_SETFLAGS, &flags) != 0) GTEST_SKIP() << "no file system that folds case";
    for (const char* each : {"file", "dangling link", "folder", "pipe"}) {
        for (const bool linked : {false, true}) {
            kind(each).make(folder + "/Äb");
            const ino_t inode = inodeOf(folder + "/äB");
            ASSERT_NE(inode, 0U);
            const bool twin = linked && each != std::string("folder");
            ASSERT_EQ(twin ? link((folder + "/Äb").c_str(), (folder + "/twin").c_str()) : 0, 0);
            EXPECT_EQ(moveTo(folder + "/Äb", folder + "/äB"), 0) << each;
            EXPECT_EQ(inodeOf(folder + "/äB"), inode);
            auto names = namesIn(folder);
            names.erase("twin");
            EXPECT_EQ(names, std::set<std::string>{"äB"}) << each;
            fs::remove_all(folder + "/äB");
            fs::remove(folder + "/twin");
        }
    }
}

}  // namespace
}  // namespace hl
