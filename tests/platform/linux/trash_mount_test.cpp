#include "platform/linux/trash.h"
#include "support/mounted.h"
#include "support/trashing.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using namespace test;

/// A mount of its own, with a home trash elsewhere.
class TrashingOnAMount : public Trashing {
  protected:
    void SetUp() override {
        if (!mounted.done()) GTEST_SKIP() << "may not mount";
        test::makeFolder(top + "/folder");
        test::writeFile(top + "/folder/a b", "content");
    }
    RecycleError recycleIt() { return moveToTrash({top, "folder/a b"}, settings); }

    const std::string top = root + "/mounted";
    const std::string number = std::to_string(geteuid());
    const std::string own = top + "/.Trash-" + number;
    const std::string shared = top + "/.Trash";
    const Content theOne = {{"a b", "folder/a b"}};
    Mounted mounted{"tmpfs", top, "tmpfs"};
};

TEST_F(TrashingOnAMount, GoesToItsOwnTrashWithAPathFromTheTop) {
    EXPECT_EQ(recycleIt(), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(own), theOne);
    EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
    EXPECT_EQ(moveToTrash({top + "/folder"}, settings), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(own), (Content{{"a b", "folder/a b"}, {"folder", "folder"}}));
    EXPECT_FALSE(fs::exists(home) || fs::exists(dir.path() + "/data"));
    fs::create_directories(home);
    test::writeFile(top + "/another", "");
    EXPECT_EQ(moveToTrash({top + "/another"}, settings), RecycleError::kNone);
    EXPECT_TRUE(fs::is_empty(home));
}

/// How ".Trash" and ".Trash-$uid" may be found, and which of them is used.
TEST_F(TrashingOnAMount, UsesOnlyATrashThatNobodyElseCanTurnAgainstTheUser) {
    const std::string elsewhere = dir.path() + "/elsewhere";
    const auto makeSticky = [](const std::string& path) {
        test::makeFolder(path);
        fs::permissions(path, fs::perms(01777));
    };
    const auto makeForeign = [](const std::string& path) {
        test::makeFolder(path);
        must(chown(path.c_str(), kNobody, kNobody));
    };
    enum class Used { kNothing, kShared, kOwn };
    const std::tuple<const char*, std::function<void()>, Used> cases[] = {
        {"sticky", [&] { makeSticky(shared); }, Used::kShared},
        {"sticky, user's folder there", [&] { makeSticky(shared), test::makeFolder(shared + "/" + number); },
         Used::kShared},
        {"not sticky", [&] { test::makeFolder(shared); }, Used::kOwn},
        {"shared is a link", [&] { fs::create_directory_symlink(elsewhere, shared); }, Used::kOwn},
        {"shared is a file", [&] { test::writeFile(shared, ""); }, Used::kOwn},
        {"user's folder a link",
         [&] { makeSticky(shared), fs::create_directory_symlink(elsewhere, shared + "/" + number); },
         Used::kOwn},
        {"user's folder foreign", [&] { makeSticky(shared), makeForeign(shared + "/" + number); },
         Used::kOwn},
        {"own there", [&] { test::makeFolder(own); }, Used::kOwn},
        {"own a link", [&] { fs::create_directory_symlink(elsewhere, own); }, Used::kNothing},
        {"own a dangling link", [&] { fs::create_symlink(elsewhere + "/not", own); }, Used::kNothing},
        {"own a file", [&] { test::writeFile(own, ""); }, Used::kNothing},
        {"own foreign", [&] { makeForeign(own); }, Used::kNothing},
        {"files a link",
         [&] { test::makeFolder(own), fs::create_directory_symlink(elsewhere, own + "/files"); },
         Used::kNothing},
        {"info a link",
         [&] { test::makeFolder(own), fs::create_directory_symlink(elsewhere, own + "/info"); },
         Used::kNothing}};
    for (const auto& [label, make, where] : cases) {
        SCOPED_TRACE(label);
        makeSticky(elsewhere);
        const std::string before = snapshotOf(elsewhere);
        make();
        const bool used = where != Used::kNothing;
        EXPECT_EQ(recycleIt(), used ? RecycleError::kNone : RecycleError::kNoTrash);
        if (used) {
            EXPECT_EQ(contentOfTrash(where == Used::kOwn ? own : shared + "/" + number), theOne);
        }
        EXPECT_EQ(fs::exists(top + "/folder/a b"), !used);
        EXPECT_EQ(snapshotOf(elsewhere), before);
        for (const std::string& made : {shared, own, elsewhere}) fs::remove_all(made);
        test::writeFile(top + "/folder/a b", "content");
    }
}

TEST_F(TrashingOnAMount, SaysThatItIsReadOnly) {
    for (const bool withTrash : {false, true}) {
        if (withTrash) fs::create_directories(own + "/files"), fs::create_directories(own + "/info");
        must(mount("", top.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr));
        EXPECT_EQ(recycleIt(), RecycleError::kReadOnly);
        must(mount("", top.c_str(), nullptr, MS_REMOUNT, nullptr));
        EXPECT_TRUE(fs::exists(top + "/folder/a b"));
    }
}

TEST_F(TrashingOnAMount, AFullDiskLeavesNoInfoFileBehind) {
    for (const char* part : {"/files", "/info"}) fs::create_directories(own + part);
    must(mount("", top.c_str(), nullptr, MS_REMOUNT, "size=64k"));
    test::writeFile(top + "/filler", std::string(1 << 17, 'x'));
    EXPECT_EQ(recycleIt(), RecycleError::kUnknown);
    EXPECT_EQ(contentOfTrash(own), Content());
    EXPECT_EQ(test::contentOf(top + "/folder/a b"), "content");
}

TEST_F(TrashingOnAMount, HomeTrashOfTheSameMountIsPreferred) {
    settings.homeTrash = top + "/home/data/Trash";
    EXPECT_EQ(recycleIt(), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(settings.homeTrash), (Content{{"a b", top + "/folder/a b"}}));
    EXPECT_FALSE(fs::exists(own));
}

TEST_F(TrashingOnAMount, WithoutAUsableHomeTrashTheMountHasItsOwn) {
    fs::create_directory(top + "/broken");
    test::writeFile(top + "/broken/info", "");
    for (const std::string& path :
         {std::string(), std::string("relative/Trash"), top + "/broken/info/Trash", top + "/broken"}) {
        settings.homeTrash = path;
        test::writeFile(top + "/folder/a b", "content");
        EXPECT_EQ(recycleIt(), RecycleError::kNone) << path;
        EXPECT_EQ(contentOfTrash(own), theOne);
        fs::remove_all(own);
    }
}

TEST_F(Trashing, AMountPointStaysAndWhatIsBoundThereHasATrashOfItsOwn) {
    for (const char* name : {"/file", "/target"}) test::writeFile(root + name, name);
    const std::string source = root + "/source";
    const std::string top = root + "/bound";
    fs::create_directories(source + "/folder");
    test::writeFile(source + "/folder/file", "content");
    const Mounted bound(source, top, nullptr, MS_BIND);
    const Mounted file(root + "/file", root + "/target", nullptr, MS_BIND);
    if (!bound.done()) GTEST_SKIP() << "may not mount";
    const Mounted deep("tmpfs", root + "/above/it/deep", "tmpfs");
    const Mounted twice(root + "/above", root + "/twice", nullptr, MS_BIND);  // Without what lies deep.
    fs::create_directories(root + "/above/it/deeper");
    fs::create_directory_symlink("above", root + "/link");
    for (const char* name :
         {"bound", "bound/", "target", "above", "above/it", "link/it", "above/it/deep", "twice/it"})
        EXPECT_EQ(moveToTrash({root + "/" + name}, settings), RecycleError::kRoot) << name;
    EXPECT_EQ(recycle("above/it/deeper"), RecycleError::kNone);
    EXPECT_EQ(recycle("bound/folder/file"), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(source + "/.Trash-" + std::to_string(geteuid())),
              (Content{{"file", "folder/file"}}));
    EXPECT_EQ(contentOfTrash(home).size(), 1U);
}

TEST_F(TrashingOnAMount, WhatCannotBeRenamedWithinItsMountStays) {
    const std::string over = dir.path() + "/over";
    for (const char* name : {"/lower/folder", "/upper", "/work"}) fs::create_directories(top + name);
    test::writeFile(top + "/lower/folder/file", "content");
    const std::string options =
        "lowerdir=" + top + "/lower,upperdir=" + top + "/upper,workdir=" + top + "/work,redirect_dir=off";
    const Mounted overlay("overlay", over, "overlay", 0, options.c_str());
    if (!overlay.done()) GTEST_SKIP() << "may not lay one file system over another";
    settings.homeTrash = over + "/Trash";
    EXPECT_EQ(moveToTrash({over, "folder"}, settings), RecycleError::kNoTrash);
    EXPECT_EQ(contentOfTrash(settings.homeTrash), Content());
    EXPECT_EQ(contentOfTrash(over + "/.Trash-" + number), Content());
    EXPECT_EQ(test::contentOf(over + "/folder/file"), "content");
    EXPECT_EQ(moveToTrash({over, "folder/file"}, settings), RecycleError::kNone);
}

}  // namespace
}  // namespace hl
