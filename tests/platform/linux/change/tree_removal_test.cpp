// Tests the removal of trees on a real disk: what goes, what stays, and that nothing outside is touched.
#include "platform/linux/change/tree_removal.h"

#include "support/mounted.h"
#include "support/subvolume_calls.h"

namespace hl::test {
namespace {

Removal removeTree(const FilePlace& place, DirectoryCalls& calls, std::size_t budget = 64) {
    Whereabouts whereabouts;
    return TreeRemoval(calls, whereabouts, budget).run(place);
}

Removal removeTree(const FilePlace& place) {
    DirectoryCalls calls;
    return removeTree(place, calls);
}

bool isThere(const std::string& path) {
    return inodeOf(path) != 0;
}

struct TreeRemovalTest : ::testing::Test {
    std::string in(const std::string& name) const { return dir_.path() + "/" + name; }
    void make(std::initializer_list<std::string_view> paths) const { makeTree(dir_.path(), paths); }
    static std::vector<int> errorsOf(const Removal& removal) {
        std::vector<int> errors;
        for (const RemovalFailure& failure : removal.failures) errors.push_back(failure.error.number);
        return errors;
    }

    TempDir dir_;
};

TEST_F(TreeRemovalTest, TheRootOfASubvolumeIsBusyWhereverItLies) {
    make({"root/a/file", "root/b/sub ro/kept", "root/b/file", "root/sub empty/", "root/z/file"});
    SubvolumeCalls calls;
    const Removal whole = removeTree({in("root")}, calls);
    EXPECT_FALSE(whole.removed);
    std::vector<int> errors = errorsOf(whole);
    std::sort(errors.begin(), errors.end());
    EXPECT_EQ(errors, (std::vector{EBUSY, EBUSY, ENOTEMPTY, ENOTEMPTY}));
    EXPECT_TRUE(isThere(in("root/b/sub ro/kept")) && isThere(in("root/sub empty")));
    for (const char* gone : {"root/a", "root/b/file", "root/z"}) EXPECT_FALSE(isThere(in(gone))) << gone;
    const Removal itself = removeTree({in("root/sub empty")}, calls);
    EXPECT_EQ(errorsOf(itself), std::vector{EBUSY});
    EXPECT_TRUE(!itself.removed && !itself.vanished && isThere(in("root/sub empty")));
}

// Makes everything that may be in a folder.
void fill(const std::string& root, const std::string& outside) {
    makeTree(root, {"sub/deeper/file", "empty/", "file", "bad \xFF\n name", std::string(255, 'n')});
    must(::chmod((root + "/file").c_str(), 0400));
    must(::mkfifo((root + "/fifo").c_str(), 0600));
    must(::symlink((outside + "/file").c_str(), (root + "/to file").c_str()));
    must(::symlink(outside.c_str(), (root + "/to folder").c_str()));
    must(::symlink("gone", (root + "/dangling").c_str()));
    must(::symlink("itself", (root + "/itself").c_str()));
    must(::link((outside + "/file").c_str(), (root + "/hardlink").c_str()));
}

TEST_F(TreeRemovalTest, AllKindsOfEntriesGoAndNothingThatLinksLeadTo) {
    make({"outside/file"});
    fill(in("root"), in("outside"));

    const Removal removal = removeTree({in("root")});

    EXPECT_TRUE(removal.removed && !isThere(in("root")));
    EXPECT_EQ(removal.failureCount, 0u);
    EXPECT_EQ(removal.entries, 14u);
    EXPECT_EQ(fs::file_size(in("outside/file")), 1u);
}

TEST_F(TreeRemovalTest, WhatIsNoFolderInTheFoldersPlaceGoesAsWhatItIs) {
    make({"outside/file", "plain"});
    must(::symlink(in("outside").c_str(), in("link").c_str()));

    for (const char* name : {"link", "plain"}) {
        EXPECT_TRUE(removeTree({in(name)}).removed) << name;
        EXPECT_FALSE(isThere(in(name))) << name;
    }
    EXPECT_TRUE(isThere(in("outside/file")));
    const Removal removal = removeTree({in("none")});
    EXPECT_TRUE(!removal.removed && removal.vanished);
}

TEST_F(TreeRemovalTest, BelowItsBaseAPlaceIsNotReachedThroughALink) {
    make({"precious/sub/", "base/"});
    must(::symlink(in("precious").c_str(), in("base/a").c_str()));

    const Removal strict = removeTree({in("base"), "a/sub"});
    EXPECT_FALSE(strict.removed);
    EXPECT_EQ(errorsOf(strict), std::vector{ENOTDIR});
    EXPECT_TRUE(isThere(in("precious/sub")));
    EXPECT_TRUE(removeTree({in("base"), "a/sub", true}).removed && !isThere(in("precious/sub")));
}

TEST_F(TreeRemovalTest, FoldersWithoutRightsGoWhereTheOwnerMayGiveThem) {
    must(::chmod(dir_.path().c_str(), 0777));
    const int result = asNobody([&] {
        make({"root/closed/sub/", "root/closed/file", "root/unreadable/sub/", "root/unreadable/file"});
        must(::chmod(in("root/closed").c_str(), 0555));
        must(::chmod(in("root/unreadable").c_str(), 0));
        const Removal removal = removeTree({in("root")});
        return removal.removed && removal.failureCount == 0 ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(isThere(in("root")));
}

TEST_F(TreeRemovalTest, WhatAnotherUserOwnsStaysWithItsReasonAndTheRestGoes) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to make files of two users";
    must(::chmod(dir_.path().c_str(), 0755));
    make({"root/theirs/file", "root/mine/file", "root/sticky/file"});
    must(::chmod(in("root/sticky").c_str(), 01777));
    for (const char* theirs : {"root", "root/mine"}) must(::chown(in(theirs).c_str(), kNobody, kNobody));

    const int result = asNobody([&] {
        const Removal removal = removeTree({in("root")});
        if (removal.removed || removal.failures.size() != 5) return 1;
        for (const auto& [error, isFolder] : removal.failures) {
            const bool refused = error.name == in("root/theirs/file")   ? error.number == EACCES
                                 : error.name == in("root/sticky/file") ? error.number == EPERM
                                                                        : isFolder;
            if (!refused) return 2;
        }
        return 0;
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(!isThere(in("root/mine")) && isThere(in("root/theirs/file")));
    EXPECT_TRUE(isThere(in("root/sticky/file")));
}

TEST_F(TreeRemovalTest, OtherMountsAreNotEnteredAndToldAsBusy) {
    make({"precious/file", "root/file"});
    const Mounted bind(in("precious"), in("root/bind"), nullptr, MS_BIND);
    const Mounted tmp("none", in("root/tmp"), "tmpfs");
    if (!tmp.done()) GTEST_SKIP() << "no right to mount";
    makeFile(in("root/tmp/file"), 1);

    EXPECT_EQ(errorsOf(removeTree({in("root")})), (std::vector{EBUSY, EBUSY, ENOTEMPTY}));
    EXPECT_EQ(errorsOf(removeTree({in("root/tmp")})), std::vector{EBUSY});
    EXPECT_TRUE(isThere(in("root/tmp/file")) && isThere(in("root/bind/file")) && !isThere(in("root/file")));
}

TEST_F(TreeRemovalTest, OfManyFailuresTheFirstAreKeptAndAllAreCounted) {
    for (int i = 0; i < 100; ++i) fs::create_directories(in("root/d" + std::to_string(i)));
    RecordingCalls calls;
    calls.onOpen = [](const std::string& name) { return name[0] == 'd' ? -EIO : 0; };

    const Removal removal = removeTree({in("root")}, calls);

    EXPECT_EQ(removal.failures.size(), Removal::kMostFailures);
    EXPECT_EQ(removal.failureCount, 101u);
}

TEST_F(TreeRemovalTest, WhatIsAddedMeanwhileGoesToo) {
    make({"root/late/", "root/first"});
    RecordingCalls calls;
    calls.onOpen = [&](const std::string& name) {
        if (name == "late") makeFile(in("root/added"), 1);
        return 0;
    };
    EXPECT_TRUE(removeTree({in("root")}, calls).removed);
}

TEST_F(TreeRemovalTest, FollowsNobodyWhoGoesOnAddingFiles) {
    const TempDir shm("/dev/shm");
    const std::string root = shm.path() + "/root";
    makeFolder(root);
    constexpr int kMost = 100'000;  // With this limit, a removal that follows the new files ends as well.
    RecordingCalls calls;
    int added = 0;
    calls.onRead = [&](int) {
        // The adder keeps up: more files come whenever the last ones are gone.
        const bool gone = !isThere(root + "/" + std::to_string(added - 1));
        for (int i = 0; gone && added < kMost && i < 1000; ++i)
            makeFile(root + "/" + std::to_string(added++), 0);
        return 0;
    };
    const Removal removal = removeTree({root}, calls);
    EXPECT_FALSE(removal.removed);
    EXPECT_EQ(errorsOf(removal), std::vector{ENOTEMPTY});
    EXPECT_LT(added, kMost);
}

TEST_F(TreeRemovalTest, FollowsNobodyWhoGoesOnAddingFoldersInFolders) {
    makeFolder(in("root"));
    struct statx facts;
    must(::statx(AT_FDCWD, in("root").c_str(), 0, STATX_BTIME, &facts));
    if ((facts.stx_mask & STATX_BTIME) == 0)
        GTEST_SKIP() << "this file system does not know when a folder was made";
    constexpr int kMost = 5'000;
    RecordingCalls calls;
    int added = 0, deepest = openFolder(in("root"));
    calls.onOpen = [&](const std::string&) {
        if (added++ >= kMost) return 0;
        must(::mkdirat(deepest, "d", 0755));
        ::close(std::exchange(deepest, must(::openat(deepest, "d", O_PATH | O_CLOEXEC))));
        return 0;
    };
    const Removal removal = removeTree({in("root")}, calls);
    ::close(deepest);
    EXPECT_LT(added, kMost);
    EXPECT_TRUE(!removal.removed && errorsOf(removal).front() == ENOTEMPTY);
    calls.onOpen = [](const std::string&) { return 0; };
    EXPECT_TRUE(removeTree({in("root")}, calls).removed) << "what was there by then";
}

TEST_F(TreeRemovalTest, CanBeEndedWithinOneFolder) {
    makeFolder(in("root"));
    for (int i = 0; i < 6000; ++i) makeFile(in("root/") + std::to_string(i), 0);
    DirectoryCalls calls;
    Whereabouts whereabouts;
    std::thread user([&] {
        bool isNew = false;
        while (whereabouts.now(isNew).empty()) std::this_thread::yield();
        whereabouts.end();
    });
    const Removal removal = TreeRemoval(calls, whereabouts, 64).run({in("root")});
    user.join();
    EXPECT_TRUE(removal.stopped && !removal.removed && removal.failureCount == 0);
    EXPECT_LT(removal.entries, 6000u);
}

TEST_F(TreeRemovalTest, AFolderSwappedForALinkGoesAsALink) {
    make({"root/sub/inner/", "precious/inner/file"});
    RecordingCalls calls;
    calls.onOpen = [&](const std::string& name) {
        if (name != "sub" || !fs::is_directory(fs::symlink_status(in("root/sub")))) return 0;
        fs::rename(in("root/sub"), in("aside"));
        must(::symlink(in("precious").c_str(), in("root/sub").c_str()));
        return 0;
    };
    EXPECT_TRUE(removeTree({in("root")}, calls).removed && isThere(in("precious/inner/file")));
}

TEST_F(TreeRemovalTest, AThousandSwapsLoseNothingPrecious) {
    const TempDir shm("/dev/shm");
    const std::string root = shm.path() + "/root", fresh = shm.path() + "/fresh";
    const std::string precious = shm.path() + "/precious", sub = root + "/a/sub", aside = root + "/a/aside";
    for (int i = 0; i < 20; ++i) makeTree(precious, {"f" + std::to_string(i)});
    std::atomic<bool> end{false};
    std::atomic<int> swaps{0};
    std::thread hostile([&] {
        while (!end.load()) {
            if (::rename(sub.c_str(), aside.c_str()) != 0) continue;
            if (::symlink(precious.c_str(), sub.c_str()) == 0) ++swaps;
            ::unlink(sub.c_str());
            ::rename(aside.c_str(), sub.c_str());
        }
    });
    for (int round = 0; round < 1000; ++round) {
        makeTree(fresh, {"a/sub/x/f0", "a/sub/x/f1", "a/sub/x/f2", "a/sub/x/f3", "a/sub/x/f4"});
        must(::rename(fresh.c_str(), root.c_str()));
        // A folder swapped away just then is reported and stays; the next attempt removes it.
        while (!removeTree({shm.path(), "root"}).removed) {
        }
    }
    end = true;
    hostile.join();
    EXPECT_GT(swaps.load(), 0);
    EXPECT_EQ(namesIn(precious).size(), 20U);
}

TEST_F(TreeRemovalTest, AChainOfAHundredThousandFoldersGoesWithFewOpen) {
    const TempDir shm("/dev/shm");
    makeFolder(shm.path() + "/root");
    // Who changes a file and asks for its times makes the system give exact times to new folders as well.
    const std::jthread other([&](const std::stop_token& stop) {
        for (const std::string file = shm.path() + "/file"; !stop.stop_requested(); inodeOf(file))
            writeFile(file, "text");
    });
    makeChain(shm.path() + "/root", 100'000, "d");
    RecordingCalls calls;

    const Removal removal = removeTree({shm.path() + "/root"}, calls, 8);

    EXPECT_TRUE(removal.removed);
    EXPECT_EQ(removal.failureCount, 0u);
    EXPECT_EQ(calls.opens.load(), calls.closes.load());
}

TEST_F(TreeRemovalTest, FilesGoByNameAndFoldersDoNot) {
    make({"folder/", "file"});
    must(::symlink("folder", in("link").c_str()));
    std::string deep = dir_.path();
    for (int i = 0; i < 100; ++i) deep += "/" + std::string(200, 'd');
    makeChain(dir_.path(), 100, std::string(200, 'd'));

    const std::pair<FilePlace, int> cases[] = {{{in("file")}, 0},
                                               {{in("file")}, ENOENT},
                                               {{dir_.path(), "link"}, 0},
                                               {{in("folder")}, EISDIR},
                                               {{in("none/file")}, ENOENT},
                                               {{dir_.path(), ".."}, EINVAL},
                                               {{"/"}, EBUSY},
                                               {{deep.substr(0, deep.rfind('/')) + "/f"}, 0}};
    Whereabouts whereabouts;
    for (const auto& [place, error] : cases)
        EXPECT_EQ(removeFile(place, whereabouts), error) << place.base.substr(0, 80) << place.below;
    EXPECT_TRUE(isThere(in("folder")) && removeTree({in(std::string(200, 'd'))}).removed);
}

}  // namespace
}  // namespace hl::test
