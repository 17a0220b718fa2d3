// views/hardlinks_view.h: names of one file stand together.
#include "views/hardlinks_view.h"

#include "views/list_fixture.h"

namespace hl {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF, kGrey = 0xF0F0F0;

struct Hardlinks : test::ListFixture {
    void fill(const Lines& ids) {
        hardlinks.clear();
        for (const std::string& id : ids) hardlinks.setCellText(hardlinks.addRow(kNoRow, id), kFileId, id);
    }
    std::vector<std::uint32_t> shades() const {
        std::vector<std::uint32_t> colors;
        for (std::size_t i = 0; i < hardlinks.rowCount(); ++i)
            colors.push_back(hardlinks.backColor(hardlinks.rowAt(i)).value_or(0));
        return colors;
    }
};

TEST_F(Hardlinks, BringsTheNamesOfEachFileTogetherAndShadesThemInTurnWhateverIsSortedLater) {
    // Ids of two volumes of more than 4 GiB inodes begin alike.
    fill({"7-1", "7-2", "-7-0", "7-1", "7-2", "-7-0", "7-1"});
    hardlinksView.execute(300);
    EXPECT_EQ(textsOf(hardlinks), (Lines{"-7-0", "-7-0", "7-1", "7-1", "7-1", "7-2", "7-2"}));
    EXPECT_EQ(shades(), (std::vector{kWhite, kWhite, kGrey, kGrey, kGrey, kWhite, kWhite}));
    EXPECT_TRUE(hardlinks.redraw());

    fill({"1-0", "2-0"});
    hardlinksView.execute(300);
    hardlinksView.GridColumnTitleClick(kHardlinksId);
    EXPECT_EQ(textsOf(hardlinks), (Lines{"2-0", "1-0"})) << "the next sort is downwards";
    EXPECT_EQ(shades(), (std::vector{kGrey, kWhite}));
    hardlinks.removeRow(hardlinks.rowAt(0));
    EXPECT_EQ(shades(), std::vector{kWhite});
}

}  // namespace
}  // namespace hl
