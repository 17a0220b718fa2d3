// Tests moving to another file system.
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>

#include "platform/linux/change/copying.h"
#include "platform/linux/change/moving_fixture.h"

namespace hl::test {
namespace {

struct MovingAcrossTest : MovingTest {
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
            EXPECT_EQ(std::pair(facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec),
                      std::pair(999'999'999L, 987'654'321L));
            EXPECT_EQ(facts.st_atim.tv_nsec, 123'456'789);
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
    const std::tuple<const char*, const char*, int> cases[] = {
        {"folder", "nothing", EXDEV},      {"empty folder", "nothing", EXDEV},
        {"folder", "empty folder", EXDEV}, {"pipe", "nothing", EXDEV},
        {"socket", "file", EXDEV},         {"file", "folder", EISDIR},
        {"file", "empty folder", EISDIR},  {"dangling link", "empty folder", EISDIR},
        {"nothing", "file", ENOENT}};
    for (const auto& [moved, onto, error] : cases) {
        kind(moved).make(at("old"));
        kind(onto).make(other.at("there"));
        const ino_t old = inodeOf(at("old")), there = inodeOf(other.at("there"));
        const auto names = namesIn(other.path());
        const timespec untouched[] = {{1, 0}, {1, 0}};
        utimensat(AT_FDCWD, other.path().c_str(), untouched, 0);
        EXPECT_EQ(moveTo(at("old"), other.at("there")), error) << moved << " onto " << onto;
        EXPECT_EQ(factsOf(other.path()).st_mtim.tv_sec, 1) << "something was made in vain";
        EXPECT_EQ(inodeOf(at("old")), old);
        EXPECT_EQ(inodeOf(other.at("there")), there);
        EXPECT_EQ(namesIn(other.path()), names);
        EXPECT_EQ(fs::exists(at("old/inside")), moved == std::string("folder"));
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

// The folder takes new names but gives none away, which is noticed only when the old name should go.
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
    const std::tuple<mode_t, mode_t, int, mode_t> cases[] = {
        {0755, 0644, EACCES, 0},
        {01777, 0644, EPERM, 0},
        {0777, 0600, EACCES, 0},
        {0777, 06755, 0, 0755},  // Nobody can give rights to what is not theirs.
        {0777, 0444, 0, 0444}};
    for (const auto& [folder, file, error, left] : cases) {
        makeText(at("sub/old"));
        setxattr(at("sub/old").c_str(), "user.note", "kept", 4, 0);
        chmod(at("sub/old").c_str(), file);
        chmod(at("sub").c_str(), folder);
        const timespec untouched[] = {{1, 0}, {1, 0}};
        utimensat(AT_FDCWD, other.path().c_str(), untouched, 0);
        EXPECT_EQ(asNobody([&] { return moveTo(at("sub/old"), other.at("new")); }), error) << folder;
        EXPECT_EQ(factsOf(other.path()).st_mtim.tv_sec == 1, error != 0) << "something was made in vain";
        EXPECT_EQ(inodeOf(at("sub/old")) == 0, error == 0);
        EXPECT_EQ(factsOf(other.at("new")).st_mode & 07777, left);
        fs::remove(other.at("new"));
        EXPECT_TRUE(namesIn(other.path()).empty());
    }
}

constexpr off_t kMebi = off_t{1} << 20;

// Tests between two file systems, if there are two, so that both ways of copying are used.
struct CopyingTest : testing::Test {
    TempDir dir, elsewhere{"/dev/shm"};
    std::string sourcePath = dir.path() + "/source";
    Descriptor source = openAt(AT_FDCWD, sourcePath, O_RDWR | O_CREAT | O_EXCL, 0644);

    static Descriptor fresh(const std::string& path) {
        unlink(path.c_str());
        return openAt(AT_FDCWD, path, O_RDWR | O_CREAT | O_EXCL, 0600);
    }
    std::string targets[2] = {dir.path() + "/target", elsewhere.path() + "/target"};
};

TEST_F(CopyingTest, BytesAndHolesAreCopiedWhereTheyLie) {
    struct Piece {
        off_t at;
        std::string bytes;
    };
    const std::tuple<const char*, std::vector<Piece>, off_t> cases[] = {
        {"empty", {}, 0},
        {"one byte", {{0, "x"}}, 1},
        {"four blocks and one", {{0, std::string(4 * kMebi + 1, 'y')}}, 4 * kMebi + 1},
        {"only a hole", {}, 8 * kMebi},
        {"hole, bytes, hole", {{4 * kMebi + 3, "in the middle"}}, 8 * kMebi},
        {"bytes, hole, bytes", {{0, "first"}, {8 * kMebi - 4, "last"}}, 8 * kMebi}};
    for (const auto& [name, pieces, size] : cases) {
        ASSERT_EQ(ftruncate(source.number(), 0), 0);
        for (const Piece& piece : pieces)
            ASSERT_EQ(pwrite(source.number(), piece.bytes.data(), piece.bytes.size(), piece.at),
                      static_cast<ssize_t>(piece.bytes.size()));
        ASSERT_EQ(ftruncate(source.number(), size), 0);
        for (const std::string& path : targets) {
            const Descriptor target = fresh(path);
            std::size_t asked = 0;
            EXPECT_EQ(copyContent(source.number(), target.number(), size, [&] { ++asked; }), 0) << name;
            EXPECT_TRUE(pieces.empty() || asked > pieces[0].bytes.size() / kMebi) << name << " in one go";
            EXPECT_TRUE(contentOf(path) == contentOf(sourcePath)) << name << " in " << path;
            EXPECT_LE(factsOf(path).st_blocks, factsOf(sourcePath).st_blocks + 4096)
                << name << ": holes were filled";
        }
    }
}

TEST_F(CopyingTest, AnotherSizeThanToldIsBusy) {
    using Case = std::tuple<const char*, off_t, off_t>;
    for (const auto& [name, told, during] :
         {Case{"longer", 4 * kMebi, 4 * kMebi + 1}, Case{"shorter", 4 * kMebi, kMebi},
          Case{"told as empty", 0, 1}}) {
        for (const std::string& path : targets) {
            const std::string bytes(4 * kMebi, 'z');
            writeFile(sourcePath, told > 0 ? bytes : "z");
            const Descriptor target = fresh(path);
            const auto change = [&, size = during] { EXPECT_EQ(ftruncate(source.number(), size), 0); };
            EXPECT_EQ(copyContent(source.number(), target.number(), told, change), EBUSY) << name;
        }
    }
}

// A list of rights that a folder passes on to new entries: version 2, then tag, rights and id of each entry.
TEST_F(CopyingTest, NobodyGetsRightsFromTheNewFolder) {
    const unsigned char list[] = {2,  0, 0, 0,                           //
                                  1,  0, 7, 0, 0xff, 0xff, 0xff, 0xff,   // The owner.
                                  2,  0, 7, 0, 0x39, 0x30, 0,    0,      // User 12345.
                                  4,  0, 0, 0, 0xff, 0xff, 0xff, 0xff,   // The group.
                                  16, 0, 7, 0, 0xff, 0xff, 0xff, 0xff,   // The most.
                                  32, 0, 0, 0, 0xff, 0xff, 0xff, 0xff};  // Others.
    const std::string folder = dir.path();
    if (setxattr(folder.c_str(), "system.posix_acl_default", list, sizeof list, 0) != 0)
        GTEST_SKIP() << "no access lists here";
    const Descriptor target = fresh(folder + "/target");
    ASSERT_GT(fgetxattr(target.number(), "system.posix_acl_access", nullptr, 0), 0);
    fchmod(source.number(), 0640);
    fremovexattr(source.number(), "system.posix_acl_access");
    EXPECT_EQ(copyFacts(source.number(), target.number(), factsOf(sourcePath)), 0);
    EXPECT_LT(fgetxattr(target.number(), "system.posix_acl_access", nullptr, 0), 0);
    fsetxattr(source.number(), "system.posix_acl_access", list, sizeof list, 0);
    EXPECT_EQ(copyFacts(source.number(), target.number(), factsOf(sourcePath)), 0);
    unsigned char copied[sizeof list] = {};
    EXPECT_EQ(fgetxattr(target.number(), "system.posix_acl_access", copied, sizeof copied),
              static_cast<ssize_t>(sizeof list));
    EXPECT_TRUE(std::equal(list, list + sizeof list, copied)) << "its own list goes with it";
}

}  // namespace
}  // namespace hl::test
