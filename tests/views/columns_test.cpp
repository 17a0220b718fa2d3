// The columns of all views: their dates, and the unit of sizes.
#include <gtest/gtest.h>

#include "scan/records.h"
#include "support/test_texts.h"
#include "views/list_columns.h"
#include "views/size_display.h"

namespace hl {
namespace {

struct Columns : testing::Test {
    test::TestTexts texts;
    Options options;
    Grid files{kFileCells};
};

TEST_F(Columns, OfDatesFollowTheFormatAlsoOneThatIsChosenBeforeTheyExist) {
    options.DateFormat = "dd.MM.yy";
    Init_TopList_DateFormat(files, options);
    EXPECT_TRUE(files.columns().empty());
    Init_TopList(files, options, texts.texts);
    options.DateFormat = "MM/yyyy";
    Init_TopList_DateFormat(files, options);
    EXPECT_EQ(files.columns()[kTopDate].mask, "*MM/yyyy *;;;");
}

TEST_F(Columns, OfSizesTakeKeyMaskAndTitleFromModeAndDecimals) {
    const std::string whole = "|*###,###,##0*;;;", hundredths = "|*###,###,##0.00*;;;";
    const std::tuple<std::uint8_t, Flag, std::string> cases[] = {
        {0, 1, "Größe (Bytes)|size" + whole},
        {1, 0, "Größe (KB)|sizeK" + whole},
        {3, 2, "Größe (GB)|sizeG" + hundredths},
        {200, 1, "Größe ()|sizeG" + hundredths},
    };
    Init_TopList(files, options, texts.texts);
    for (const auto& [mode, decimals, shown] : cases) {
        options.FileSizeFormatTop = mode;
        options.SizeFormatNachkommastellenTop = decimals;
        List_TOP_Set_SizeFormat(files, options, texts.texts);
        const GridColumn& column = files.columns()[kTopSize];
        EXPECT_EQ(column.title + "|" + column.key + "|" + column.mask, shown);
        EXPECT_TRUE(files.redraw() && files.enabled());
    }
}

}  // namespace
}  // namespace hl
