#include "platform/linux/change/moving.h"

#include <linux/fs.h>
#include <sys/ioctl.h>

#include "platform/linux/change/moving_fixture.h"

namespace hl::test {
namespace {

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
            // It is also moved back, below an open base.
            EXPECT_EQ(moveTo({dir.path(), name}, {dir.path(), "old"}), 0) << each.name << " from " << name;
            EXPECT_EQ(inodeOf(at("old")), inode);
            fs::remove_all(at("old"));
        }
    }
}

TEST_F(MovingTest, AFileReplacesAFileAndNothingReplacesAFolder) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {"file", "file", 0},        {"nothing", "file", ENOENT},   {"file", "link to a folder", 0},
        {"pipe", "file", 0},        {"file", "dangling link", 0},  {"link to a folder", "file", 0},
        {"file", "pipe", 0},        {"folder", "folder", EEXIST},  {"file", "empty folder", EISDIR},
        {"file", "folder", EISDIR}, {"file", "read-only file", 0}, {"folder", "empty folder", EEXIST},
        {"folder", "file", EEXIST}, {"nothing", "folder", ENOENT}, {"folder", "link to a folder", EEXIST}};
    for (const auto& [moved, onto, error] : cases) {
        kind(moved).make(at("old"));
        kind(onto).make(at("there"));
        const ino_t old = inodeOf(at("old")), there = inodeOf(at("there"));
        EXPECT_EQ(moveTo(at("old"), at("there")), error) << moved << " onto " << onto;
        EXPECT_EQ(inodeOf(at("old")), error == 0 ? 0 : old) << moved << " onto " << onto;
        EXPECT_EQ(inodeOf(at("there")), error == 0 ? old : there) << moved << " onto " << onto;
        fs::remove_all(at("old"));
        fs::remove_all(at("there"));
    }
}

TEST_F(MovingTest, APlaceThatCannotBeIsToldAndNothingMoves) {
    makeText(at("file"));
    fs::create_directories(at("folder/below"));
    const std::tuple<const char*, std::string, int> cases[] = {
        {"file", "file", 0},           {"missing", "missing", ENOENT},
        {"file", ".", EINVAL},         {"file", "missing/new", ENOENT},
        {"file", "..", EINVAL},        {"folder/below", "folder", EEXIST},
        {"folder", "folder", 0},       {"folder", "folder/below/new", EINVAL},
        {"file", "sub/../file", 0},    {"file", std::string("a\0b", 3), EINVAL},
        {"file", "file/new", ENOTDIR}, {"file", std::string(256, 'n'), ENAMETOOLONG}};
    for (const auto& [old, fresh, error] : cases) {
        EXPECT_EQ(moveTo({dir.path(), old, true}, {dir.path(), fresh, true}), error)
            << old << " to " << fresh;
        EXPECT_EQ(namesIn(dir.path()), (std::set<std::string>{"file", "folder", "sub"})) << fresh;
        EXPECT_EQ(contentOf(at("file")), "content of file");
        EXPECT_TRUE(fs::exists(at("folder/below")));
    }
}

TEST_F(MovingTest, OfTwoNamesOfOneFileTheNewOneIsLeft) {
    for (const char* other : {"other", "sub/other", "sub/old", "OLD"}) {
        makeText(at("old"));
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
    const std::string name(200, 'd');
    FilePlace deep{dir.path(), "new"};
    makeChain(dir.path(), 100, name);
    for (int i = 0; i < 100; ++i) deep.below.insert(0, name + "/");
    makeText(at("old"));
    EXPECT_EQ(moveTo({at("old")}, deep), 0);
    EXPECT_FALSE(fs::exists(at("old")));
    EXPECT_EQ(moveTo(deep, {at("back")}), 0);
    EXPECT_EQ(contentOf(at("back")), "content of old");
}

TEST_F(MovingTest, WithoutTheRightToWriteAFolderNothingMoves) {
    fs::create_directory(at("open"));
    chmod(at("open").c_str(), 0777);
    makeText(at("old"));
    makeText(at("open/old"));
    chmod(at("open/old").c_str(), 0666);
    chmod(dir.path().c_str(), 0555);
    for (const auto& [old, fresh] : {std::pair("old", "new"), {"old", "open/new"}, {"open/old", "new"}})
        EXPECT_EQ(asNobody([&, old = old, fresh = fresh] { return moveTo(at(old), at(fresh)); }), EACCES);
    EXPECT_EQ(namesIn(dir.path()), (std::set<std::string>{"old", "open", "sub"}));
    EXPECT_EQ(asNobody([&] { return moveTo(at("open/old"), at("open/new")); }), 0);
    chmod(dir.path().c_str(), 0755);
}

// Where case does not matter, another spelling leads to the same entry.
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
}  // namespace hl::test
