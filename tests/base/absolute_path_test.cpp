#include "base/absolute_path.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

struct Case {
    std::string_view text, path;
};

TEST(AbsoluteSource, ResolvesWhatIsTypedByItsText) {
    const PathBases bases{"/cwd/b", "/home/u/"};
    const Case cases[] = {{".", "/cwd/b"},
                          {"./", "/cwd/b/"},
                          {"..", "/cwd"},
                          {"../../../x", "/x"},
                          {"a/../c", "/cwd/b/c"},
                          {"/a/b/..", "/a"},
                          {"/a/b/../", "/a/"},
                          {"/..", "/"},
                          {"/a//./b", "/a/b"},
                          {"/.../.a/..b", "/.../.a/..b"},
                          {" ", "/cwd/b/ "},
                          {"/\xFF/..", "/"},
                          {"~", "/home/u/"},
                          {"~/x", "/home/u/x"},
                          {"~u", "/cwd/b/~u"},
                          {"/~", "/~"},
                          {"", ""},
                          {"//s/../x", "//s/../x"},
                          {"\\\\s\\..", "\\\\s\\.."}};
    for (const auto& [text, path] : cases) EXPECT_EQ(absoluteSource(text, bases, kPosixPaths), path) << text;
    EXPECT_EQ(absoluteSource("~/x", {"/cwd", ""}, kPosixPaths), "/cwd/~/x");
    EXPECT_EQ(absoluteSource("a/../b", {"", ""}, kPosixPaths), "a/../b") << "no base, so no folder to leave";
    EXPECT_EQ(absoluteSource("..\\..\\x", {"C:\\cwd", ""}, kDrivePaths), "C:\\x");
    EXPECT_EQ(absoluteSource("D:\\.\\a\\..", {"C:\\cwd", ""}, kDrivePaths), "D:\\");
}

}  // namespace
}  // namespace hl
