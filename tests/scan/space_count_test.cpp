// What the walk counts for a balance, against what other programs find.
#include <sys/stat.h>

#include "platform/linux/scan/file_system.h"
#include "support/mounted.h"
#include "support/program.h"
#include "support/scan_fixture.h"

namespace hl {
namespace {

using namespace test;

/// The machine's files. Folders' own space is asked for wherever the source lies, as if it were the root of a
/// file system, unless `honest`.
class AsWholeDisk final : public FileSystem {
  public:
    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override {
        ReadOptions asked = options;
        if (asked.folderSpace == FolderSpace::kOfWholeDisk && !honest)
            asked.folderSpace = FolderSpace::kAlways;
        return disk_.read(source, asked, wait);
    }
    Result<PathFacts> look(std::string_view path) override { return disk_.look(path); }
    Result<std::string> target(std::string_view path) override { return disk_.target(path); }
    bool countsBeforeCompression(std::string_view) override { return false; }
    bool honest = false;

  private:
    LinuxFileSystem disk_{limitsOfThisMachine(true)};
};

class SpaceCountTest : public ScanFixture {
  protected:
    SpaceCountTest() {
        makeFolder(at(""));
        for (const char* folder : {"a", "a/b", "c"}) makeFolder(at(folder));
        writeFile(at("a/data"), std::string(100'001, 'x'));
        writeFile(at("a/b/tiny"), "x");
        makeFile(at("c/hole"), 70'000'000);
        fs::create_hard_link(at("a/data"), at("c/again"));
        fs::create_hard_link(at("a/data"), at("a/b/again"));
        std::string nowhere;
        while (nowhere.size() < 700) nowhere += "l/";
        fs::create_symlink(nowhere, at("c/long"));
        fs::create_directory_symlink(at("") + std::string(700, '/') + "a", at("c/folder"));
        state.balance.wanted = true;
    }
    std::string at(const std::string& name) const { return dir.path() + "/tree/" + name; }
    const SourceSpace& read() {
        QuelleEinlesen(real, at(""), 0, kNoRow);
        return state.balance.sources.at(dir.path() + "/tree");
    }
    /// Returns the sum that find and awk make of all entries, each file once with `once`.
    std::uint64_t found(const std::string& format, const std::string& what, bool once) const {
        const std::string unique = once ? " | sort -u -k2,2" : "";
        return std::stoull(outputOf("find '" + at("") + "' " + what + " -printf '" + format + " %i\\n'" +
                                    unique + " | awk '{ s += $1 } END { printf \"%d\", s }'"));
    }

    AsWholeDisk machine;
    Services onDisk{store, texts, log, files, machine, pump, console, diagnostics, paths, numbers};
    ScanContext real{onDisk, state, options, combo, report, top, hardlinks, junctions, host, host, &host};
};

TEST_F(SpaceCountTest, IsWhatFindCountsAndAddsUpToWhatDuSays) {
    for (const Flag namesOnce : {Flag{0}, Flag{1}}) {
        options.AddHardlinksOnlyOnce = namesOnce;
        const SourceSpace& space = read();
        ASSERT_TRUE(space.complete && space.isWholeDisk && !space.changed);
        const SpaceCount& count = space.count;
        const std::string noFolders = "! -type d ! -xtype d";
        EXPECT_EQ(count.apparent, found("%s", noFolders, false));
        EXPECT_EQ(count.furtherNames, count.apparent - found("%s", noFolders, true));
        EXPECT_EQ(count.ofFolders, 512 * found("%b", "-xtype d", true));
        EXPECT_EQ(count.taken(), std::stoull(outputOf("du -s --block-size=1 '" + at("") + "'")));
        EXPECT_GT(count.roundedUp, 0U);
        EXPECT_EQ(count.holes, 70'000'000U);
    }
}

TEST_F(SpaceCountTest, LeavesOutWhatIsReadBehindALink) {
    options.ScanHardlinks = 1;
    makeFolder(dir.path() + "/other");
    makeFile(dir.path() + "/other/file", 5000);
    fs::create_directory_symlink(dir.path() + "/other", at("c/elsewhere"));
    const std::uint64_t followed = read().count.taken();
    options.ScanHardlinks = 0;
    EXPECT_EQ(followed, read().count.taken());
}

TEST_F(SpaceCountTest, IsNotMadeForAFolderOfADiskAndIsIncompleteAfterAStop) {
    machine.honest = true;
    EXPECT_FALSE(read().isWholeDisk);
    EXPECT_EQ(read().count.apparent, 0U);
    state.CancelState = kCancelStop;
    EXPECT_FALSE(read().complete);
}

TEST_F(SpaceCountTest, IsOlderThanTheSourceOnceAFolderOfItIsReadAgain) {
    read();
    report.setCurrentRow(rowOf("c"));
    Report_Rescan(real);
    EXPECT_TRUE(state.balance.sources.at(dir.path() + "/tree").changed);
    report.setCurrentRow(report.firstRoot());
    Report_Rescan(real);
    EXPECT_FALSE(state.balance.sources.at(dir.path() + "/tree").changed);
}

TEST_F(SpaceCountTest, KnowsTheRootOfAFileSystemButNotAFolderMountedElsewhere) {
    const Mounted whole("none", at("disk"), "tmpfs"), part(at("a"), at("part"), nullptr, MS_BIND);
    if (!whole.done() || !part.done()) GTEST_SKIP() << "the test may not mount";
    machine.honest = true;
    makeFile(at("disk/file"), 5000);
    for (const auto& [name, isWhole] : {std::pair("disk", true), {"part", false}}) {
        QuelleEinlesen(real, at(name) + "/", 0, kNoRow);
        EXPECT_EQ(state.balance.sources.at(at(name)).isWholeDisk, isWhole) << name;
    }
    EXPECT_EQ(state.balance.sources.at(at("disk")).count.apparent, 5000U);
}

}  // namespace
}  // namespace hl
