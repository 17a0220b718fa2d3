// Tests what deleting reports, and in which order, with a scripted disk.
#include "fileops/deleting.h"

#include "fileops/renaming.h"
#include "fileops/undo_steps.h"
#include "platform/linux/change/trash.h"
#include "support/fake_window.h"
#include "support/scan_fixture.h"

namespace hl::test {
namespace {

class ScriptedOperations final : public FileOperations {
  public:
    Removal removal{.removed = true};
    Result<Moved> recycled = Moved{};
    Result<> moved;
    Result<bool> replaces = false;
    Protection protection = Protection::kNone;
    std::vector<std::string> asked;

    Result<> removeFile(const FilePlace& place, OperationWatch&) override {
        return note("file", place), moved;
    }
    Removal removeTree(const FilePlace& place, OperationWatch&) override {
        return note("tree", place), removal;
    }
    Result<Moved> recycle(const FilePlace& place, OperationWatch&) override {
        return note("recycle", place), recycled;
    }
    Result<> putBack(const Moved&, const FilePlace& to, OperationWatch&) override {
        return note("back", to), moved;
    }
    Result<Moved> move(const FilePlace& from, const FilePlace& to, OperationWatch&) override {
        note("move", from), note("to", to);
        if (!moved) return moved.error();
        return Moved{};
    }
    Result<bool> wouldReplace(const FilePlace&, const FilePlace&, OperationWatch&) override {
        return replaces;
    }
    Protection protectionOf(const FilePlace&, OperationWatch&) override { return protection; }

  private:
    void note(const char* what, const FilePlace& place) {
        asked.push_back(std::string(what) + " " + place.base + "|" + place.below);
    }
};

struct QuietHost final : FileOpsHost {
    std::string panel;
    void setFirstPanel(const std::string& text) override { panel = text; }
    void offerTakeBack(const std::string& text) override { panel = text; }
    void Preview_ShowFile() override {}
    void filesWent(const std::function<bool(const std::string&)>&) override {}
    void fileRenamed(const std::string&, const std::string&) override {}
    void folderShown(Row, const std::string&) override {}
    bool closed() override { return false; }
};

struct DeletingTest : ScanFixture {
    /// The source is /src(a(aa) b), with 100 bytes and one file in aa, and 10 bytes and two files in b.
    DeletingTest() {
        disk.sources = {folder("/src", {folder("a", {folder("aa", {file("x", 100)})}),
                                        folder("b", {file("x", 4), file("y", 6)})})};
        readSources({"/src"});
        options.AskBeforeDelete = 0;
        src_ = rowOf("/src"), a_ = rowOf("a"), b_ = rowOf("b");
        clearProtocol();
    }

    ScriptedOperations operations_;
    FakeWindow window_;
    QuietHost host_;
    UndoSteps undo_;
    FileOps ops_{scan, operations_, window_, host_, undo_};
    Row src_, a_, b_;
};

TEST_F(DeletingTest, APlaceBeginsAtTheLongestSourceThatHoldsIt) {
    report.addRow(kNoRow, "/src/a");
    const char* const cases[][3] = {{"/src/b/c", "/src", "b/c"},
                                    {"/src/a/x", "/src/a", "x"},
                                    {"/src", "/src", ""},
                                    {"/srcs/x", "/srcs/x", ""},
                                    {"/other", "/other", ""}};
    for (const auto& [path, base, below] : cases) {
        const FilePlace place = placeOf(scan, path);
        EXPECT_EQ(place.base + "|" + place.below, base + std::string("|") + below) << path;
        EXPECT_FALSE(place.followLinks);
    }
    report.clear();
    report.addRow(kNoRow, "/");
    options.ScanHardlinks = 1;
    EXPECT_EQ(placeOf(scan, "/usr/x").below, "usr/x");
    EXPECT_TRUE(placeOf(scan, "/usr/x").followLinks);
}

TEST_F(DeletingTest, WhatStayedIsToldOnceWithReasonsAndReadAgain) {
    const std::string stays = "Beim Löschen des Ordners '/src/b' ist ein Fehler aufgetreten: ";
    const Removal partly = {
        .failures = {{systemError(EACCES, "/src/b/x")}, {systemError(EACCES, "/src/b"), true}},
        .failureCount = 4};
    const std::tuple<Removal, bool, std::string> cases[] = {
        {partly, false, stays + "Permission denied (/src/b/x) Permission denied(/src/b) ... und 2 weitere"},
        {{},
         true,
         "Beim Verschieben des Ordners'/src/b' in den Papierkorb ist ein Fehler aufgetreten: Security "
         "settings denied access to the source. (120)"}};
    operations_.recycled = recycleError(RecycleError::kAccess);
    disk.find("/src/b/y")->facts.size = 1;  // This is what the removal left of it.
    for (const auto& [removal, recycle, text] : cases) {
        operations_.removal = removal;
        window_.calls.clear();
        DeleteFolders(ops_, {b_}, recycle);
        EXPECT_EQ(window_.calls, (Lines{text}));
        EXPECT_EQ(protocol().back(), text);
        EXPECT_EQ(numbersOf(b_), "b 5 2/0") << text;
        EXPECT_EQ(numbersOf(src_), "/src 105 3/3");
    }
    EXPECT_EQ(protocol().size(), 2u);
    disk.find("/src")->items.pop_back();
    operations_.removal = {.vanished = true};
    DeleteFolders(ops_, {b_}, false);
    EXPECT_EQ(window_.calls.back(), stays + "'/src/b' ist nicht mehr da.");
    EXPECT_EQ(rows(), (Lines{"/src 100 1/2", "  a 100 1/1", "    aa 100 1/0"}));
    EXPECT_FALSE(state.ScanActive);
}

TEST_F(DeletingTest, ManyThatStayAreToldUpToANumber) {
    std::vector<Row> many;
    for (int i = 0; i < 13; ++i) {
        many.push_back(report.addRow(b_, std::to_string(i)));
        report.setNumber(many.back(), kIsFolder, 1);
    }
    operations_.removal = {.failures = {{systemError(EACCES, "/x")}}, .failureCount = 1};
    DeleteFolders(ops_, many, false);
    ASSERT_EQ(window_.calls.size(), 1u);
    EXPECT_EQ(std::ranges::count(window_.calls[0], '\n'), 10);
    EXPECT_TRUE(window_.calls[0].ends_with("\n... und 3 weitere")) << window_.calls[0];
    EXPECT_EQ(protocol().size(), 13u);
}

TEST_F(DeletingTest, ProtectedFoldersAreNeitherRemovedNorRecycled) {
    for (const Protection protection : {Protection::kRoot, Protection::kHome, Protection::kProgram}) {
        operations_.protection = protection;
        for (const bool recycle : {false, true}) {
            window_.calls.clear();
            DeleteFolders(ops_, {a_}, recycle);
            EXPECT_EQ(window_.calls.size(), 1u);
        }
    }
    EXPECT_TRUE(operations_.asked.empty());
    EXPECT_EQ(report.rowCount(), 4u);
    EXPECT_EQ(numbersOf(src_), "/src 110 3/3");
}

TEST_F(DeletingTest, ARowThatSumsUpFilesIsPassedOver) {
    const Row sum = report.addRow(a_, "Dateien");
    for (const bool recycle : {false, true}) DeleteFolders(ops_, {sum}, recycle);
    renameInReport(ops_, sum, "new");
    EXPECT_TRUE(operations_.asked.empty() && window_.calls.empty() && protocol().empty());
    EXPECT_EQ(report.text(sum), "Dateien");
}

TEST_F(DeletingTest, AFileOfTheNewNameGoesToTheTrashAndIsReplacedOnlyWhereThereIsNone) {
    operations_.replaces = true;
    const std::tuple<Result<Moved>, bool, std::string> cases[] = {
        {Moved{}, true, "Die frühere Datei '/src/z' liegt jetzt im Papierkorb."},
        {recycleError(RecycleError::kNoTrash), true,
         "Die frühere Datei '/src/z' wurde ersetzt; hier gibt es keinen Papierkorb."},
        {recycleError(RecycleError::kNameTooLong), false, ""}};
    for (const auto& [recycled, moved, told] : cases) {
        operations_.recycled = recycled;
        operations_.asked.clear();
        window_.calls.clear();
        host_.panel.clear();
        report.setText(b_, "b");
        renameInReport(ops_, b_, "z");
        EXPECT_EQ(operations_.asked.back(), moved ? "to /src|z" : "recycle /src|z");
        EXPECT_EQ(report.text(b_), moved ? "z" : "b");
        EXPECT_EQ(host_.panel, told);
        EXPECT_EQ(window_.calls.empty(), moved);
    }
    operations_.replaces = systemError(ETIMEDOUT);
    operations_.asked.clear();
    renameInReport(ops_, b_, "y");
    EXPECT_TRUE(operations_.asked.empty()) << "nobody knows what it would replace";
}

TEST_F(DeletingTest, ARenamedFolderIsWhereTheListLooksNext) {
    renameInReport(ops_, a_, "a");
    EXPECT_TRUE(operations_.asked.empty());
    operations_.moved = systemError(EACCES);
    renameInReport(ops_, a_, "z");
    EXPECT_EQ(window_.calls, (Lines{"Permission denied"}));
    EXPECT_EQ(report.text(a_), "a");
    operations_.moved = {};
    state.fileList.folder = "/src/a/aa/";
    renameInReport(ops_, a_, "z");
    EXPECT_EQ(operations_.asked.back(), "to /src|z");
    EXPECT_EQ(report.text(a_), "z");
    EXPECT_EQ(state.fileList.folder, "/src/z/aa/");
    renameInReport(ops_, b_, "y");
    EXPECT_EQ(state.fileList.folder, "/src/z/aa/");
    renameInReport(ops_, src_, "other");
    EXPECT_EQ(report.text(src_), "/src");
}

}  // namespace
}  // namespace hl::test
