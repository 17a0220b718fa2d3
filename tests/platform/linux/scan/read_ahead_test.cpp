#include "platform/linux/scan/read_ahead.h"

#include "support/recording_calls.h"
#include "support/seen_walk.h"
#include "support/subvolume_calls.h"

namespace hl::test {
namespace {

/// Makes folders of many shapes: wide ones of several blocks, nested ones, empty ones, links and a pipe.
void makeMixedTree(const std::string& root) {
    for (int i = 0; i < 40; ++i) {
        const std::string folder = root + "/d" + std::to_string(i);
        makeFolder(folder);
        for (int j = 0; j < i % 7; ++j) makeFile(folder + "/f" + std::to_string(j), i * 100 + j);
        for (int j = 0; j < i % 5; ++j) {
            makeFolder(folder + "/s" + std::to_string(j));
            makeFile(folder + "/s" + std::to_string(j) + "/x", j);
        }
    }
    makeFolder(root + "/wide");
    for (int i = 0; i < 6000; ++i)
        makeFile(root + "/wide/a file with a rather long name " + std::to_string(i), i);
    for (int i = 0; i < 300; ++i) makeFolder(root + "/wide/folder " + std::to_string(i));
    must(::symlink("wide", (root + "/link").c_str()));
    must(::symlink("gone", (root + "/dead").c_str()));
    must(::mkfifo((root + "/pipe").c_str(), 0600));
}

TEST(ReadAhead, GivesTheSameInTheSameOrderWhoeverReads) {
    const TempDir dir("/dev/shm");
    makeMixedTree(dir.path());
    DirectoryCalls calls;
    const Seen alone = walkOnce(calls, dir.path(), limits(0));
    EXPECT_EQ(alone.folders, 40U + 80U + 1U + 300U + 1U);
    EXPECT_GT(alone.blocks, alone.folders) << "the wide folder was to take several blocks";
    for (const unsigned helpers : {1U, 2U, 7U})
        for (const std::size_t openFolders : {4U, 64U})
            for (int round = 0; round < 5; ++round)
                ASSERT_EQ(walkOnce(calls, dir.path(), limits(helpers, openFolders)).text, alone.text)
                    << helpers << " helpers, " << openFolders << " open folders";
    ReadAheadLimits tight = limits(3);
    tight.bytesAhead = 1;
    EXPECT_EQ(walkOnce(calls, dir.path(), tight).text, alone.text);
}

TEST(ReadAhead, ReadOnlySnapshotsArePutOffAndNoOtherFolderCostsACall) {
    const TempDir dir("/dev/shm");
    makeTree(dir.path(), {"a/sub ro/never/x", "sub/b/file", "c/d/sub ro/never/y", "e/"});
    must(::symlink("a/sub ro", (dir.path() + "/link").c_str()));
    struct Case {
        std::string source;
        ReadOptions options;
        int asked;
        std::uint64_t folders;
        bool readsAll;
    };
    const Case cases[] = {
        {dir.path(), {}, 0, 11, true},
        {dir.path(), {.wantSubvolumes = true}, 3, 11, true},
        {dir.path(), {.wantSubvolumes = true, .putOffSnapshots = true}, 3, 9, false},
        {dir.path(), {.followLinks = true, .wantSubvolumes = true, .putOffSnapshots = true}, 4, 10, true},
        {dir.path() + "/a/sub ro", {.wantSubvolumes = true, .putOffSnapshots = true}, 1, 1, true},
        {dir.path() + "/a/sub ro",
         {.wantSubvolumes = true, .putOffSnapshots = true, .putOffSource = true},
         1,
         0,
         false},
    };
    for (const Case& each : cases) {
        for (const unsigned helpers : {0U, 3U}) {
            SubvolumeCalls calls;
            const Seen seen = walkOnce(calls, each.source, limits(helpers), each.options);
            EXPECT_EQ(calls.asked, each.asked) << each.source;
            EXPECT_EQ(seen.folders, each.folders) << seen.text;
            EXPECT_EQ(calls.opensOf["never"] > 0, each.readsAll) << seen.text;
        }
    }
    for (const auto& [place, errors] : {std::pair("/a/sub ro", std::vector<int>()), {"/a", {ESTALE}}}) {
        SubvolumeCalls calls;
        const ReadOptions options{.wantSubvolumes = true, .onlySubvolume = {0, 1}};
        const Seen seen = walkOnce(calls, dir.path() + place, limits(0), options);
        EXPECT_EQ(seen.errors, errors);
        EXPECT_EQ(seen.text.empty(), !errors.empty()) << "what stands in its place is not read";
    }
}

TEST(ReadAhead, AFolderSwappedForALinkIsNotRead) {
    const TempDir dir("/dev/shm");
    const std::string root = dir.path() + "/root", sub = root + "/sub", other = root + "/other";
    makeTree(dir.path(), {"precious/precious", "root/sub/own"});
    must(::symlink((dir.path() + "/precious").c_str(), other.c_str()));
    std::atomic<bool> ends{false};
    std::thread hostile([&] {
        while (!ends) ::renameat2(AT_FDCWD, sub.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
    });
    DirectoryCalls calls;
    std::uint64_t met = 0, read = 0;
    for (int round = 0; round < 1000 || (round < 100'000 && (met == 0 || read == 0)); ++round) {
        const Seen seen = walkOnce(calls, root, limits(round % 2 == 0 ? 0 : 2));
        EXPECT_FALSE(has(seen.text, "precious"));
        met += seen.errors.size();
        read += seen.text.find("own") != std::string::npos ? 1 : 0;
    }
    ends = true;
    hostile.join();
    EXPECT_GT(met, 0U) << "never met the link";
    EXPECT_GT(read, 0U);
}

TEST(ReadAhead, LooksOnceAtEachEntryAndOpensEachFolderOnce) {
    const TempDir dir;
    const std::string root = dir.path();
    for (int i = 0; i < 50; ++i) makeTree(root + "/folder" + std::to_string(i), {"file" + std::to_string(i)});
    must(::symlink("folder1", (root + "/to folder").c_str()));
    for (const unsigned helpers : {0U, 3U}) {
        RecordingCalls calls;
        walkOnce(calls, root, limits(helpers));
        EXPECT_EQ(calls.looks, 51);
        EXPECT_EQ(calls.opensOf.size(), 50U);
        for (const auto& [name, times] : calls.looksAt) EXPECT_EQ(times, 1) << name;
        for (const auto& [name, times] : calls.opensOf) EXPECT_EQ(times, 1) << name;
        EXPECT_EQ(calls.ups, 0);
        EXPECT_EQ(calls.opens, calls.closes);
    }
}

TEST(ReadAhead, ComesBackToFoldersThatHadToBeClosedByNoPathThatGrows) {
    const TempDir dir("/dev/shm");
    constexpr int kDepth = 3000;
    makeChain(dir.path(), kDepth, "m", 2);  // At every level "b0" and "b1" are still to be read.
    for (const unsigned helpers : {0U, 3U}) {
        RecordingCalls calls;
        {
            ReadAhead reader(shared(calls), dir.path(), {}, limits(helpers, 8), nullptr);
            const Seen seen = walk(reader, false);
            EXPECT_EQ(seen.folders, 3U * kDepth);
            EXPECT_TRUE(seen.errors.empty());
            EXPECT_LE(reader.mostOpen(), 8U + 2 * (helpers + 1));
            EXPECT_LE(calls.longestName, 2U);
        }
        EXPECT_LT(calls.opens, 20 * kDepth) << "coming back is to cost a few steps, not the whole way down";
        EXPECT_EQ(calls.opens, calls.closes);
    }
}

TEST(ReadAhead, EndsAtAFollowedLinkToAnyFolderAboveItAlsoAClosedOneAndThoseAboveTheSource) {
    const TempDir dir("/dev/shm");
    constexpr int kDepth = 100;
    makeChain(dir.path(), kDepth, "m", 2);
    std::string source = dir.path();
    for (int i = 0; i < kDepth / 2; ++i) source += "/m";
    std::string end = source;
    for (int i = 0; i < kDepth / 2; ++i) end += "/m";
    for (const auto& [name, target] :
         {std::pair("top", dir.path()), {"middle", source + "/m"}, {"self", end}})
        must(::symlink(target.c_str(), (end + "/" + name).c_str()));
    for (const unsigned helpers : {0U, 3U}) {
        RecordingCalls calls;
        Seen seen = walkOnce(calls, dir.path(), limits(helpers, 4), {.followLinks = true});
        EXPECT_EQ(seen.errors, std::vector<int>(3, ELOOP));
        EXPECT_EQ(seen.folders, 3U * kDepth + 3);
        seen =
            walkOnce(calls, source + "/", limits(helpers), {.followLinks = true, .levelsAbove = kDepth / 2});
        EXPECT_EQ(seen.errors, std::vector<int>(3, ELOOP));
        EXPECT_EQ(seen.folders, 3U * kDepth / 2 + 3);
        EXPECT_EQ(calls.opens, calls.closes);
    }
}

TEST(ReadAhead, MakesAnEntryOfEveryNameItReadWhateverIsMovedAway) {
    constexpr int kDepth = 400;
    // A folder is moved away at one place of the walk and back at another, several times; or moved away for
    // good, with the walk inside.
    for (const bool comesBack : {true, false}) {
        const TempDir dir("/dev/shm");
        makeFolder(dir.path() + "/in");
        makeChain(dir.path() + "/in", kDepth, "m", 1);
        const std::string here = dir.path() + "/in/m/m", away = dir.path() + "/away";
        RecordingCalls calls;
        int reads = 0;
        calls.onRead = [&](int) {
            ++reads;
            if (comesBack ? reads % 200 == 50 : reads == 150) must(::rename(here.c_str(), away.c_str()));
            if (comesBack && reads % 200 == 150) must(::rename(away.c_str(), here.c_str()));
            return 0;
        };
        const Seen seen = walkOnce(calls, dir.path() + "/in", limits(0, 8));
        EXPECT_EQ(seen.folders, 2U * kDepth);
        EXPECT_EQ(calls.opens, calls.closes);
        EXPECT_TRUE(seen.errors.empty() || !comesBack);
    }
}

TEST(ReadAhead, ReportsWhatCannotBeRead) {
    const TempDir dir;
    makeTree(dir.path(), {"denied/inside"});
    for (const auto& [name, size] : {std::pair("/unseen", 7), {"/gone", 9}, {"/plain", 11}})
        makeFile(dir.path() + name, size);
    RecordingCalls calls;
    calls.onOpen = [](const std::string& name) { return name == "denied" ? -EACCES : 0; };
    calls.onLook = [](const std::string& name) {
        return name == "unseen" ? -EIO : name == "gone" ? -ENOENT : 0;
    };
    Seen seen = walkOnce(calls, dir.path(), limits(0));
    EXPECT_EQ(seen.errors, (std::vector<int>{EIO, EACCES}));
    EXPECT_EQ(seen.files, 2U) << "what vanished is no entry, what cannot be looked at is one of 0 bytes";
    EXPECT_EQ(seen.bytes, 11U);

    RecordingCalls ends;
    ends.onRead = [](int nth) { return nth == 2 ? -EIO : 0; };
    seen = walkOnce(ends, dir.path(), limits(0));
    EXPECT_EQ(seen.errors, std::vector<int>{EIO});
    EXPECT_EQ(seen.files + seen.folders, 5U) << "entries before the fault stay";
    EXPECT_EQ(walkOnce(calls, dir.path() + "/plain", limits(0)).errors, std::vector<int>{ENOTDIR});
    EXPECT_EQ(walkOnce(calls, dir.path() + "/none", limits(0)).errors, std::vector<int>{ENOENT});
}

TEST(ReadAhead, LeavesNothingBehindWhenItIsStopped) {
    const TempDir dir("/dev/shm");
    makeMixedTree(dir.path());
    for (int stopAt = 1; stopAt < 120; stopAt += 17) {
        RecordingCalls calls;
        {
            ReadAhead reader(shared(calls), dir.path(), {}, limits(4), nullptr);
            std::vector<std::unique_ptr<Listing>> kept;
            for (int i = 0; i < stopAt; ++i) kept.push_back(reader.next());
        }
        EXPECT_EQ(calls.opens, calls.closes);
    }
}

TEST(ReadAhead, StopsWaitingWhenItIsToldTo) {
    const TempDir dir;
    for (int i = 0; i < 30; ++i) makeFolder(dir.path() + "/d" + std::to_string(i));
    RecordingCalls calls;
    std::atomic<bool> release = false, hangs = false;
    const std::thread::id walker = std::this_thread::get_id();
    std::atomic<int> opens = 0;
    // Helpers hang as on a dead share; the walk does not, but waits in its tenth folder until one of them
    // hangs.
    calls.onOpen = [&](const std::string&) {
        const bool isWalk = std::this_thread::get_id() == walker;
        if (!isWalk) hangs = true;
        while (isWalk ? ++opens >= 10 && !hangs : !release.load()) std::this_thread::yield();
        return 0;
    };
    Waiting giveUp([](int) { return false; });
    ReadAhead reader(shared(calls), dir.path(), {}, limits(2), &giveUp);
    int blocks = 0;
    while (reader.next() != nullptr && blocks < 31) ++blocks;
    EXPECT_LT(blocks, 31);
    EXPECT_EQ(reader.next(), nullptr);
    release = true;
}

TEST(ReadAhead, CallsMoreHelpersWhereReadsWaitAndLosesNothingByIt) {
    const TempDir dir("/dev/shm");
    makeMixedTree(dir.path());
    RecordingCalls slow;
    std::mutex mutex;
    std::map<std::thread::id, int> readers;
    slow.onRead = [&](int) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const std::lock_guard<std::mutex> lock(mutex);
        ++readers[std::this_thread::get_id()];
        return 0;
    };
    DirectoryCalls calls;
    EXPECT_EQ(walkOnce(slow, dir.path(), {1, 8, 1 << 20, 64}).text,
              walkOnce(calls, dir.path(), limits(0)).text);
    EXPECT_GT(readers.size(), 3U);
}

}  // namespace
}  // namespace hl::test
