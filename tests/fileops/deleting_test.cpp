// Tests what deleting reports, and in which order, with a scripted disk.
#include "fileops/deleting.h"

#include <algorithm>

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
    std::optional<bool> replaces = false;
    Protection protection = Protection::kNone;
    std::vector<std::string> asked;

    int removeFile(const FilePlace& place, OperationWatch&) override { return note("file", place), error; }
    Removal removeTree(const FilePlace& place, OperationWatch&) override {
        return note("tree", place), removal;
    }
    RecycleError recycle(const FilePlace& place, OperationWatch&, std::string&) override {
        return note("recycle", place), recycled;
    }
    int move(const FilePlace& from, const FilePlace& to, OperationWatch&) override {
        return note("move", from), note("to", to), error;
    }
    std::optional<bool> wouldReplace(const FilePlace&, const FilePlace&, OperationWatch&) override {
        return replaces;
    }
    Protection protectionOf(const FilePlace&, OperationWatch&) override { return protection; }

  private:
    void note(const char* what, const FilePlace& place) {
        asked.push_back(std::string(what) + " " + place.base + "|" + place.below);
    }
};

class QuietHost final : public FileOpsHost {
  public:
    std::string panel;
    void setFirstPanel(const std::string& text) override { panel = text; }
    void Preview_ShowFile() override {}
    void removeFromLists(const std::function<bool(const std::string&)>&) override {}
    bool closed() override { return false; }
};

class DeletingTest : public ::testing::Test {
  protected:
    /// The source is /src(a(aa) b), with 100 bytes and one file in aa, and 10 bytes and two files in b.
    DeletingTest() {
        bench_.disk.sources = {
            test::folder("/src", {test::folder("a", {test::folder("aa", {test::file("x", 100)})}),
                                  test::folder("b", {test::file("x", 4), test::file("y", 6)})})};
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

TEST_F(DeletingTest, WhatStayedIsToldOnceWithReasonsAndReadAgain) {
    const std::string stays = "Beim Löschen des Ordners '/src/b' ist ein Fehler aufgetreten: ";
    const Removal partly = {.failures = {{"/src/b/x", 13}, {"/src/b", 13, true}}, .failureCount = 4};
    const std::tuple<Removal, bool, std::string> cases[] = {
        {partly, false, stays + "Permission denied (/src/b/x) Permission denied(/src/b) ... und 2 weitere"},
        {{},
         true,
         "Beim Verschieben des Ordners'/src/b' in den Papierkorb ist ein Fehler aufgetreten: Security "
         "settings denied access to the source. (120)"}};
    disk_.recycled = RecycleError::kAccess;
    bench_.disk.find("/src/b/y")->facts.size = 1;  // This is what the removal left of it.
    for (const auto& [removal, recycle, text] : cases) {
        disk_.removal = removal;
        window_.calls.clear();
        DeleteFolders(ops_, {b_}, recycle);
        EXPECT_EQ(window_.calls, (std::vector<std::string>{text}));
        EXPECT_EQ(bench_.protocol().back(), text);
        EXPECT_EQ(numbers(b_), (std::vector<double>{5, 2, 0})) << text;
        EXPECT_EQ(numbers(src_), (std::vector<double>{105, 3, 3}));
    }
    EXPECT_EQ(bench_.protocol().size(), 2u);
    bench_.disk.find("/src")->items.pop_back();
    disk_.removal = {.vanished = true};
    DeleteFolders(ops_, {b_}, false);
    EXPECT_EQ(window_.calls.back(), stays + "'/src/b' ist nicht mehr da.");
    EXPECT_EQ(bench_.rows(), (std::vector<std::string>{"/src 100 1/2", "  a 100 1/1", "    aa 100 1/0"}));
    EXPECT_FALSE(bench_.state.ScanActive);
}

TEST_F(DeletingTest, ManyThatStayAreToldUpToANumber) {
    std::vector<Row> rows;
    for (int i = 0; i < 13; ++i) rows.push_back(row(b_, std::to_string(i).c_str(), 0, 0, 0));
    disk_.removal = {.failures = {{"/x", 13}}, .failureCount = 1};
    DeleteFolders(ops_, rows, false);
    ASSERT_EQ(window_.calls.size(), 1u);
    EXPECT_EQ(std::ranges::count(window_.calls[0], '\n'), 10);
    EXPECT_TRUE(window_.calls[0].ends_with("\n... und 3 weitere")) << window_.calls[0];
    EXPECT_EQ(bench_.protocol().size(), 13u);
}

TEST_F(DeletingTest, ProtectedFoldersAreNeitherRemovedNorRecycled) {
    for (const Protection protection : {Protection::kRoot, Protection::kHome, Protection::kProgram}) {
        disk_.protection = protection;
        for (const bool recycle : {false, true}) {
            window_.calls.clear();
            DeleteFolders(ops_, {a_}, recycle);
            EXPECT_EQ(window_.calls.size(), 1u);
        }
    }
    EXPECT_TRUE(disk_.asked.empty());
    EXPECT_EQ(bench_.report.rowCount(), 4u);
    EXPECT_EQ(numbers(src_), (std::vector<double>{110, 3, 3}));
}

TEST_F(DeletingTest, ARowThatSumsUpFilesIsPassedOver) {
    const Row files = row(a_, "Dateien", 0, 0, 0);
    bench_.report.setNumber(files, kIsFolder, 0);
    for (const bool recycle : {false, true}) DeleteFolders(ops_, {files}, recycle);
    renameInReport(ops_, files, "new");
    EXPECT_TRUE(disk_.asked.empty() && window_.calls.empty() && bench_.protocol().empty());
    EXPECT_EQ(bench_.report.text(files), "Dateien");
}

TEST_F(DeletingTest, AFileOfTheNewNameGoesToTheTrashAndIsReplacedOnlyWhereThereIsNone) {
    disk_.replaces = true;
    const std::tuple<RecycleError, bool, std::string> cases[] = {
        {RecycleError::kNone, true, "Die frühere Datei '/src/z' liegt jetzt im Papierkorb."},
        {RecycleError::kNoTrash, true,
         "Die frühere Datei '/src/z' wurde ersetzt; hier gibt es keinen Papierkorb."},
        {RecycleError::kNameTooLong, false, ""}};
    for (const auto& [error, moved, told] : cases) {
        disk_.recycled = error;
        disk_.asked.clear();
        window_.calls.clear();
        host_.panel.clear();
        bench_.report.setText(b_, "b");
        renameInReport(ops_, b_, "z");
        EXPECT_EQ(disk_.asked.back(), moved ? "to /src|z" : "recycle /src|z");
        EXPECT_EQ(bench_.report.text(b_), moved ? "z" : "b");
        EXPECT_EQ(host_.panel, told);
        EXPECT_EQ(window_.calls.empty(), moved);
    }
    disk_.replaces = std::nullopt;
    disk_.asked.clear();
    renameInReport(ops_, b_, "y");
    EXPECT_TRUE(disk_.asked.empty()) << "nobody knows what it would replace";
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
