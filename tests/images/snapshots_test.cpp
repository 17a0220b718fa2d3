// Snapshots and subvolumes of a real btrfs: what counts, and what stays.
#include "images/image_mount.h"
#include "platform/linux/change/trash.h"
#include "platform/linux/change/tree_removal.h"
#include "platform/linux/scan/file_system.h"
#include "support/program.h"

namespace hl::test {
namespace {

struct BtrfsSubvolumes : testing::Test {
    void SetUp() override {
        if (!image.missing().empty()) GTEST_SKIP() << image.missing();
        // A user without rights has to get there, too.
        fs::permissions(fs::path(image.path()).parent_path(), fs::perms(0755));
    }
    std::string at(const std::string& name) const { return image.path() + "/" + name; }
    void make(const std::string& name) const {
        ASSERT_TRUE(shellDoes("btrfs subvolume create '" + at(name) + "'")) << name;
        writeFile(at(name) + "/f", std::string(1000, 'x'));
    }
    void snapshot(const std::string& of, const std::string& name, const char* readOnly = "-r") const {
        ASSERT_TRUE(shellDoes(std::string("btrfs subvolume snapshot ") + readOnly + " '" + at(of) + "' '" +
                              at(name) + "'"))
            << name;
    }
    /// Returns the sorted lines of a report, each from the path below the image on.
    std::vector<std::string> reportOf(const std::string& name, bool withoutRights = false) const {
        const Ended ended = program.run(
            {"-s", "-", at(name)}, withoutRights ? becomeNobody : [] {});
        EXPECT_EQ(ended.status, 0) << ended.errors;
        std::istringstream text(std::regex_replace(ended.output, std::regex("[\"\r]"), ""));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);)
            if (line.starts_with(image.path())) lines.push_back(line.substr(image.path().size()));
        std::ranges::sort(lines);
        return lines;
    }

    ImageMount image{"btrfs", 512};
    Program program;
};

TEST_F(BtrfsSubvolumes, OnlyReadOnlySnapshotsOfWhatIsInTheSourceAreLeftOut) {
    make("z");
    make("gone");
    makeFolder(at("a"));
    snapshot("z", "a/before");
    snapshot("z", "a/writable", "");
    snapshot("a/before", "z/next");
    snapshot("gone", "lonely");
    ASSERT_TRUE(shellDoes("btrfs subvolume delete '" + at("gone") + "'"));
    snapshot(".", "whole");
    const std::vector<std::string> left = {
        ",3000,3,7",    "/a,1000,1,2", "/a/before,0,0,0",       "/a/writable,1000,1,0", "/lonely,1000,1,0",
        "/whole,0,0,0", "/z,1000,1,1", "/z/[Dateien],1000,1,0", "/z/next,0,0,0"};
    EXPECT_EQ(reportOf("."), left);
    EXPECT_EQ(reportOf(".", true), left) << "it takes no rights";
    EXPECT_EQ(reportOf("a/before").front(), "/a/before,1000,1,0") << "a source is read";
    EXPECT_EQ(reportOf("a").front(), "/a,2000,2,2") << "the origin is not in this source";
    program.setOptions({"CountSnapshots=1"});
    EXPECT_EQ(reportOf(".").front(), ",5000,5,12");
    LinuxFileSystem files(limitsOfThisMachine(false));
    EXPECT_TRUE(files.countsBeforeCompression(at("a")));
    EXPECT_FALSE(files.countsBeforeCompression("/dev/shm"));
}

TEST_F(BtrfsSubvolumes, AreBusyForWhoeverDeletesOrRecyclesThemOrAFolderAboveThem) {
    for (int i = 0; i < 260; ++i) make("s" + std::to_string(i));  // One call tells 255 of them.
    makeTree(image.path(), {"tree/file", "tree/a/b/", "tree/c/", "other/file"});
    make("tree/a/b/inner");
    snapshot("s0", "tree/c/snapshot");
    const TrashSettings trash{at("trash"), ::geteuid()};
    for (const char* place : {"tree", "tree/a", "tree/c/snapshot", "s1"})
        EXPECT_EQ(moveToTrash({at(place)}, trash), RecycleError::kRoot) << place;
    EXPECT_EQ(moveToTrash({at("other")}, trash), RecycleError::kNone);

    DirectoryCalls calls;
    Whereabouts whereabouts;
    for (const auto& [place, wanted] : {std::pair("tree", 2), {"s1", 1}}) {
        const Removal removal = TreeRemoval(calls, whereabouts, 64).run({at(place)});
        EXPECT_EQ(std::ranges::count(removal.failures, EBUSY,
                                     [](const RemovalFailure& each) { return each.error.number; }),
                  wanted);
        EXPECT_FALSE(removal.removed);
    }
    EXPECT_FALSE(fs::exists(at("tree/file")));
    for (const char* stays : {"tree/a/b/inner/f", "tree/c/snapshot/f", "s1/f"})
        EXPECT_TRUE(fs::exists(at(stays))) << stays;
}

}  // namespace
}  // namespace hl::test
