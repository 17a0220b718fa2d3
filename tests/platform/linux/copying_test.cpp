#include "platform/linux/copying.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/descriptor.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

constexpr off_t kMebi = off_t{1} << 20;

// On two file systems where there are two, so that both ways of copying have their turn.
class CopyingTest : public testing::Test {
  protected:
    test::TempDir dir;
    test::TempDir elsewhere{"/dev/shm"};
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
            EXPECT_TRUE(test::contentOf(path) == test::contentOf(sourcePath)) << name << " in " << path;
            struct stat before {};
            struct stat after {};
            fstat(source.number(), &before);
            fstat(target.number(), &after);
            EXPECT_LE(after.st_blocks, before.st_blocks + 4096) << name << ": holes were filled";
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
            test::writeFile(sourcePath, told > 0 ? bytes : "z");
            const Descriptor target = fresh(path);
            const auto change = [&, size = during] { EXPECT_EQ(ftruncate(source.number(), size), 0); };
            EXPECT_EQ(copyContent(source.number(), target.number(), told, change), EBUSY) << name;
        }
    }
}

// A list that a folder lends to what is made in it: version 2, then tag, rights and id of each entry.
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
    struct stat facts {};
    fchmod(source.number(), 0640);
    fremovexattr(source.number(), "system.posix_acl_access");
    fstat(source.number(), &facts);
    EXPECT_EQ(copyFacts(source.number(), target.number(), facts), 0);
    EXPECT_LT(fgetxattr(target.number(), "system.posix_acl_access", nullptr, 0), 0);
    fsetxattr(source.number(), "system.posix_acl_access", list, sizeof list, 0);
    fstat(source.number(), &facts);
    EXPECT_EQ(copyFacts(source.number(), target.number(), facts), 0);
    unsigned char copied[sizeof list] = {};
    EXPECT_EQ(fgetxattr(target.number(), "system.posix_acl_access", copied, sizeof copied),
              static_cast<ssize_t>(sizeof list));
    EXPECT_TRUE(std::equal(list, list + sizeof list, copied)) << "its own list goes with it";
}

}  // namespace
}  // namespace hl
