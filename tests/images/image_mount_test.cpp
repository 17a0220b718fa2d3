#include "images/image_mount.h"

#include "support/trees.h"

namespace hl::test {

namespace {

class ImageMounts : public testing::TestWithParam<const char*> {};

// A trial on a file system that is not the one that its name says would prove nothing.
TEST_P(ImageMounts, IsAFileSystemOfItsOwnThatKeepsWhatIsWritten) {
    ImageMount image(GetParam());
    if (!image.missing().empty()) GTEST_SKIP() << image.missing();
    EXPECT_TRUE(shellDoes("test \"$(stat -f -c %T '" + image.path() +
                          "')\" = " + (GetParam() == std::string("ext4") ? "ext2/ext3" : GetParam())));
    makeFile(image.path() + "/file", 4);
    ASSERT_TRUE(image.remount());
    EXPECT_EQ(std::filesystem::file_size(image.path() + "/file"), 4U);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ImageMounts, testing::Values("ext4", "xfs", "btrfs"),
                         [](const auto& kind) { return std::string(kind.param); });

}  // namespace

}  // namespace hl::test
