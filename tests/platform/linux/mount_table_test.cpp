#include "platform/linux/mount_table.h"

#include <gtest/gtest.h>

namespace hl {
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

}  // namespace
}  // namespace hl
