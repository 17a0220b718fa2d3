// What deleting tells, and in which order, with a disk that answers as it is told.
#include "fileops/deleting.h"

#include "fileops/renaming.h"
#include "support/fake_window.h"
#include "support/scan_fixture.h"

namespace hl {
namespace {

using namespace test;

class ScriptedOperations final : public FileOperations {
  public:
    Removal removal{.removed = true};
    RecycleError recycled = RecycleError::kNone;
    int error = 0;
    Protection protection = Protection::kNone;
    std::vector<std::string> asked;

    int removeFile(const FilePlace& place, OperationWatch&) override { return note("file", place), error; }
    Removal removeTree(const FilePlace& place, OperationWatch&) override {
        return note("tree", place), removal;
    }
    RecycleError recycle(const FilePlace& place, OperationWatch&) override {
        return note("recycle", place), recycled;
    }
    int move(const FilePlace& from, const FilePlace& to, OperationWatch&) override {
        return note("move", from), note("to", to), error;
    }
    Protection protectionOf(const FilePlace&, OperationWatch&) override { return protection; }

  private:
    void note(const char* what, const FilePlace& place) {
        asked.push_back(std::string(what) + " " + place.base + "|" + place.below);
    }
};

class QuietHost final : public FileOpsHost {
  public:
    void setFirstPanel(const std::string&) override {}
    void Preview_Reset_View() override {}
    void List_Files_Refresh() override { ++refreshed; }
    void listChanged(GridId) override {}
    bool closed() override { return false; }
    int refreshed = 0;
};

class DeletingTest : public ::testing::Test {
  protected:
    /// /src(a(aa) b), 100 bytes and one file in aa, 10 bytes and two files in b.
    DeletingTest() {
        src_ = row(kNoRow, "/src", 110, 3, 3);
        a_ = row(src_, "a", 100, 1, 1);
        aa_ = row(a_, "aa", 100, 1, 0);
        b_ = row(src_, "b", 10, 2, 0);
    }
    Row row(Row parent, const char* text, double size, double files, double folders) {
        const Row made = bench_.report.addRow(parent, text);
        bench_.report.setNumber(made, kIsFolder, 1);
        bench_.report.setNumber(made, kSize, size);
        bench_.report.setNumber(made, kFiles, files);
        bench_.report.setNumber(made, kFolders, folders);
        return made;
    }
    std::vector<double> numbers(Row row) const {
        const Grid& report = bench_.report;
        return {report.number(row, kSize), report.number(row, kFiles), report.number(row, kFolders)};
    }

    ScanBench bench_;
    ScriptedOperations disk_;
    FakeWindow window_;
    QuietHost host_;
    FileOps ops_{bench_.scan, disk_, window_, host_};
    Row src_, a_, aa_, b_;
};

TEST_F(DeletingTest, APlaceBeginsAtTheLongestSourceThatHoldsIt) {
    bench_.report.addRow(kNoRow, "/src/a");
    const char* const cases[][3] = {{"/src/b/c", "/src", "b/c"},
                                    {"/src/a/x", "/src/a", "x"},
                                    {"/src", "/src", ""},
                                    {"/srcs/x", "/srcs/x", ""},
                                    {"/other", "/other", ""}};
    for (const auto& [path, base, below] : cases) {
        const FilePlace place = placeOf(bench_.scan, path);
        EXPECT_EQ(place.base, base) << path;
        EXPECT_EQ(place.below, below) << path;
        EXPECT_FALSE(place.followLinks);
    }
    bench_.report.clear();
    bench_.report.addRow(kNoRow, "/");
    bench_.options.ScanHardlinks = 1;
    EXPECT_EQ(placeOf(bench_.scan, "/usr/x").below, "usr/x");
    EXPECT_TRUE(placeOf(bench_.scan, "/usr/x").followLinks);
}

TEST_F(DeletingTest, SelectedFoldersTellWhatStayedAndGoOn) {
    const std::string stays = "Beim Löschen des Ordners '/src/b' ist ein Fehler aufgetreten: ";
    const Removal partly = {.failures = {{"/src/b/x", 13}, {"/src/b", 13, true}}, .failureCount = 4};
    const std::tuple<Removal, bool, std::string> cases[] = {
        {{.vanished = true}, false, stays},
        {partly, false, stays + "Permission denied (/src/b/x) Permission denied(/src/b) ... und 2 weitere"},
        {{},
         true,
         "Beim Verschieben des Ordners'/src/b' in den Papierkorb ist ein Fehler aufgetreten: Security "
         "settings denied access to the source. (120)"}};
    bench_.report.setSelected(b_, true);
    disk_.recycled = RecycleError::kAccess;
    for (const auto& [removal, recycle, text] : cases) {
        disk_.removal = removal;
        window_.calls.clear();
        DeleteFolders(ops_, recycle);
        EXPECT_EQ(window_.calls, (std::vector<std::string>{text}));
        EXPECT_EQ(bench_.protocol().back(), text);
        EXPECT_EQ(bench_.report.rowCount(), 4u) << text;
    }
    disk_.removal = {.removed = true};
    DeleteFolders(ops_, false);
    EXPECT_EQ(bench_.protocol().back(), "GELÖSCHT: /src/b");
    EXPECT_EQ(bench_.report.rowCount(), 3u);
    EXPECT_EQ(numbers(src_), (std::vector<double>{110, 3, 3}));
    EXPECT_FALSE(bench_.state.ScanActive);
}

TEST_F(DeletingTest, TheMenusWayTellsNothingAndTakesTheNumbersOut) {
    disk_.removal = {.failures = {{"/src/a/aa/x", 13}}, .failureCount = 1};
    Report_DeleteFolder(ops_, aa_, false);
    EXPECT_EQ(disk_.asked, (std::vector<std::string>{"tree /src|a/aa"}));
    EXPECT_TRUE(window_.calls.empty() && bench_.protocol().empty());
    EXPECT_EQ(numbers(a_), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(numbers(src_), (std::vector<double>{10, 2, 2}));
    EXPECT_EQ(bench_.report.rowCount(), 3u);
    EXPECT_EQ(host_.refreshed, 1);
}

TEST_F(DeletingTest, ProtectedFoldersAreNeitherRemovedNorRecycled) {
    bench_.report.setSelected(a_, true);
    for (const Protection protection : {Protection::kRoot, Protection::kHome, Protection::kProgram}) {
        disk_.protection = protection;
        for (const bool recycle : {false, true}) {
            window_.calls.clear();
            DeleteFolders(ops_, recycle);
            Report_DeleteFolder(ops_, a_, recycle);
            EXPECT_EQ(window_.calls.size(), 2u);
        }
    }
    EXPECT_TRUE(disk_.asked.empty());
    EXPECT_EQ(bench_.report.rowCount(), 4u);
    EXPECT_EQ(numbers(src_), (std::vector<double>{110, 3, 3}));
}

TEST_F(DeletingTest, ARowThatSumsUpFilesIsNoFolderOfThatName) {
    const Row files = row(a_, "Dateien", 0, 0, 0);
    bench_.report.setNumber(files, kIsFolder, 0);
    bench_.report.setSelected(files, true);
    DeleteFolders(ops_, false);
    DeleteFolders(ops_, true);
    renameInReport(ops_, files, "new");
    EXPECT_TRUE(disk_.asked.empty());
    EXPECT_EQ(window_.calls.size(), 3u);
    EXPECT_EQ(bench_.report.text(files), "Dateien");
}

TEST_F(DeletingTest, ARenamedFolderIsWhereTheListLooksNext) {
    renameInReport(ops_, a_, "a");
    EXPECT_TRUE(disk_.asked.empty());
    disk_.error = 13;
    renameInReport(ops_, a_, "z");
    EXPECT_EQ(window_.calls, (std::vector<std::string>{"Permission denied"}));
    EXPECT_EQ(bench_.report.text(a_), "a");
    disk_.error = 0;
    bench_.state.currentFolder = "/src/a/aa/";
    renameInReport(ops_, a_, "z");
    EXPECT_EQ(disk_.asked.back(), "to /src|z");
    EXPECT_EQ(bench_.report.text(a_), "z");
    EXPECT_EQ(bench_.state.currentFolder, "/src/z/aa/");
    renameInReport(ops_, b_, "y");
    EXPECT_EQ(bench_.state.currentFolder, "/src/z/aa/");
    renameInReport(ops_, src_, "other");
    EXPECT_EQ(bench_.report.text(src_), "/src");
}

}  // namespace
}  // namespace hl
