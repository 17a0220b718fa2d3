#include "platform/linux/drives/mount_table.h"

#include "support/fuse_mount.h"

namespace hl::test {
namespace {

TEST(MountTable, ReadsTheKernelsLines) {
    const auto mounts = parseMountTable(
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "30 22 0:25 / /media/my\\040disk\\011\xFF rw,nosuid shared:2 master:1 - nfs4 server:/share rw\n"
        "31 22 8:1 /srv/data /mnt/b\\134x rw - ext4 /dev/sda1 rw");
    ASSERT_EQ(mounts.size(), 3U);
    EXPECT_EQ(std::to_string(mounts[0].id) + " " + whatIsMounted(mounts[0]), "22 /dev/sda1");
    EXPECT_EQ(mounts[1].mountPoint + " " + mounts[1].kind, "/media/my disk\t\xFF nfs4");
    EXPECT_EQ(mounts[2].mountPoint + " " + whatIsMounted(mounts[2]), "/mnt/b\\x /dev/sda1:/srv/data");
}

TEST(MountTable, PassesOverWhatMakesNoSense) {
    for (const char* text : {"", "\n\n", "22", "x y z / /p rw - t s", "22 1 8:1 / relative rw - ext4 d rw",
                             "22 1 8:1 / /p rw shared:1", "22 1 8:1 / /p rw -"})
        EXPECT_TRUE(parseMountTable(text).empty()) << text;
    EXPECT_FALSE(readMountTable().empty()) << "on a real machine there are some";
    EXPECT_EQ(parseMountTable("bad\n7 1 8:1 / /p rw - tmpfs tmpfs rw\nbad").size(), 1U);
}

TEST(MountTable, TellsTheMountThatAPathLiesOn) {
    const auto mounts = parseMountTable(
        "20 1 8:1 / / rw - ext4 disk rw\n"
        "21 20 0:1 / /mnt/a/b rw - nfs hidden:/ rw\n"
        "22 20 0:2 / /mnt/a rw - tmpfs below rw\n"
        "23 22 0:3 / /mnt/a rw - xfs over rw\n"
        "24 23 0:4 / /mnt/a/b/c rw - fuse.sshfs server: rw\n"
        "25 99 0:5 / /elsewhere rw - ext4 cut rw");
    for (const auto& [path, source] : std::map<std::string, std::string>{{"/", "disk"},
                                                                         {"/mnt/abc", "disk"},
                                                                         {"/mnt/a", "over"},
                                                                         {"/mnt/a/b/x", "over"},
                                                                         {"/mnt/a/b/c", "server:"},
                                                                         {"/mnt/a/b/c/d", "server:"}})
        EXPECT_EQ(mountOf(mounts, path)->source, source) << path;
    EXPECT_EQ(mountOf({}, "/"), nullptr);
    EXPECT_TRUE(canHang(parseMountTable("20 1 0:1 / / rw - nfs server:/ rw"), "/"));
}

TEST(MountTable, KnowsWhatCanHangAlsoBehindLinksAndWithoutAskingIt) {
    for (const char* kind :
         {"nfs4", "cifs", "fuse", "fuseblk", "fuse.sshfs", "fuse.anything", "autofs", "9p"})
        EXPECT_TRUE(kindCanHang(kind)) << kind;
    for (const char* kind : {"ext4", "btrfs", "xfs", "tmpfs", "overlay", "proc", "fusectl", "nfsd"})
        EXPECT_FALSE(kindCanHang(kind)) << kind;

    const TempDir dir;
    makeTree(dir.path(), {"shown/file", "beside/"});
    FuseMount mount(dir.path() + "/shown", dir.path() + "/mount");
    if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    mount.stopAnswering();
    for (const auto& [name, target] : {std::pair("absolute", dir.path() + "/mount"),
                                       {"relative", "beside/../mount/file"},
                                       {"chain", "absolute/x"},
                                       {"local", "beside"},
                                       {"loop", "loop"}})
        fs::create_symlink(target, dir.path() + "/" + name);
    for (const char* path :
         {"mount", "mount/", "mount/file", "absolute", "relative", "chain/y", "local/../mount"})
        EXPECT_TRUE(canHang(dir.path() + "/" + path)) << path;
    for (const char* path : {"", "beside", "local/none", "loop", "mounted", "mount/.."})
        EXPECT_EQ(canHang(dir.path() + "/" + path), std::string_view(path) == "mount/..") << path;
}

}  // namespace
}  // namespace hl::test
