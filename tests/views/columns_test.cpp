// The columns of all views: which there are, which are shown, how they sort, and the unit of sizes.
#include <gtest/gtest.h>

#include "scan/records.h"
#include "support/test_texts.h"
#include "views/list_columns.h"
#include "views/report_columns.h"
#include "views/size_display.h"

namespace hl {
namespace {

/// "title|key|mask" for each column, with a ">" behind it where its cells stand on the right and a "?" where
/// the grid has no cell for the key.
std::string columnsOf(const Grid& grid) {
    std::string text;
    for (const GridColumn& column : grid.columns()) {
        text += column.title + "|" + column.key + "|" + column.mask;
        if (column.alignment == Alignment::kRight) text += ">";
        text += !column.key.empty() && grid.cell(column.key) == kNoCell ? "?\n" : "\n";
    }
    return text;
}

struct Columns : testing::Test {
    test::TestTexts texts;
    Options options;
    Grid report{kFolderCells}, files{kFileCells}, junctions{kJunctionCells};
};

TEST_F(Columns, OfTheReportAndTheJunctions) {
    report.addRow(kNoRow, "old");
    Init_Tree(report, options, texts.texts);
    EXPECT_EQ(report.rowCount(), 0U);
    EXPECT_EQ(columnsOf(report),
              "Name||\nGröße (Bytes)|size|*###,###,##0*;;;>\nProzent|percent|*##0*%>\n"
              "Dateien|files|*###,##0*;;;>\nOrdner|folders|*###,##0*;;;>\n");
    Init_JunctionList(junctions, texts.texts);
    EXPECT_EQ(columnsOf(junctions),
              "Junction||\nZielordner|target|\nTyp|type|Abzweigungspunkt;Verknüpfung;Symbolischer Link;\n");
    EXPECT_TRUE(junctions.levelSort(0).key.empty() && junctions.levelSort(0).descending);
}

TEST_F(Columns, OfTheLargestFilesAndHardlinksFollowTheDateFormat) {
    const auto kind = [](const std::string& date) {
        return "Endung|ext|\nTyp|type|\nAttribute|attr|\nÄnderungsdatum|date|*" + date +
               " *;;;\nErstellungsdatum|dateE|*" + date + " *;;;\nZugriffsdatum|dateZ|*" + date + " *;;;\n";
    };
    const std::string size = "Größe (Bytes)|size|*###,###,##0*;;;>\n";
    const std::string top = "Dateiname||\n" + size + "Pfad|path|\n";
    const std::string hardlinks = "Dateiname||\nID|id|\nHardlinks|links|\nPfad|path|\n" + size;
    options.DateFormat = "yyyy-MM-dd";
    Init_TopList_DateFormat(files, options);
    EXPECT_TRUE(files.columns().empty()) << "a format before the columns exist changes nothing";
    Init_TopList(files, options, texts.texts);
    EXPECT_EQ(columnsOf(files), top + kind("yyyy-MM-dd"));
    options.DateFormat = "dd.MM.yy";
    Init_TopList_DateFormat(files, options);
    EXPECT_EQ(columnsOf(files), top + kind("dd.MM.yy"));
    Init_HardlinksList(files, options, texts.texts);
    EXPECT_EQ(columnsOf(files), hardlinks + kind("dd.MM.yy"));
    options.DateFormat = "MM/yyyy";
    Init_HardlinksList_DateFormat(files, options);
    EXPECT_EQ(columnsOf(files), hardlinks + kind("MM/yyyy"));
}

TEST_F(Columns, AreShownByTheirOptions) {
    const auto visible = [](const Grid& grid) {
        std::string text;
        for (const GridColumn& column : grid.columns()) text += column.visible ? 'x' : '.';
        return text;
    };
    options.ColFileVisible = options.TopColumn[0] = options.TopColumn[6] = options.HardlinkColumn[9] = 1;
    Init_Tree(report, options, texts.texts);
    EXPECT_EQ(visible(report), "xx.x.");
    Init_TopList(files, options, texts.texts);
    EXPECT_EQ(visible(files), "xx.....x.");
    Init_HardlinksList(files, options, texts.texts);
    EXPECT_EQ(visible(files), "x.........x");
    options.ColPercentVisible = options.ColFolderVisible = 1;
    options.ColFileVisible = 0;
    Init_Tree(report, options, texts.texts);
    EXPECT_EQ(visible(report), "xxx.x");
}

TEST_F(Columns, AreSortedByBytesTheLargestFirstWhateverTheUnit) {
    options.FileSizeFormat = options.FileSizeFormatTop = options.FileSizeFormatHardlinks = 3;
    Init_Tree(report, options, texts.texts);
    Report_Set_SizeFormat(report, options, texts.texts);
    for (const std::uint32_t level : {0U, 100000U}) {
        const auto& sort = report.levelSort(level);
        EXPECT_TRUE(sort.key == "size" && sort.numbers && sort.descending) << level;
    }
    for (const auto init : {Init_HardlinksList, Init_TopList}) {
        init(files, options, texts.texts);
        for (const double size : {5.0, 1e12, 7.0})
            files.setNumber(files.addRow(kNoRow, "f"), kFileSize, size);
        files.sortLevels(0);
        EXPECT_EQ(files.number(files.rowAt(0), kFileSize), 1e12);
        EXPECT_EQ(files.number(files.rowAt(2), kFileSize), 5.0);
    }
}

TEST_F(Columns, OfSizesTakeKeyMaskAndTitleFromModeAndDecimals) {
    const struct {
        Grid& grid;
        std::size_t sizeColumn;
        std::uint8_t Options::*mode;
        Flag Options::*decimals;
        void (*init)(Grid&, const Options&, const Texts&);
        void (*set)(Grid&, const Options&, const Texts&);
    } views[] = {
        {report, kReportSize, &Options::FileSizeFormat, &Options::SizeFormatNachkommastellenFolders,
         Init_Tree, Report_Set_SizeFormat},
        {files, kTopSize, &Options::FileSizeFormatTop, &Options::SizeFormatNachkommastellenTop, Init_TopList,
         List_TOP_Set_SizeFormat},
        {files, kHardlinksSize, &Options::FileSizeFormatHardlinks,
         &Options::SizeFormatNachkommastellenHardlinks, Init_HardlinksList, List_Hardlinks_Set_SizeFormat},
    };
    const std::string whole = "|*###,###,##0*;;;", hundredths = "|*###,###,##0.00*;;;";
    const struct {
        std::uint8_t mode;
        Flag decimals;
        std::string column;
    } cases[] = {
        {0, 0, "Größe (Bytes)|size" + whole},    {0, 1, "Größe (Bytes)|size" + whole},
        {1, 0, "Größe (KB)|sizeK" + whole},      {3, 2, "Größe (GB)|sizeG" + hundredths},
        {2, 1, "Größe (MB)|sizeM" + hundredths}, {200, 1, "Größe ()|sizeM" + hundredths},
    };
    for (const auto& view : views) {
        view.init(view.grid, options, texts.texts);
        for (const auto& c : cases) {
            options.*view.mode = c.mode;
            options.*view.decimals = c.decimals;
            view.set(view.grid, options, texts.texts);
            const GridColumn& column = view.grid.columns()[view.sizeColumn];
            EXPECT_EQ(column.title + "|" + column.key + "|" + column.mask, c.column) << &view - views;
            EXPECT_TRUE(view.grid.redraw() && view.grid.enabled()) << &view - views;
        }
    }
}

TEST(SizeDisplay, TextsOfSizesFollowTheModeOfTheirView) {
    Options options;
    options.FileSizeFormat = 1;
    options.FileSizeFormatFiles = 2;
    const NumberFormat german = numberFormatOf("de_DE");
    const SizeValue size = SizeValue::fromBytes(3145728);
    EXPECT_EQ(Report_FormatSize(options, size, true, false, true, german), "3.072,00 KB");
    EXPECT_EQ(List_Files_FormatSize(options, size, true, true, true, german), "      3,00 MB");
}

}  // namespace
}  // namespace hl
