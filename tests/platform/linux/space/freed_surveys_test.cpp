// Tests what a survey finds on the disk, and that it ends.
#include "platform/linux/space/freed_surveys.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <stdexcept>

#include "platform/linux/process/descriptor.h"
#include "platform/linux/scan/folder_record.h"
#include "platform/linux/space/open_files.h"
#include "platform/linux/space/shared_work.h"
#include "support/fuse_mount.h"
#include "support/mounted.h"
#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"

namespace {

using namespace hl;
using namespace hl::test;

/// Returns the last figures of a survey of what is at `paths`.
FreedSpace surveyed(std::vector<FilePlace> places, SilentDisks* disks = nullptr,
                    std::shared_ptr<DirectoryCalls> calls = std::make_shared<DirectoryCalls>()) {
    LinuxFreedSurveys surveys(std::move(calls), std::make_shared<LinuxOpenFiles>(), disks, 3);
    const auto survey = surveys.begin(std::move(places));
    FreedSpace figures;
    comes([&] { return (figures = survey->figures()).state == SurveyState::kEnded; });
    return figures;
}

std::uint64_t blocksOf(const std::string& path) {
    return static_cast<std::uint64_t>(factsOf(path).st_blocks) * 512;
}

TEST(FreedSurveys, NamesOutsideOpenFilesAndHolesCountAsWhatTheyAre) {
    const TempDir dir;
    const std::string tree = dir.path() + "/tree";
    const auto of = [&](const std::string& name) { return tree + "/" + name; };
    writeDeepFile(of("a/b/c/d/e/own"), std::string(10'000, 'x'));
    writeFile(of("whole"), std::string(20'000, 'x'));
    must(::link(of("whole").c_str(), of("a/other").c_str()));
    writeFile(of("held outside"), std::string(30'000, 'x'));
    must(::link(of("held outside").c_str(), (dir.path() + "/outside").c_str()));
    writeFile(of("open"), std::string(40'000, 'x'));
    const Descriptor open = openAt(AT_FDCWD, of("open"), O_RDONLY);
    writeFile(of("sparse"), "x");
    must(::truncate(of("sparse").c_str(), 1 << 30));
    makeFolder(dir.path() + "/beside");
    writeFile(dir.path() + "/beside/big", std::string(500'000, 'x'));
    must(::symlink("../beside", of("link").c_str()));

    // The tree is selected twice, and a folder of it once more.
    const FreedSpace sum = surveyed({{tree}, {tree}, {of("a/b")}});
    const std::uint64_t folders = blocksOf(tree) + blocksOf(of("a")) + blocksOf(of("a/b")) +
                                  blocksOf(of("a/b/c")) + blocksOf(of("a/b/c/d")) + blocksOf(of("a/b/c/d/e"));
    struct stat link {};
    must(::lstat(of("link").c_str(), &link));
    EXPECT_EQ(sum.now.bytes, folders + blocksOf(of("a/b/c/d/e/own")) + blocksOf(of("whole")) +
                                 blocksOf(of("sparse")) + static_cast<std::uint64_t>(link.st_blocks) * 512);
    EXPECT_EQ(sum.now.files, 4U);
    EXPECT_EQ(sum.otherNames, (FreedAmount{blocksOf(of("held outside")), 1}));
    ASSERT_EQ(sum.whenClosed.size(), 1U);
    EXPECT_EQ(sum.whenClosed[0].amount, (FreedAmount{blocksOf(of("open")), 1}));
    EXPECT_EQ(sum.whenClosed[0].holders[0].process, ::getpid());
    EXPECT_EQ(sum.all.files, 6U);
    EXPECT_EQ(sum.foldersUnknown, 0U);

    // Not every file system tells what an entry is.
    class Untold final : public DirectoryCalls {
        long readEntries(int folder, void* buffer, std::size_t bytes) override {
            const long got = DirectoryCalls::readEntries(folder, buffer, bytes);
            auto* records = static_cast<char*>(buffer);
            for (long at = 0; at < got;) {
                auto* record = reinterpret_cast<FolderRecord*>(records + at);
                record->type = DT_UNKNOWN;
                at += record->length;
            }
            return got;
        }
    };
    const FreedSpace untold = surveyed({{tree}}, nullptr, std::make_shared<Untold>());
    EXPECT_EQ(untold.now, sum.now);
    EXPECT_EQ(untold.all, sum.all);

    // One name of two, and a file twice.
    const FreedSpace one = surveyed({{of("whole")}, {of("sparse")}, {of("sparse")}, {of("gone")}});
    EXPECT_EQ(one.otherNames.files, 1U);
    EXPECT_EQ(one.now.files, 1U);
}

TEST(FreedSurveys, FoldersThatVanishAndFilesThatGrowMeanwhileDoNoHarm) {
    // Removes a folder when it is about to be opened, and makes a file grow when it is looked at.
    class Changing final : public DirectoryCalls {
      public:
        int openChild(int parent, const char* name, bool followLinks, bool crossMounts) override {
            if (std::string(name) == "vanishes") ::unlinkat(parent, name, AT_REMOVEDIR);
            return DirectoryCalls::openChild(parent, name, followLinks, crossMounts);
        }
        int look(int folder, const char* name, bool followLinks, unsigned mask, struct statx& out) override {
            if (std::string(name) == "goes") ::unlinkat(folder, name, 0);
            const int result = DirectoryCalls::look(folder, name, followLinks, mask, out);
            if (std::string(name) == "grows") writeFile(file, std::string(100'000, 'y'));
            return result;
        }
        std::string file;
    };
    const TempDir dir;
    makeFolder(dir.path() + "/vanishes");
    for (const char* name : {"grows", "goes", "stays"}) writeFile(dir.path() + "/" + name, "x");
    const auto calls = std::make_shared<Changing>();
    calls->file = dir.path() + "/grows";
    LinuxFreedSurveys surveys(calls, std::make_shared<LinuxOpenFiles>());
    const auto survey = surveys.begin({{dir.path()}});
    FreedSpace sum;
    EXPECT_TRUE(comes([&] { return (sum = survey->figures()).state == SurveyState::kEnded; }));
    EXPECT_EQ(sum.now.files, 2U);
    EXPECT_EQ(sum.foldersUnknown, 0U);
}

TEST(FreedSurveys, AListOfOpenFilesThatHangsKeepsNoFigureBack) {
    class Hanging final : public OpenFiles {
      public:
        OpenFilesAnswer list(const Wanted&) const override {
            while (hangs) ::usleep(1000);
            return {.sawAll = true};
        }
        std::atomic<bool> hangs = true;
    };
    const TempDir dir;
    writeFile(dir.path() + "/file", std::string(10'000, 'x'));
    const auto open = std::make_shared<Hanging>();
    LinuxFreedSurveys surveys(std::make_shared<DirectoryCalls>(), open);
    const auto survey = surveys.begin({{dir.path()}});
    FreedSpace sum;
    EXPECT_TRUE(comes([&] { return (sum = survey->figures()).now.files == 1; }));
    EXPECT_EQ(sum.state, SurveyState::kRuns);
    EXPECT_TRUE(comes([&] { return (sum = survey->figures()).state == SurveyState::kEnded; }));
    EXPECT_EQ(sum.openFiles, OpenFilesKnown::kNoAnswer);
    open->hangs = false;
    EXPECT_TRUE(comes([] { return HelperSlot::taken() == 0; }));
}

TEST(FreedSurveys, AMountStays) {
    const TempDir dir;
    const Mounted mount("none", dir.path() + "/tree/at", "tmpfs");
    if (!mount.done()) GTEST_SKIP() << "the test may not mount";
    writeFile(dir.path() + "/tree/at/file", "x");
    writeFile(dir.path() + "/tree/own", "x");
    const FreedSpace sum = surveyed({{dir.path() + "/tree"}});
    EXPECT_EQ(sum.mounts, 1U);
    EXPECT_EQ(sum.all.files, 1U);
    EXPECT_EQ(surveyed({FilePlace{.base = dir.path(), .below = "tree/at"}}).mounts, 1U);
}

TEST(SharedWork, DoesEachItemOnceAndPassesOnWhatItThrew) {
    SharedWork shared;
    for (const std::size_t count : {0U, 1U, 7U, 8U, 1000U}) {
        std::vector<std::atomic<int>> done(count);
        shared.run(count, [&](std::size_t, std::size_t item) { ++done[item]; });
        for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(done[i], 1) << count << " " << i;
        for (const std::size_t thread : {0U, 1U}) {
            std::atomic<bool> thrown = false;
            const auto fails = [&](std::size_t of, std::size_t) {
                if (of == thread && !thrown.exchange(true)) throw std::runtime_error("no");
                if (of != thread) ::usleep(10);  // So that both come to do something.
            };
            bool caught = false;
            try {
                shared.run(count, fails);
            } catch (const std::runtime_error&) {
                caught = true;
            }
            EXPECT_EQ(caught, thrown) << count << " " << thread;
        }
    }
}

TEST(FreedSurveys, AFolderThatCannotBeReadIsNotKnown) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root makes a folder that another user cannot read";
    const TempDir dir;
    makeFolder(dir.path() + "/closed");
    writeFile(dir.path() + "/closed/file", "x");
    must(::chmod((dir.path() + "/closed").c_str(), 0));
    must(::chmod(dir.path().c_str(), 0755));
    EXPECT_EQ(inChild([&] {
                  must(::setresuid(61'001, 61'001, 61'001));
                  const FreedSpace sum = surveyed({{dir.path()}});
                  return sum.foldersUnknown == 1 && sum.openFiles == OpenFilesKnown::kOwn ? 0 : 1;
              }),
              0);
}

TEST(FreedSurveys, AServersFilesAreNotKnownAndADeadOneIsLeftAtOnce) {
    const TempDir dir;
    writeDeepFile(dir.path() + "/of/tree/file", std::string(10'000, 'x'));
    FuseMount mount(dir.path() + "/of", dir.path() + "/at");
    if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    SilentDisks disks;
    const FreedSpace sum = surveyed({{dir.path() + "/at/tree"}}, &disks);
    EXPECT_EQ(sum.unknown.files, 1U);
    EXPECT_EQ(sum.now, FreedAmount());

    mount.stopAnswering();
    LinuxFreedSurveys surveys(std::make_shared<DirectoryCalls>(), std::make_shared<LinuxOpenFiles>(), &disks);
    writeFile(dir.path() + "/local", std::string(5'000, 'x'));
    {
        const auto survey = surveys.begin({{dir.path() + "/at/tree"}, {dir.path() + "/local"}});
        FreedSpace figures;
        EXPECT_TRUE(comes([&] { return (figures = survey->figures()).state == SurveyState::kSilent; }));
    }  // Nobody waits here.
    // The disk is known to be silent now, so nothing asks it; what is on others is told.
    const FreedSpace rest = surveyed({{dir.path() + "/at/tree"}, {dir.path() + "/local"}}, &disks);
    EXPECT_EQ(rest.state, SurveyState::kEnded);
    EXPECT_EQ(rest.now.files, 1U);
    EXPECT_EQ(rest.silentPlaces, 1U);
    mount.answerAgain();
}

}  // namespace
