// Tests reading from a disk that does not answer, with a file system whose process is stopped, continued and
// killed.

#include "support/fuse_mount.h"
#include "support/recording_calls.h"
#include "support/seen_walk.h"

namespace hl::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kAnswer = 300ms;
constexpr auto kAtOnce = 5s;  // Enough for a busy machine, while what hangs takes longer.

ReadAheadLimits hasty(unsigned helpers) {
    ReadAheadLimits limits = test::limits(helpers);
    limits.answer = limits.link = kAnswer;
    return limits;
}

struct ReadAheadHanging : testing::Test {
    void SetUp() override {
        makeTree(dir_.path(), {"shown/a/file", "shown/b/file", "shown/c/d/e/file", "local/a/file"});
        mount_.emplace(dir_.path() + "/shown", dir_.path() + "/mount");
        if (!mount_->missing().empty()) GTEST_SKIP() << mount_->missing();
    }
    void TearDown() override {
        mount_.reset();
        EXPECT_TRUE(comes([] { return HelperSlot::taken() == 0; })) << "what came back ends";
    }

    ReadAhead reader(const std::string& source, unsigned helpers, WaitCallback* wait = nullptr,
                     const ReadOptions& options = {}) const {
        return {std::make_shared<DirectoryCalls>(), source, options, hasty(helpers), wait};
    }
    Seen seen(const std::string& source, unsigned helpers, const ReadOptions& options = {},
              WaitCallback* wait = nullptr) const {
        ReadAhead ahead = reader(source, helpers, wait, options);
        return walk(ahead);
    }

    const TempDir dir_;
    const std::string shown_ = dir_.path() + "/shown", on_ = dir_.path() + "/mount";
    std::optional<FuseMount> mount_;
};

TEST_F(ReadAheadHanging, AFolderThatDoesNotAnswerIsAnErrorAndTheRestIsRead) {
    for (const unsigned helpers : {0U, 1U, 8U}) EXPECT_EQ(seen(on_, helpers).text, seen(shown_, 0).text);
    makeTree(shown_, {"b/hangs/file", "hangs/file"});
    for (const unsigned helpers : {0U, 1U, 8U}) {
        const Seen rest = seen(on_, helpers);
        EXPECT_EQ(rest.errors, std::vector<int>(2, ETIMEDOUT)) << helpers;
        EXPECT_EQ(std::pair(rest.folders, rest.files), std::pair(std::uint64_t{7}, std::uint64_t{3}))
            << helpers;
    }
}

TEST_F(ReadAheadHanging, ASlowDiskIsNotGivenUpWhileItAnswers) {
    fs::create_directory(shown_ + "/links");
    for (int i = 0; i < 60; ++i) {
        makeFile(shown_ + "/a/" + std::to_string(i), 1);
        fs::create_directory_symlink("../a", shown_ + "/links/" + std::to_string(i));
    }
    const auto slow = std::make_shared<RecordingCalls>();
    slow->onLook = [](const std::string&) {
        std::this_thread::sleep_for(kAnswer / 30);
        return 0;
    };
    ReadAhead ahead(slow, on_, {}, hasty(1), nullptr);
    EXPECT_EQ(walk(ahead).errors, std::vector<int>());
}

// A machine with one processor has helpers only for slow folders, and none of them works behind those.
TEST_F(ReadAheadHanging, HelpersThatHadRetiredReadWhatCanHang) {
    class SlowAtFirst final : public RecordingCalls {
        std::uint64_t timesWaited() override { return waited; }

      public:
        std::atomic<std::uint64_t> waited = 0;
    };
    const auto calls = std::make_shared<SlowAtFirst>();
    calls->onLook = [&](const std::string& name) {
        if (!name.starts_with("slow")) return 0;
        ++calls->waited;
        std::this_thread::sleep_for(5ms);
        return 0;
    };
    std::string at = dir_.path() + "/chain";
    for (int i = 0; i < 60; ++i) {
        makeTree(at, {i < 6 ? "slow" : "file"});
        for (int beside = 0; beside < 10 && i > 10; ++beside)
            fs::create_directory(at + "/" + std::to_string(beside));
        at += "/deeper";
    }
    fs::create_directory(at);
    fs::create_directory_symlink(on_, at + "/link");
    ReadAheadLimits limits = hasty(0);
    limits.helpersCold = 2;
    Waiting wait([](int nth) { return nth < 100; });
    ReadAhead ahead(calls, dir_.path() + "/chain", {.followLinks = true}, limits, &wait);
    while (ahead.next() != nullptr) {
    }
    EXPECT_LT(wait.looks, 100);
}

TEST_F(ReadAheadHanging, AStopEndsTheWaitAndLeavesTheHelperBehindButNeverMoreThanSixteen) {
    mount_->stopAnswering();
    const auto start = Clock::now();
    for (int i = 0; i < 20; ++i) {
        Waiting stop([](int) { return false; });
        ReadAhead ahead = reader(on_, 1, &stop);
        const auto block = ahead.next();
        ASSERT_EQ(block == nullptr, i < 16) << i;
        if (block != nullptr) {
            EXPECT_TRUE(block->error && block->error->number == ETIMEDOUT) << "nothing is left to wait with";
        }
    }
    EXPECT_EQ(HelperSlot::taken(), 16U);
    EXPECT_LT(Clock::now() - start, 20 * 300ms + kAtOnce);
    mount_->answerAgain();
    EXPECT_TRUE(comes([] { return HelperSlot::taken() == 0; }));
    EXPECT_EQ(seen(on_, 1).text, seen(shown_, 0).text);
}

TEST_F(ReadAheadHanging, ADiskThatIsStoppedGoesOnOrDies) {
    for (const bool dies : {false, true}) {
        mount_->stopAnswering();
        Waiting wait([&](int nth) {
            if (nth == 2) dies ? mount_->die() : mount_->answerAgain();
            return true;
        });
        const Seen all = seen(on_, 1, {}, &wait);
        EXPECT_EQ(all.text, dies ? "" : seen(shown_, 0).text);
        EXPECT_EQ(all.errors.size(), dies ? 1U : 0U);
    }
}

TEST_F(ReadAheadHanging, ALinkToADiskThatDoesNotAnswerIsALinkAndItIsSaidOnce) {
    for (int i = 0; i < 50; ++i)
        fs::create_symlink(on_ + "/a", dir_.path() + "/local/link" + std::to_string(i));
    const std::string local = dir_.path() + "/local";
    EXPECT_EQ(seen(local, 1).folders, 51U) << "while it answers they are links to folders";
    EXPECT_EQ(seen(local, 1, {.followLinks = true}).files, 51U);
    mount_->stopAnswering();
    for (const unsigned helpers : {0U, 2U}) {
        const auto start = Clock::now();
        const Seen links = seen(local, helpers);
        EXPECT_EQ(std::pair(links.folders, links.files), std::pair(std::uint64_t{1}, std::uint64_t{51}));
        EXPECT_EQ(links.silent, std::vector<std::string>{on_});
        EXPECT_LT(Clock::now() - start, kAtOnce);
    }
    Waiting stop([](int) { return false; });
    EXPECT_EQ(reader(local, 0, &stop).next(), nullptr) << "Stop is heard there too";
}

TEST_F(ReadAheadHanging, ALinkThatStaysOnItsMountIsNotAskedTwice) {
    for (int i = 0; i < 50; ++i) {
        const std::string name = dir_.path() + "/local/" + std::to_string(i);
        fs::create_symlink(i % 2 == 0 ? "a/file" : "a", name);
    }
    const auto calls = std::make_shared<RecordingCalls>();
    ReadAhead ahead(calls, dir_.path() + "/local", {}, hasty(0), nullptr);
    const Seen links = walk(ahead);
    EXPECT_EQ(std::pair(links.folders, links.files), std::pair(std::uint64_t{26}, std::uint64_t{26}));
    EXPECT_LE(calls->looksAt["a/file"] + calls->looksAt["a"], 1) << "which is the folder itself";
}

TEST_F(ReadAheadHanging, WhatIsFollowedOntoSuchADiskIsReadByHelpersAlone) {
    fs::create_symlink(on_, dir_.path() + "/local/link");
    const ReadOptions follow{.followLinks = true};
    for (const unsigned helpers : {0U, 2U}) {
        // The link and the mount are read themselves; the folder of both shows the tree three times.
        EXPECT_EQ(seen(dir_.path(), helpers, follow).files, 3U + 1U + 3U + 3U);
        Waiting stops([&](int) { return true; });
        ReadAhead ahead = reader(dir_.path(), helpers, &stops, follow);
        const auto first = ahead.next();
        mount_->stopAnswering();
        std::vector<int> errors;
        while (const auto block = ahead.next())
            if (block->error) errors.push_back(block->error->number);
        EXPECT_GE(errors.size(), 1U);
        for (const int error : errors) EXPECT_EQ(error, ETIMEDOUT);
        EXPECT_GT(stops.looks, 0) << "messages run meanwhile";
        mount_->answerAgain();
    }
    mount_->stopAnswering();
    const Seen plain = seen(dir_.path(), 1);
    EXPECT_TRUE(plain.errors.empty()) << "a mount that is not entered is not asked";
}

}  // namespace
}  // namespace hl::test
