#include "platform/linux/change/trash.h"

#include "platform/linux/change/restoring.h"
#include "support/environment.h"
#include "support/kinds.h"
#include "support/mounted.h"
#include "support/trashing.h"

namespace hl::test {
namespace {

/// Each kind of thing is under its own name, and a file is under each odd name.
TEST_F(Trashing, WhateverItIsItGoesWholeAndCanComeBackToWhereItWas) {
    std::string everyByte;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/' && everyByte.size() < 245) everyByte += static_cast<char>(byte);
    std::vector<std::pair<std::string, const Kind*>> things;
    for (const Kind& each : kKinds) things.emplace_back(each.name, &each);
    things.pop_back();  // The last one is no thing at all.
    for (const std::string odd : {"a\nPath=etc\n", "100%41 \t#;", "\xff\xfe\x80 \xc3", "gone (deleted)",
                                  "x.trashinfo", everyByte.c_str()})
        things.emplace_back(odd, &kind("file"));
    for (const auto& [name, thing] : things) {
        const std::string path = root + "/" + name;
        thing->make(path);
        const std::string before = snapshotOf(path);
        Moved moved;
        ASSERT_EQ(moveToTrash({root, name}, settings, &moved), RecycleError::kNone) << name;
        EXPECT_EQ(snapshotOf(path), "nothing\n") << name;
        EXPECT_EQ(contentOfTrash(home), (Content{{name, path}}));
        EXPECT_EQ(snapshotOf(home + "/files/" + name), before);
        Whereabouts whereabouts;
        EXPECT_TRUE(putBack(moved, {root, name}, whereabouts)) << name;
        EXPECT_EQ(snapshotOf(path), before);
        EXPECT_EQ(contentOfTrash(home), Content());
    }
}

TEST_F(Trashing, PutsNothingBackOverSomethingElse) {
    makeTree(root, {"a", "folder/in", "sub/b"});
    Moved a, folder, b;
    for (const auto& [name, moved] : {std::pair("a", &a), {"folder", &folder}, {"sub/b", &b}})
        ASSERT_EQ(moveToTrash({root, name}, settings, moved), RecycleError::kNone);
    const std::string all = snapshotOf(home);
    const auto kindOf = [&](const Moved& moved, const char* name) {
        Whereabouts whereabouts;
        return putBack(moved, {root, name}, whereabouts).error().kind;
    };
    fs::create_directory(root + "/folder");
    writeFile(root + "/a", "new");
    EXPECT_EQ(kindOf(a, "a"), ErrorKind::kTaken);
    EXPECT_EQ(kindOf(folder, "folder"), ErrorKind::kTaken) << "not even over an empty folder";
    fs::remove(root + "/sub");
    EXPECT_EQ(kindOf(b, "sub/b"), ErrorKind::kNotFound);
    writeFile(root + "/sub", "");
    EXPECT_EQ(kindOf(b, "sub/b"), ErrorKind::kNoFolder);
    EXPECT_EQ(snapshotOf(home), all);
    // Something else has the place in the trash, or nothing.
    fs::rename(home + "/files/b", home + "/files/elsewhere");
    EXPECT_EQ(kindOf(b, "b"), ErrorKind::kMovedOn);
    writeFile(home + "/files/b", "other");
    EXPECT_EQ(kindOf(b, "b"), ErrorKind::kMovedOn);
    EXPECT_EQ(contentOf(root + "/a"), "new");
}

TEST_F(Trashing, MakesTheHomeTrashForNobodyElse) {
    const mode_t before = umask(0);
    writeFile(root + "/file", "");
    EXPECT_EQ(recycle("file"), RecycleError::kNone);
    umask(before);
    for (const char* part : {"/data", "/data/Trash", "/data/Trash/files", "/data/Trash/info"})
        EXPECT_EQ(fs::status(dir.path() + part).permissions(), fs::perms::owner_all) << part;
}

TEST_F(Trashing, WritesTheLocalTime) {
    writeFile(root + "/file", "");
    const auto farEast = [] {
        char text[32] = {};
        const time_t shifted = time(nullptr) + (5 * 60 + 17) * 60;
        strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", gmtime(&shifted));
        return std::string(text);
    };
    const std::string before = farEast();
    const Environment zone({{"TZ", "XYZ-5:17"}, {"LC_ALL", "C"}});
    EXPECT_EQ(recycle("file"), RecycleError::kNone);
    const std::string info = contentOf(home + "/info/file.trashinfo");
    const std::string date = info.substr(info.rfind('=') + 1, before.size());
    EXPECT_LE(before, date);
    EXPECT_LE(date, farEast());
}

TEST_F(Trashing, KeepsEntriesOfTheSameNameApart) {
    makeTree(root, {"same", "b/same/full/"});
    writeDeepFile(root + "/a/same", "2");
    for (const char* one : {"same", "a/same", "b/same"}) EXPECT_EQ(recycle(one), RecycleError::kNone) << one;
    EXPECT_EQ(
        contentOfTrash(home),
        (Content{{"same", root + "/same"}, {"same.2", root + "/a/same"}, {"same.3", root + "/b/same"}}));
    EXPECT_EQ(contentOf(home + "/files/same.2"), "2");
    for (int i = 0; i < 120; ++i) {
        writeFile(root + "/same", "");
        ASSERT_EQ(recycle("same"), RecycleError::kNone) << "behind many";
    }
    EXPECT_EQ(contentOfTrash(home).size(), 123U);
}

TEST_F(Trashing, LeavesWhatLiesInTheTrashWithoutAnInfoFile) {
    makeTree(home, {"files/name/", "info/"});
    fs::create_symlink("/nowhere", home + "/files/name.2");
    writeFile(root + "/name", "mine");
    EXPECT_EQ(recycle("name"), RecycleError::kNone);
    EXPECT_EQ(contentOf(home + "/files/name.3"), "mine");
    EXPECT_TRUE(fs::is_empty(home + "/files/name"));
    EXPECT_FALSE(fs::exists(home + "/info/name.trashinfo") || fs::exists(home + "/info/name.2.trashinfo"));
}

TEST_F(Trashing, ShortensANameUntilItsInfoFileHasOneToo) {
    const std::string beginning(243, 'n');
    const std::string longest = beginning + "\u20AC\u20ACnnnnnn";  // They have three bytes each.
    for (int i = 0; i < 2; ++i) {
        writeFile(root + "/" + longest, "");
        EXPECT_EQ(recycle(longest), RecycleError::kNone);
    }
    const std::string from = root + "/" + longest;
    EXPECT_EQ(contentOfTrash(home), (Content{{beginning, from}, {beginning + ".2", from}}))
        << "cut between two characters";
}

TEST_F(Trashing, NamesThePlaceWithoutTheLinksOnTheWay) {
    makeTree(root, {"real/one", "real/two", "real/three"});
    fs::create_directory_symlink("real", root + "/link");
    EXPECT_EQ(moveToTrash({root + "/link/one"}, settings), RecycleError::kNone);
    EXPECT_EQ(moveToTrash({root, "link/two", true}, settings), RecycleError::kNone);
    EXPECT_EQ(moveToTrash({root, "link/three"}, settings), RecycleError::kInvalidPath);
    EXPECT_EQ(contentOfTrash(home), (Content{{"one", root + "/real/one"}, {"two", root + "/real/two"}}));
    EXPECT_TRUE(fs::exists(root + "/real/three"));
}

TEST_F(Trashing, NamesAPlaceThatIsLongerThanTheKernelTells) {
    const std::string step(200, 's');
    constexpr int kDepth = 30;
    std::string below;
    makeChain(root, kDepth + 1, step);
    for (int i = 0; i < kDepth; ++i) below += step + "/";
    EXPECT_EQ(recycle(below + "f"), RecycleError::kNone);
    EXPECT_TRUE(contentOfTrash(home) == (Content{{"f", root + "/" + below + "f"}})) << "long, so not printed";
    // A place so long can only be told by names.
    EXPECT_EQ(moveToTrash({root, below + "../f", true}, settings), RecycleError::kUnknown);
}

TEST_F(Trashing, SaysWhatIsNotThere) {
    writeFile(root + "/file", "");
    const std::pair<FilePlace, RecycleError> cases[] = {
        {{root, "vanished"}, RecycleError::kInvalidPath},
        {{root, "no/where"}, RecycleError::kInvalidPath},
        {{root, "file/below"}, RecycleError::kInvalidPath},
        {{root + "/vanished"}, RecycleError::kInvalidPath},
        {{root, std::string(300, 'n')}, RecycleError::kNameTooLong},
        {{root, ".."}, RecycleError::kUnknown},
        {{"/"}, RecycleError::kRoot},
        {{"/proc"}, RecycleError::kRoot}};
    for (const auto& [place, error] : cases)
        EXPECT_EQ(moveToTrash(place, settings), error) << place.base << " " << place.below;
    EXPECT_EQ(contentOfTrash(home), Content());
    EXPECT_TRUE(fs::exists(root + "/file"));
}

TEST_F(Trashing, RefusesItselfAndWhatHoldsIt) {
    makeTree(home, {"files/", "info/"});
    const std::string before = snapshotOf(dir.path());
    for (const char* name : {"data", "data/Trash", "data/Trash/files", "data/Trash/info"})
        EXPECT_EQ(moveToTrash({dir.path(), name}, settings), RecycleError::kUnknown) << name;
    EXPECT_EQ(snapshotOf(dir.path()), before);
}

TEST_F(Trashing, TakesNothingFromWhereTheUserMayNot) {
    const uid_t user = geteuid() == 0 ? kNobody : geteuid();
    fs::permissions(dir.path(), fs::perms(0755));
    fs::create_directories(home);
    if (user == kNobody) must(chown(home.c_str(), kNobody, kNobody));
    writeFile(root + "/file", "kept");
    fs::permissions(root, fs::perms(0555));
    const auto recycled = [&] { return static_cast<int>(moveToTrash({root, "file"}, {home, user})); };
    EXPECT_EQ(asNobody(recycled), static_cast<int>(RecycleError::kAccess));
    fs::permissions(root, fs::perms(0755));
    EXPECT_EQ(contentOfTrash(home), Content());
    EXPECT_EQ(contentOf(root + "/file"), "kept");
}

TEST(TrashSettings, FollowTheEnvironmentWhereItNamesAbsoluteFolders) {
    const char* const cases[][2] = {{"/data", "/data/Trash"},
                                    {"data", "/home/me/.local/share/Trash"},
                                    {"", "/home/me/.local/share/Trash"},
                                    {nullptr, "/home/me/.local/share/Trash"}};
    for (const auto& [data, expected] : cases) {
        const Environment set({{"XDG_DATA_HOME", data}, {"HOME", "/home/me"}});
        EXPECT_EQ(trashSettingsFromEnvironment().homeTrash, expected);
        EXPECT_EQ(trashSettingsFromEnvironment().user, geteuid());
    }
    const Environment set({{"XDG_DATA_HOME", nullptr}, {"HOME", "relative"}});
    const std::string known = trashSettingsFromEnvironment().homeTrash;
    EXPECT_TRUE(known.starts_with('/') && known.ends_with("/.local/share/Trash")) << known;
}

/// Another implementation decides: it must restore what we throw away.
TEST_F(Trashing, AnotherProgramRestoresIt) {
    const std::string data = dir.path() + "/data";
    const Environment set({{"XDG_DATA_HOME", data.c_str()},
                           {"XDG_RUNTIME_DIR", dir.path().c_str()},
                           {"GVFS_DISABLE_FUSE", "1"}});
    const auto judge = [](const std::string& arguments) {
        return std::system(("dbus-run-session -- gio " + arguments + " >/dev/null 2>&1").c_str());
    };
    if (judge("list trash:///") != 0)
        GTEST_SKIP() << "needs gio, its daemon for the trash, and dbus-run-session";
    makeTree(root, {"folder/in/file", "a file 100%.txt"});
    for (const auto& [name, address] :
         {std::pair("a file 100%.txt", "a%20file%20100%25.txt"), {"folder", "folder"}}) {
        const std::string path = root + "/" + name, before = snapshotOf(path);
        ASSERT_EQ(recycle(name), RecycleError::kNone);
        ASSERT_EQ(snapshotOf(path), "nothing\n");
        EXPECT_EQ(judge("trash --restore 'trash:///" + std::string(address) + "'"), 0);
        EXPECT_EQ(snapshotOf(path), before);
        EXPECT_EQ(contentOfTrash(home), Content());
    }
}

/// The files are in memory, because a disk would take seconds.
struct TrashingInMemory : Trashing {
    TrashingInMemory() : Trashing("/dev/shm") {}
};

TEST_F(TrashingInMemory, ASwappedFolderLeadsNowhereElse) {
    constexpr int kRounds = 1000;
    const std::string precious = dir.path() + "/precious", fresh = dir.path() + "/fresh";
    const std::string victim = root + "/victim", other = root + "/other";
    const auto makeFull = [](const std::string& path) { makeTree(path, {"child", "in/child"}); };
    const auto moveTo = [&](const std::string& name) {
        return renameat2(AT_FDCWD, fresh.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0;
    };
    makeFull(precious);
    const std::string before = snapshotOf(precious);
    std::atomic<bool> ends{false};
    std::thread swapper([&] {
        while (!ends) renameat2(AT_FDCWD, victim.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
    });
    std::map<RecycleError, int> results;
    for (int round = 0; round < kRounds; ++round) {
        // One name belongs to a real folder, the other to a link to the precious one.
        for (const std::string& name : {victim, other}) fs::remove_all(name);
        makeFull(fresh);
        moveTo(victim);
        fs::create_directory_symlink(precious, fresh);
        moveTo(other);
        for (const char* name : {"victim/child", "victim/in/child", "victim"}) ++results[recycle(name)];
    }
    ends = true;
    swapper.join();
    EXPECT_EQ(snapshotOf(precious), before);
    EXPECT_GE(results[RecycleError::kNone], kRounds);
    EXPECT_GE(results[RecycleError::kInvalidPath], 1) << "never met the link";
    EXPECT_EQ(results[RecycleError::kNone] + results[RecycleError::kInvalidPath], 3 * kRounds);
}

/// Has a mount of its own, and the home trash elsewhere.
struct TrashingOnAMount : Trashing {
    void SetUp() override {
        if (!mounted.done()) GTEST_SKIP() << "may not mount";
        writeDeepFile(top + "/folder/a b", "content");
    }
    RecycleError recycleIt() { return moveToTrash({top, "folder/a b"}, settings); }

    const std::string top = root + "/mounted";
    const std::string number = std::to_string(geteuid());
    const std::string own = top + "/.Trash-" + number, shared = top + "/.Trash";
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
    writeFile(top + "/another", "");
    EXPECT_EQ(moveToTrash({top + "/another"}, settings), RecycleError::kNone);
    EXPECT_TRUE(fs::is_empty(home));
}

/// The states in which ".Trash" and ".Trash-$uid" may be found, and which of the two is used then.
TEST_F(TrashingOnAMount, UsesOnlyATrashThatNobodyElseCanTurnAgainstTheUser) {
    const std::string elsewhere = dir.path() + "/elsewhere";
    const auto makeSticky = [](const std::string& path) {
        makeFolder(path);
        fs::permissions(path, fs::perms(01777));
    };
    const auto makeForeign = [](const std::string& path) {
        makeFolder(path);
        must(chown(path.c_str(), kNobody, kNobody));
    };
    enum class Used { kNothing, kShared, kOwn };
    const std::tuple<const char*, std::function<void()>, Used> cases[] = {
        {"sticky", [&] { makeSticky(shared); }, Used::kShared},
        {"sticky, user's folder there", [&] { makeSticky(shared), makeFolder(shared + "/" + number); },
         Used::kShared},
        {"not sticky", [&] { makeFolder(shared); }, Used::kOwn},
        {"shared is a link", [&] { fs::create_directory_symlink(elsewhere, shared); }, Used::kOwn},
        {"shared is a file", [&] { writeFile(shared, ""); }, Used::kOwn},
        {"user's folder a link",
         [&] { makeSticky(shared), fs::create_directory_symlink(elsewhere, shared + "/" + number); },
         Used::kOwn},
        {"user's folder foreign", [&] { makeSticky(shared), makeForeign(shared + "/" + number); },
         Used::kOwn},
        {"own there", [&] { makeFolder(own); }, Used::kOwn},
        {"own a link", [&] { fs::create_directory_symlink(elsewhere, own); }, Used::kNothing},
        {"own a dangling link", [&] { fs::create_symlink(elsewhere + "/not", own); }, Used::kNothing},
        {"own a file", [&] { writeFile(own, ""); }, Used::kNothing},
        {"own foreign", [&] { makeForeign(own); }, Used::kNothing},
        {"files a link", [&] { makeFolder(own), fs::create_directory_symlink(elsewhere, own + "/files"); },
         Used::kNothing},
        {"info a link", [&] { makeFolder(own), fs::create_directory_symlink(elsewhere, own + "/info"); },
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
        writeFile(top + "/folder/a b", "content");
    }
}

TEST_F(TrashingOnAMount, SaysThatItIsReadOnly) {
    for (const bool withTrash : {false, true}) {
        if (withTrash) makeTree(own, {"files/", "info/"});
        must(mount("", top.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr));
        EXPECT_EQ(recycleIt(), RecycleError::kReadOnly);
        must(mount("", top.c_str(), nullptr, MS_REMOUNT, nullptr));
        EXPECT_TRUE(fs::exists(top + "/folder/a b"));
    }
}

TEST_F(TrashingOnAMount, AFullDiskLeavesNoInfoFileBehind) {
    makeTree(own, {"files/", "info/"});
    must(mount("", top.c_str(), nullptr, MS_REMOUNT, "size=64k"));
    writeFile(top + "/filler", std::string(1 << 17, 'x'));
    EXPECT_EQ(recycleIt(), RecycleError::kUnknown);
    EXPECT_EQ(contentOfTrash(own), Content());
    EXPECT_EQ(contentOf(top + "/folder/a b"), "content");
}

TEST_F(TrashingOnAMount, UsesAHomeTrashOfTheSameMountIfThatIsUsableAndElseItsOwn) {
    writeDeepFile(top + "/broken/info", "");
    for (const std::string& path :
         {std::string(), std::string("relative/Trash"), top + "/broken/info/Trash", top + "/broken"}) {
        settings.homeTrash = path;
        writeFile(top + "/folder/a b", "content");
        EXPECT_EQ(recycleIt(), RecycleError::kNone) << path;
        EXPECT_EQ(contentOfTrash(own), theOne);
        fs::remove_all(own);
    }
    settings.homeTrash = top + "/home/data/Trash";
    writeFile(top + "/folder/a b", "content");
    EXPECT_EQ(recycleIt(), RecycleError::kNone);
    EXPECT_EQ(contentOfTrash(settings.homeTrash), (Content{{"a b", top + "/folder/a b"}}));
    EXPECT_FALSE(fs::exists(own));
}

TEST_F(Trashing, AMountPointStaysAndWhatIsBoundThereHasATrashOfItsOwn) {
    for (const char* name : {"/file", "/target"}) writeFile(root + name, name);
    const std::string source = root + "/source", top = root + "/bound";
    writeDeepFile(source + "/folder/file", "content");
    const Mounted bound(source, top, nullptr, MS_BIND);
    const Mounted file(root + "/file", root + "/target", nullptr, MS_BIND);
    if (!bound.done()) GTEST_SKIP() << "may not mount";
    const Mounted deep("tmpfs", root + "/above/it/deep", "tmpfs");
    const Mounted twice(root + "/above", root + "/twice", nullptr, MS_BIND);  // Without the mounts below.
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
    makeTree(top, {"upper/", "work/"});
    writeDeepFile(top + "/lower/folder/file", "content");
    const std::string options =
        "lowerdir=" + top + "/lower,upperdir=" + top + "/upper,workdir=" + top + "/work,redirect_dir=off";
    const Mounted overlay("overlay", over, "overlay", 0, options.c_str());
    if (!overlay.done()) GTEST_SKIP() << "may not lay one file system over another";
    settings.homeTrash = over + "/Trash";
    EXPECT_EQ(moveToTrash({over, "folder"}, settings), RecycleError::kNoTrash);
    EXPECT_EQ(contentOfTrash(settings.homeTrash), Content());
    EXPECT_EQ(contentOfTrash(over + "/.Trash-" + number), Content());
    EXPECT_EQ(contentOf(over + "/folder/file"), "content");
    EXPECT_EQ(moveToTrash({over, "folder/file"}, settings), RecycleError::kNone);
}

}  // namespace
}  // namespace hl::test
