#include "output/print_report.h"

#include "support/fake_window.h"
#include "support/test_scan.h"
#include "views/report_columns.h"

namespace hl::test {
namespace {

/// Returns the visible rows as "a(b(c,d),e)": siblings are separated by commas, and brackets hold what is
/// below a row.
std::string shownRows(const Grid& grid, Row first) {
    std::string text;
    for (Row row = first; row != kNoRow; row = grid.nextSibling(row)) {
        if (row != first) text += ',';
        text += grid.text(row);
        if (grid.hasChildren(row) && grid.expanded(row))
            text += '(' + shownRows(grid, grid.firstChild(row)) + ')';
    }
    return text;
}

struct PrintReport : testing::Test, TestScan {
    FakeWindow window;
    std::string printed;
    int zoom = 0;
    bool fromReport = false;

    // There are two sources; the first folder of the first one is unfolded.
    PrintReport() {
        pump.input = true;
        Init_Tree(report, options, texts);
        const Row first = add(kNoRow, "s"), a = add(first, "a"), b = add(a, "b");
        add(b, "c");
        add(first, "d");
        add(add(kNoRow, "t"), "e");
        report.setExpanded(first, true);
        report.setExpanded(b, true);
        window.onPrint = [this](const PrintJob& job) {
            printed = shownRows(*job.grid, job.grid->firstRoot());
            zoom = job.zoom;
            fromReport = job.grid == &report;
        };
    }
    Row add(Row parent, const char* name) {
        const Row row = report.addRow(parent, name);
        report.setNumber(row, kSize, 1536);
        report.setPicture(row, kPictureFolder);
        return row;
    }
    std::string print(int scope, int levels, const std::string& number = "") {
        PrintForm frmPrint(scan, window);
        selectOption(frmPrint.optWasDrucken, static_cast<std::size_t>(scope));
        selectOption(frmPrint.optLevels, static_cast<std::size_t>(levels));
        frmPrint.txtLevels.text = number;
        printed = "nothing";
        frmPrint.Report_print();
        EXPECT_EQ(frmPrint.loaded, printed == "nothing");
        EXPECT_FALSE(frmPrint.hourglass);
        return printed;
    }
};

TEST_F(PrintReport, PrintsWhatScopeAndLevelsSay) {
    EXPECT_FALSE(PrintForm(scan, window).optWasDrucken[kSelectedFolder].enabled) << "nothing is selected";
    report.setSelected(report.firstChild(report.firstRoot()), true);
    EXPECT_TRUE(PrintForm(scan, window).optWasDrucken[kSelectedFolder].enabled);
    const std::tuple<int, int, const char*, const char*, bool> cases[] = {
        {kAllFolders, kUnfoldedLevels, "", "s(a,d),t", true},
        {kSelectedFolder, kUnfoldedLevels, "", "a", false},
        {kAllFolders, kAllFolderLevels, "", "s(a(b(c)),d),t(e)", false},
        {kSelectedFolder, kAllFolderLevels, "", "a(b(c))", false},
        {kAllFolders, kSomeFolderLevels, "0", "s,t", false},
        {kAllFolders, kSomeFolderLevels, "1", "s(a,d),t(e)", false},
        {kAllFolders, kSomeFolderLevels, "2", "s(a(b),d),t(e)", false},
        {kSelectedFolder, kSomeFolderLevels, "1", "a(b)", false},
    };
    for (const auto& [scope, levels, number, rows, own] : cases) {
        EXPECT_EQ(print(scope, levels, number), rows) << scope << levels << number;
        EXPECT_EQ(fromReport, own) << scope << levels << number;
    }
    EXPECT_EQ(shownRows(report, report.firstRoot()), "s(a,d),t") << "the report stays as it was";
    EXPECT_TRUE(sink.shown.empty());
}

TEST_F(PrintReport, TheCopyShowsWhatTheReportShows) {
    const Row source = report.firstRoot();
    report.setBarPicture(source, 42);
    report.setBackColor(source, 0xE0E0E0);
    report.setRowNote(source, "note");
    options.FileSizeFormat = 1;
    options.SizeFormatNachkommastellenFolders = 1;
    window.onPrint = [this](const PrintJob& job) {
        const Grid& copy = *job.grid;
        printed = job.cellText(0, 0) + "|" + job.cellText(kReportSize, 0) + "|" +
                  copy.columns()[kReportSize].title + "|" + std::string(copy.rowNote(0));
        EXPECT_EQ(std::tuple(copy.barPicture(0), copy.picture(0), copy.backColor(0)),
                  std::tuple(42, kPictureFolder, 0xE0E0E0U));
    };
    EXPECT_EQ(print(kAllFolders, kAllFolderLevels), "s|1,50|Größe (KB)|note");
}

TEST_F(PrintReport, ZoomIsWhatIsTypedAndAHundredWithout) {
    const std::pair<const char*, int> cases[] = {
        {"", 100}, {"80", 80}, {"x", 100}, {"99999999999", 2147483647}};
    for (const auto& [text, wanted] : cases) {
        PrintForm frmPrint(scan, window);
        EXPECT_EQ(frmPrint.txtZoom.text, "100");
        frmPrint.txtZoom.text = text;
        frmPrint.Report_print();
        EXPECT_EQ(zoom, wanted) << text;
    }
}

TEST_F(PrintReport, LevelsThatAreNoNumberAreReportedAndNothingIsPrinted) {
    for (const char* text : {"", "99999999999"})
        EXPECT_EQ(print(kAllFolders, kSomeFolderLevels, text), "nothing");
    EXPECT_EQ(reports("Report_print"), 2U);
}

TEST_F(PrintReport, TheCaptionCountsWhatIsUnfoldedUntilItIsDoneOrCancelled) {
    for (int i = 0; i < 500; ++i) add(report.firstRoot(), "more");
    for (const bool cancels : {false, true}) {
        PrintForm frmPrint(scan, window);
        selectOption(frmPrint.optLevels, kAllFolderLevels);
        std::vector<std::string> captions;
        pump.onPump = [&] {
            if (frmPrint.caption == "Drucken") return;
            captions.push_back(frmPrint.caption);
            if (cancels) frmPrint.CancelButton_Click();
        };
        printed = "nothing";
        frmPrint.Report_print();
        ASSERT_FALSE(captions.empty());
        EXPECT_EQ(captions.front(), "Drucken - Ordner werden aufgeklappt...(64)");
        EXPECT_EQ(captions.size(), cancels ? 1U : 7U);
        EXPECT_EQ(printed == "nothing", cancels);
        EXPECT_EQ(frmPrint.caption, "Drucken");
    }
}

TEST_F(PrintReport, AFailureNamesTheFileAndTheReason) {
    const PrintJob job = printedText(texts, files, "", "");
    EXPECT_EQ(job.failure("/tmp/a\n.pdf", Error{13, "Permission denied"}, "/tmp/rest"),
              "Die Datei wurde nicht geschrieben: /tmp/a\u240A.pdf: Permission denied"
              " Die unfertige Datei /tmp/rest ließ sich nicht löschen.");
    EXPECT_EQ(job.failure("Laser", std::nullopt, ""), "Das Drucken mit 'Laser' ist fehlgeschlagen.");
}

}  // namespace
}  // namespace hl::test
