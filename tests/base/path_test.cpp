#include "base/path.h"

#include "base/absolute_path.h"

namespace hl {
namespace {

// A path, and what each set of rules makes of it.
struct Case {
    std::string_view path, posix, drive;
};

TEST(LongPath, HasThePrefixOfItsKindAndNoneWhereLengthHasNoLimit) {
    EXPECT_EQ(ToLongPath("C:\\a ", kDrivePaths), "\\\\?\\C:\\a ");
    EXPECT_EQ(ToLongPath("\\\\server\\a", kDrivePaths), "\\\\?\\UNC\\server\\a");
    EXPECT_EQ(ToLongPath("/a ", kPosixPaths), "/a ");
}

TEST(TrailingSlash, IsAddedOnceAndBlanksAreTrimmedOnlyWithIt) {
    const Case cases[] = {{"", "/", "\\"},          {"/", "/", "/\\"},       {"\\", "\\/", "\\"},
                          {"/a", "/a/", "/a\\"},    {"/a/", "/a/", "/a/\\"}, {" a ", " a /", "a\\"},
                          {" a\\", " a\\/", " a\\"}};
    for (const auto& [path, posix, drive] : cases) {
        EXPECT_EQ(AddTrailingSlash(path, kPosixPaths), posix) << path;
        EXPECT_EQ(AddTrailingSlash(path, kDrivePaths), drive) << path;
    }
}

TEST(JoinPath, PutsOneSeparatorBetweenParentAndName) {
    EXPECT_EQ(joinPath("/", "usr", kPosixPaths), "/usr");
    EXPECT_EQ(joinPath("/a\\", "\xFF\n ", kPosixPaths), "/a\\/\xFF\n ");
    EXPECT_EQ(joinPath("C:\\", "a", kDrivePaths), "C:\\a");
    EXPECT_EQ(joinPath("C:\\a", "b", kDrivePaths), "C:\\a\\b");
}

TEST(FolderAbove, IsTheRootAtLastAndThenNothing) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"/a/b", "/a"}, {"/a", "/"}, {"/", ""}, {"", ""}, {"a", ""}, {"/a/\xFF ", "/a"}};
    for (const auto& [path, folder] : cases) EXPECT_EQ(folderAbove(path, kPosixPaths), folder) << path;
    EXPECT_EQ(folderAbove("\\\\s\\a\\b", kDrivePaths), "\\\\s\\a");
}

TEST(IdentityKey, FoldsOnlyWhereThePlatformDoes) {
    EXPECT_EQ(identityKey("/Home/Ärger/\xFF", kPosixPaths), "/Home/Ärger/\xFF");
    EXPECT_EQ(identityKey("C:\\Home\\Ärger\\\xFF", kDrivePaths), "c:\\home\\ärger\\\xFF");
}

TEST(TrimAtNul, EndsAtTheFirstNul) {
    EXPECT_EQ(TrimAtNul("abc"), "abc");
    EXPECT_EQ(TrimAtNul(std::string_view("ab\0c\0", 5)), "ab");
}

TEST(Extension, IsWhatFollowsTheLastPoint) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"a.tar.gz", "gz"}, {"a", ""}, {"a.", ""}, {".profile", "profile"}};
    for (const auto& [name, extension] : cases) EXPECT_EQ(xGetExtension(name), extension) << name;
}

TEST(NetworkPath, BeginsWithTwoSeparatorsOfOneKind) {
    for (const char* path : {"//server/share", "\\\\server\\share", "//"})
        EXPECT_TRUE(isNetworkPath(path)) << path;
    for (const char* path : {"", "/", "/a", "/\\server", "\\/server", "a//b", "aa"})
        EXPECT_FALSE(isNetworkPath(path)) << path;
}

TEST(AbsoluteSource, ResolvesWhatIsTypedByItsText) {
    const PathBases bases{"/cwd/b", "/home/u/"};
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"", ""},        {"./", "/cwd/b/"}, {"/a/b/../", "/a/"},  {"a/../c", "/cwd/b/c"},
        {"/..", "/"},    {"/a/b/..", "/a"}, {"/a//./b", "/a/b"},  {"//s/../x", "//s/../x"},
        {"/~", "/~"},    {" ", "/cwd/b/ "}, {"~u", "/cwd/b/~u"},  {"\\\\s\\..", "\\\\s\\.."},
        {"..", "/cwd"},  {"/\xFF/..", "/"}, {"../../../x", "/x"}, {"/.../.a/..b", "/.../.a/..b"},
        {".", "/cwd/b"}, {"~", "/home/u/"}, {"~/x", "/home/u/x"}};
    for (const auto& [text, path] : cases) EXPECT_EQ(absoluteSource(text, bases, kPosixPaths), path) << text;
    EXPECT_EQ(absoluteSource("~/x", {"/cwd", ""}, kPosixPaths), "/cwd/~/x");
    EXPECT_EQ(absoluteSource("a/../b", {"", ""}, kPosixPaths), "a/../b") << "no base, so no folder to leave";
    EXPECT_EQ(absoluteSource("..\\..\\x", {"C:\\cwd", ""}, kDrivePaths), "C:\\x");
    EXPECT_EQ(absoluteSource("D:\\.\\a\\..", {"C:\\cwd", ""}, kDrivePaths), "D:\\");
}

}  // namespace
}  // namespace hl
