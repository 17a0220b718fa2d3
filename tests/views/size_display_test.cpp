#include "views/size_display.h"

#include <gtest/gtest.h>

#include <functional>

#include "scan/records.h"
#include "support/test_texts.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl {
namespace {

/// One of the views that show sizes.
struct View {
    const char* name;
    std::span<const CellSpec> cells;
    std::size_t sizeColumn;
    std::uint8_t Options::*mode;
    Flag Options::*decimals;
    void (*init)(Grid&, const Options&, const Texts&);
    void (*set)(Grid&, const Options&, const Texts&);
};

const View kViews[] = {
    {"report", kFolderCells, kReportSize, &Options::FileSizeFormat,
     &Options::SizeFormatNachkommastellenFolders, Init_Tree, Report_Set_SizeFormat},
    {"top", kFileCells, kTopSize, &Options::FileSizeFormatTop, &Options::SizeFormatNachkommastellenTop,
     Init_TopList, List_TOP_Set_SizeFormat},
    {"hardlinks", kFileCells, kHardlinksSize, &Options::FileSizeFormatHardlinks,
     &Options::SizeFormatNachkommastellenHardlinks, Init_HardlinksList, List_Hardlinks_Set_SizeFormat},
};

constexpr const char* kWhole = "*###,###,##0*;;;";
constexpr const char* kHundredths = "*###,###,##0.00*;;;";

TEST(SizeDisplay, ModeAndDecimalsDecideKeyMaskAndTitleOfEachView) {
    const struct {
        std::uint8_t mode;
        Flag decimals;
        const char *key, *mask, *title;
    } cases[] = {
        {0, 0, "size", kWhole, "Größe (Bytes)"},    {0, 1, "size", kWhole, "Größe (Bytes)"},
        {1, 0, "sizeK", kWhole, "Größe (KB)"},      {1, 1, "sizeK", kHundredths, "Größe (KB)"},
        {2, 1, "sizeM", kHundredths, "Größe (MB)"}, {3, 0, "sizeG", kWhole, "Größe (GB)"},
        {3, 2, "sizeG", kHundredths, "Größe (GB)"},
    };
    test::TestTexts texts;
    for (const View& view : kViews) {
        Grid grid(view.cells);
        Options options;
        view.init(grid, options, texts.texts);
        for (const auto& c : cases) {
            options.*view.mode = c.mode;
            options.*view.decimals = c.decimals;
            view.set(grid, options, texts.texts);
            const GridColumn& column = grid.columns()[view.sizeColumn];
            EXPECT_EQ(column.key, c.key) << view.name;
            EXPECT_EQ(column.mask, c.mask) << view.name << " mode " << int{c.mode};
            EXPECT_EQ(column.title, c.title) << view.name;
            EXPECT_TRUE(grid.redraw() && grid.enabled()) << view.name;
        }
    }
}

TEST(SizeDisplay, AModeThatDoesNotExistKeepsTheCellAndNamesNoUnit) {
    test::TestTexts texts;
    for (const View& view : kViews) {
        Grid grid(view.cells);
        Options options;
        view.init(grid, options, texts.texts);
        options.*view.mode = 2;
        view.set(grid, options, texts.texts);
        for (const int mode : {4, 5, 200}) {
            options.*view.mode = static_cast<std::uint8_t>(mode);
            view.set(grid, options, texts.texts);
            EXPECT_EQ(grid.columns()[view.sizeColumn].key, "sizeM") << view.name;
            EXPECT_EQ(grid.columns()[view.sizeColumn].title, "Größe ()") << view.name;
        }
    }
}

TEST(SizeDisplay, PercentHasDecimalsByTheFlagAloneAlsoForBytes) {
    test::TestTexts texts;
    Options options;
    Grid grid(kFolderCells);
    Init_Tree(grid, options, texts.texts);
    options.SizeFormatNachkommastellenFolders = 1;
    Report_Set_SizeFormat(grid, options, texts.texts);
    EXPECT_EQ(grid.columns()[kReportPercent].mask, "*##0.00*%");
    options.SizeFormatNachkommastellenFolders = 0;
    Report_Set_SizeFormat(grid, options, texts.texts);
    EXPECT_EQ(grid.columns()[kReportPercent].mask, "*##0*%");
}

TEST(SizeDisplay, UnitsSpeakTheUsersLanguage) {
    test::TestTexts english("en_US.UTF-8");
    Options options;
    Grid grid(kFolderCells);
    Init_Tree(grid, options, english.texts);
    options.FileSizeFormat = 2;
    Report_Set_SizeFormat(grid, options, english.texts);
    EXPECT_EQ(grid.columns()[kReportSize].title, "Size (MB)");
}

TEST(SizeDisplay, TextsOfSizesFollowTheModeOfTheirView) {
    Options options;
    options.FileSizeFormat = 1;
    options.FileSizeFormatFiles = 2;
    const NumberFormat german = numberFormatOf("de_DE");
    const SizeValue size = SizeValue::fromBytes(3145728);
    EXPECT_EQ(Report_FormatSize(options, size, true, false, true, german), "3.072,00 KB");
    EXPECT_EQ(List_Files_FormatSize(options, size, true, true, true, german), "      3,00 MB");
    options.FileSizeFormat = 9;
    EXPECT_EQ(Report_FormatSize(options, size, true, true, true, german), "");
}

}  // namespace
}  // namespace hl
