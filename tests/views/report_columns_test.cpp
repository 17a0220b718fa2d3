#include "views/report_columns.h"

#include <gtest/gtest.h>

#include "scan/records.h"
#include "support/test_texts.h"
#include "views/size_display.h"

namespace hl {
namespace {

class ReportColumns : public testing::Test {
  protected:
    const GridColumn& column(ReportColumn index) const { return grid.columns().at(index); }

    test::TestTexts texts;
    Options options;
    Grid grid{kFolderCells};
};

TEST_F(ReportColumns, AreFiveWithNumbersOnTheRight) {
    Init_Tree(grid, options, texts.texts);
    const struct {
        const char *title, *key, *mask;
        Alignment alignment;
    } expected[] = {
        {"Name", "", "", Alignment::kLeft},
        {"Größe (Bytes)", "size", "*###,###,##0*;;;", Alignment::kRight},
        {"Prozent", "percent", "*##0*%", Alignment::kRight},
        {"Dateien", "files", "*###,##0*;;;", Alignment::kRight},
        {"Ordner", "folders", "*###,##0*;;;", Alignment::kRight},
    };
    ASSERT_EQ(grid.columns().size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const GridColumn& column = grid.columns()[i];
        EXPECT_EQ(column.title, expected[i].title);
        EXPECT_EQ(column.key, expected[i].key);
        EXPECT_EQ(column.mask, expected[i].mask);
        EXPECT_EQ(column.alignment, expected[i].alignment);
        EXPECT_EQ(grid.cell(column.key) == kNoCell, column.key.empty()) << column.key;
    }
}

TEST_F(ReportColumns, AreShownByTheirOptions) {
    const struct {
        Flag Options::*option;
        ReportColumn column;
    } cases[] = {{&Options::ColPercentVisible, kReportPercent},
                 {&Options::ColFileVisible, kReportFiles},
                 {&Options::ColFolderVisible, kReportFolders}};
    for (const auto& shown : cases) {
        options = {};
        options.*shown.option = 1;
        Init_Tree(grid, options, texts.texts);
        for (const auto& c : cases) EXPECT_EQ(column(c.column).visible, c.column == shown.column);
        EXPECT_TRUE(column(kReportName).visible && column(kReportSize).visible);
    }
}

TEST_F(ReportColumns, EveryLevelIsSortedByBytesWhateverTheUnit) {
    options.FileSizeFormat = 3;
    Init_Tree(grid, options, texts.texts);
    Report_Set_SizeFormat(grid, options, texts.texts);
    for (const std::uint32_t level : {0U, 1U, 255U, 100000U}) {
        EXPECT_EQ(grid.levelSort(level).key, "size");
        EXPECT_TRUE(grid.levelSort(level).numbers && grid.levelSort(level).descending);
    }
}

TEST_F(ReportColumns, ANewStartEmptiesTheGridAndDrawsAgain) {
    grid.addRow(kNoRow, "old");
    Init_Tree(grid, options, texts.texts);
    EXPECT_EQ(grid.rowCount(), 0U);
    EXPECT_TRUE(grid.redraw());
}

}  // namespace
}  // namespace hl
