#include "base/path.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

// What each rule set makes of a path.
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

}  // namespace
}  // namespace hl
