// Tests questions to disks that do not answer.
#include "platform/linux/drives/patience.h"

#include <poll.h>

#include "platform/linux/change/file_operations.h"
#include "platform/linux/change/files.h"
#include "platform/linux/preview/preview_tools.h"
#include "platform/linux/scan/file_system.h"
#include "support/fuse_mount.h"
#include "support/results.h"

namespace hl::test {
namespace {

using namespace std::chrono_literals;

struct Wait final : DiskWait {
    int begins = 0, pauses = 0, most = 1 << 20;  ///< After `most` pauses nobody wants the answer any more.
    void waitBegins(const std::string&) override { ++begins; }
    bool goesOnWaiting() override { return ++pauses < most; }
    void waitEnds() override { --begins; }
};

struct Watch final : OperationWatch {
    int silent = 0;
    bool stillAt(const std::string&, bool isSilent) override {
        silent += isSilent ? 1 : 0;
        return false;
    }
};

struct PatienceTest : testing::Test {
    PatienceTest() {
        makeTree(dir.path(), {"shown/folder/a", "shown/folder/b", "shown/file"});
        fs::create_symlink(dir.path() + "/mount", dir.path() + "/link");
        mount.emplace(dir.path() + "/shown", dir.path() + "/mount");
        patience.setWait(&wait);
    }
    void SetUp() override {
        if (!mount->missing().empty()) GTEST_SKIP() << mount->missing();
    }
    ~PatienceTest() override {
        mount->die();
        EXPECT_TRUE(noHelperHangs());
    }
    static bool noHelperHangs() {
        return comes([] { return HelperSlot::taken() == 0; });
    }
    int errorOf(const char* name) { return numberOf(disk.look(dir.path() + "/" + name)); }

    TempDir dir;
    std::optional<FuseMount> mount;
    SilentDisks disks;
    LinuxPatience patience{disks, 300ms};
    Wait wait;
    PatientFileSystem disk{std::make_shared<LinuxFileSystem>(limitsOfThisMachine(false)), patience};
    LinuxFileOperations operations{std::make_shared<DirectoryCalls>(), {}, &disks};
    LinuxPreviewTools tools{"", "", dir.path(), "", &disks};
};

TEST_F(PatienceTest, ADiskThatDoesNotAnswerIsWaitedForOnceAndAskedAgainWhenItDoes) {
    EXPECT_EQ(errorOf("mount/file"), 0);
    const FuseMount later(dir.path() + "/shown", dir.path() + "/later");
    EXPECT_TRUE(disks.of(dir.path() + "/later/x") != 0 && disks.of(dir.path() + "/shown") == 0);
    mount->stopAnswering();
    EXPECT_TRUE(errorOf("shown/file") == 0 && wait.pauses == 0) << "of another disk";
    EXPECT_EQ(errorOf("link/file"), ETIMEDOUT);
    EXPECT_TRUE(wait.pauses > 5 && wait.begins == 0) << wait.pauses;
    const int pauses = wait.pauses;
    for (int i = 0; i < 20; ++i) EXPECT_EQ(errorOf("mount/folder"), ETIMEDOUT);
    EXPECT_EQ(wait.pauses, pauses) << "a helper hangs there already";
    EXPECT_EQ(HelperSlot::taken(), 1U);
    mount->answerAgain();
    EXPECT_TRUE(comes([&] { return errorOf("mount/file") == 0; }));
    EXPECT_EQ(errorOf("mount/none"), ENOENT);
    mount->stopAnswering();
    wait.most = 2;
    wait.pauses = 0;
    EXPECT_TRUE(errorOf("mount/file") == ETIMEDOUT && wait.pauses == 2) << "nobody wants it any more";
}

// Otherwise a process would collect threads that hang.
TEST_F(PatienceTest, NoMoreThanSixteenHelpersHang) {
    std::vector<HelperSlot> taken;
    while (auto slot = HelperSlot::take()) taken.push_back(std::move(*slot));
    EXPECT_EQ(taken.size(), 16U);
    EXPECT_EQ(errorOf("mount/file"), ETIMEDOUT);
    taken.pop_back();
    EXPECT_EQ(errorOf("mount/file"), 0);
}

TEST_F(PatienceTest, WhatChangesFilesIsLeftBehindAtStopAndChangesNothingMoreWhenTheDiskComesBack) {
    Watch watch;
    const FilePlace folder{dir.path() + "/mount/folder"}, file{dir.path() + "/mount/file"};
    mount->stopAnswering();
    EXPECT_TRUE(operations.recycle(file, watch).failedAs(ErrorKind::kNoAnswer));
    mount->answerAgain();
    EXPECT_TRUE(noHelperHangs());
    EXPECT_TRUE(fs::exists(dir.path() + "/shown/file"));
    mount->stopAnswering();
    EXPECT_TRUE(operations.removeTree(folder, watch).unknown);
    EXPECT_GT(watch.silent, 0);
    const int silent = watch.silent;
    EXPECT_EQ(numberOf(operations.removeFile(file, watch)), ETIMEDOUT);
    EXPECT_TRUE(operations.recycle(file, watch).failedAs(ErrorKind::kNoAnswer));
    EXPECT_EQ(numberOf(operations.move(file, folder, watch)), ETIMEDOUT);
    EXPECT_EQ(operations.protectionOf(folder, watch), Protection::kNoAnswer);
    EXPECT_EQ(numberOf(operations.wouldReplace(file, folder, watch)), ETIMEDOUT);
    EXPECT_EQ(watch.silent, silent) << "refused at once";
    EXPECT_TRUE(operations.removeFile({dir.path() + "/link"}, watch)) << "which lies on another disk";
    mount->answerAgain();
    EXPECT_TRUE(noHelperHangs());
    for (const char* name : {"shown/folder/a", "shown/folder/b", "shown/file"})
        EXPECT_TRUE(fs::exists(dir.path() + "/" + name)) << name;
    EXPECT_TRUE(operations.removeTree(folder, watch).removed);
}

TEST_F(PatienceTest, AFileForThePreviewComesInMemoryAndTheOneThatIsWantedLastComesFirst) {
    const std::string shown = dir.path() + "/shown/", mounted = dir.path() + "/mount/";
    writeFile(shown + "text", std::string(3 << 20, 'x'));
    makeFile(shown + "large", (std::int64_t{64} << 20) + 1);
    const auto opened = [&](PreviewOpening& opening) {
        pollfd over{opening.descriptor(), POLLIN, 0};
        EXPECT_EQ(::poll(&over, 1, 20000), 1);
        return opening.take();
    };
    using enum FilePart;
    const auto open = [&](const char* name, FilePart part) {
        return opened(*tools.openBeside(mounted + name, part));
    };
    EXPECT_EQ(tools.openBeside(shown + "text", kBeginning), nullptr) << "of a disk that answers";
    auto text = *open("text", kBeginning);
    mount->stopAnswering();
    EXPECT_EQ(text->size(), 3U << 20);
    EXPECT_EQ(*text->head(2 << 20), std::string(1 << 20, 'x'));
    text.reset();
    auto first = tools.openBeside(mounted + "text", kWhole);
    auto second = tools.openBeside(mounted + "none", kWhole);
    first.reset();
    auto third = tools.openBeside(mounted + "text", kWhole);
    EXPECT_EQ(HelperSlot::taken(), 1U);
    mount->answerAgain();
    EXPECT_EQ((*opened(*third))->head(4 << 20).valueOr("").size(), 3U << 20);
    EXPECT_EQ(numberOf(open("large", kWhole)), EFBIG);
    EXPECT_TRUE(open("folder", kBeginning).failedAs(ErrorKind::kUnsuited)) << "no regular file";
}

TEST_F(PatienceTest, ALargeFileToPlayIsReadAheadAndNobodyWhoReadsHasToWait) {
    const std::string shown = dir.path() + "/shown/large";
    constexpr std::uint64_t kSize = (std::uint64_t{64} << 20) + 1000;
    makeFile(shown, std::int64_t{kSize});
    {
        std::ofstream file(shown, std::ios::in);
        for (const int at : {0, 131'070, 50 << 20, (64 << 20) + 990}) file.seekp(at) << "0123456789";
    }
    const auto opening = tools.openBeside(dir.path() + "/mount/large", FilePart::kPlayable);
    pollfd over{opening->descriptor(), POLLIN, 0};
    ASSERT_EQ(::poll(&over, 1, 20000), 1);
    auto file = *opening->take();
    const auto stream = file->stream();
    const auto read = [&](std::uint64_t at, std::size_t bytes) {
        std::string text(bytes, '?');
        const auto got = stream->read(at, text.data(), bytes);
        return got ? text.substr(0, *got) : "error " + std::to_string(got.error().number);
    };
    EXPECT_TRUE(file->size() == kSize && stream->size() == kSize);
    EXPECT_EQ(read(131'070, 12), std::string("0123456789\0\0", 12)) << "across two blocks";
    EXPECT_EQ(read(kSize - 10, 100), "0123456789");
    EXPECT_EQ(read(kSize, 100), "");
    for (std::uint64_t at = 16 << 20; at + (1 << 20) < kSize; at += 1 << 20)
        EXPECT_EQ(read(at, 1 << 20).size(), 1U << 20);
    EXPECT_EQ(read(50 << 20, 10), "0123456789") << "once more than fits into memory was read";
    mount->stopAnswering();
    EXPECT_EQ(stream->waiting().count(), 0);
    // A process that is started now does not have the file, which it would have to close.
    const pid_t other = must(::fork());
    if (other == 0) ::execl("/bin/true", "true", nullptr);
    EXPECT_TRUE(comes([&] { return ::waitpid(other, nullptr, WNOHANG) != 0; }));
    for (const bool ends : {false, true}) {
        std::thread player([&] { EXPECT_EQ(read(8 << 20, 1), "error 0"); });
        EXPECT_TRUE(comes([&] { return stream->waiting().count() > 50; }));
        ends ? file.reset() : stream->allowReading(false);
        player.join();
        EXPECT_EQ(read(50 << 20, 10), "error 0");
        stream->allowReading(true);
        EXPECT_EQ(read(50 << 20, 10), ends ? "error 0" : "0123456789");
    }
    EXPECT_EQ(HelperSlot::taken(), 1U);
    mount->answerAgain();
    EXPECT_TRUE(noHelperHangs());
}

TEST_F(PatienceTest, SavingOnADiskThatDoesNotAnswerFailsAndLeavesTheOldFile) {
    LinuxFiles files;
    files.setPatience(&patience);
    const std::string report = dir.path() + "/mount/report", shown = dir.path() + "/shown/report";
    const auto begin = [&](const char* text) {
        auto file = *files.replace(report);
        EXPECT_TRUE(file->write(text));
        return file;
    };
    EXPECT_TRUE(begin("old")->commit());
    for (const bool commits : {false, true}) {
        auto file = begin("new");
        auto other = begin("other");
        mount->stopAnswering();
        EXPECT_EQ(numberOf(commits ? file->commit() : file->write("more")), ETIMEDOUT);
        EXPECT_EQ(numberOf(file->commit()), ETIMEDOUT);
        EXPECT_EQ(numberOf(files.replace(report)), ETIMEDOUT);
        file.reset();
        mount->answerAgain();
        EXPECT_TRUE(noHelperHangs());
        EXPECT_TRUE(other->write(" text"));
        EXPECT_TRUE(commits || contentOf(shown) == "old");
        EXPECT_TRUE(other->commit());
        EXPECT_EQ(contentOf(shown), "other text");
        EXPECT_TRUE(begin("old")->commit());
    }
    for (const auto& entry : fs::directory_iterator(dir.path() + "/shown"))
        EXPECT_FALSE(entry.path().filename().string().starts_with('.')) << entry.path();
}

TEST_F(PatienceTest, TheProgramsOwnFolderThereCostsItsLinesAndNoTime) {
    LinuxFiles files;
    files.setPatience(&patience);
    const std::string own = dir.path() + "/mount/";
    EXPECT_TRUE(files.append(own + "log", "line"));
    auto lock = files.lockFolderOf(own + "ini");
    EXPECT_NE(lock, nullptr);
    EXPECT_EQ(patience.silentDisk(), "");
    mount->stopAnswering();
    lock.reset();
    EXPECT_EQ(numberOf(files.append(own + "log", "line")), ETIMEDOUT);
    EXPECT_EQ(numberOf(files.readWhole(own + "log", 99)), ETIMEDOUT);
    EXPECT_TRUE(!files.exists(own + "log") && files.namesIn(own).empty());
    EXPECT_EQ(files.lockFolderOf(own + "ini"), nullptr);
    EXPECT_EQ(wait.pauses, 0) << "messages ran";
    EXPECT_EQ(patience.silentDisk(), dir.path() + "/mount");
    mount->answerAgain();
    EXPECT_TRUE(noHelperHangs());
    EXPECT_NE(files.lockFolderOf(own + "ini"), nullptr);
    EXPECT_TRUE(files.readWhole(own + "log", 99).valueOr("").starts_with("line"));
}

}  // namespace
}  // namespace hl::test
