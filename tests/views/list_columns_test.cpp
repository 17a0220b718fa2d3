#include "views/list_columns.h"

#include <gtest/gtest.h>

#include "scan/records.h"
#include "support/test_texts.h"

namespace hl {
namespace {

constexpr const char* kBytes = "*###,###,##0*;;;";
constexpr const char* kDate = "*yyyy-MM-dd *;;;";

struct Expected {
    const char *title, *key;
    const char* mask = "";
};

class ListColumns : public testing::Test {
  protected:
    void expectColumns(const Grid& grid, const std::vector<Expected>& expected) {
        ASSERT_EQ(grid.columns().size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const GridColumn& column = grid.columns()[i];
            EXPECT_EQ(column.title, expected[i].title);
            EXPECT_EQ(column.key, expected[i].key);
            EXPECT_EQ(column.mask, expected[i].mask) << column.key;
            EXPECT_EQ(column.alignment, column.key == "size" ? Alignment::kRight : Alignment::kLeft)
                << column.key;
            EXPECT_EQ(grid.cell(column.key) == kNoCell, column.key.empty()) << column.key;
        }
    }

    test::TestTexts texts;
    Options options = [] {
        Options start;
        start.DateFormat = "yyyy-MM-dd";
        return start;
    }();
    Grid files{kFileCells};
};

TEST_F(ListColumns, OfTheLargestFiles) {
    Init_TopList(files, options, texts.texts);
    expectColumns(files, {{"Dateiname", ""},
                          {"Größe (Bytes)", "size", kBytes},
                          {"Pfad", "path"},
                          {"Endung", "ext"},
                          {"Typ", "type"},
                          {"Attribute", "attr"},
                          {"Änderungsdatum", "date", kDate},
                          {"Erstellungsdatum", "dateE", kDate},
                          {"Zugriffsdatum", "dateZ", kDate}});
}

TEST_F(ListColumns, OfTheHardlinks) {
    Init_HardlinksList(files, options, texts.texts);
    expectColumns(files, {{"Dateiname", ""},
                          {"ID", "id"},
                          {"Hardlinks", "links"},
                          {"Pfad", "path"},
                          {"Größe (Bytes)", "size", kBytes},
                          {"Endung", "ext"},
                          {"Typ", "type"},
                          {"Attribute", "attr"},
                          {"Änderungsdatum", "date", kDate},
                          {"Erstellungsdatum", "dateE", kDate},
                          {"Zugriffsdatum", "dateZ", kDate}});
}

TEST_F(ListColumns, OfTheJunctions) {
    Grid junctions{kJunctionCells};
    Init_JunctionList(junctions, texts.texts);
    expectColumns(junctions, {{"Junction", ""},
                              {"Zielordner", "target"},
                              {"Typ", "type", "Abzweigungspunkt;Verknüpfung;Symbolischer Link;"}});
    EXPECT_EQ(junctions.levelSort(0).key, "");
    EXPECT_TRUE(junctions.levelSort(0).descending);
}

TEST_F(ListColumns, FlagsShowTheColumnsBehindTheName) {
    for (std::size_t shown = 0; shown < 10; ++shown) {
        Options one;
        one.HardlinkColumn[shown] = 1;
        if (shown < one.TopColumn.size()) one.TopColumn[shown] = 1;
        Init_HardlinksList(files, one, texts.texts);
        for (std::size_t i = 0; i < 11; ++i)
            EXPECT_EQ(files.columns()[i].visible, i == 0 || i == shown + 1) << i << " " << shown;
        Init_TopList(files, one, texts.texts);
        for (std::size_t i = 0; i < 9; ++i)
            EXPECT_EQ(files.columns()[i].visible, i == 0 || i == shown + 1) << i << " " << shown;
    }
}

TEST_F(ListColumns, FilesAreSortedByTheirSizeTheLargestFirst) {
    Init_TopList(files, options, texts.texts);
    for (const double size : {5.0, 1e12, 7.0}) files.setNumber(files.addRow(kNoRow, "f"), kFileSize, size);
    files.sortLevels(0);
    EXPECT_EQ(files.number(files.rowAt(0), kFileSize), 1e12);
    EXPECT_EQ(files.number(files.rowAt(2), kFileSize), 5.0);
    EXPECT_TRUE(files.redraw());
}

TEST_F(ListColumns, ANewDateFormatReachesTheDatesAlone) {
    Init_TopList(files, options, texts.texts);
    options.DateFormat = "dd.MM.yy";
    Init_TopList_DateFormat(files, options);
    for (const GridColumn& column : files.columns())
        EXPECT_EQ(column.mask == "*dd.MM.yy *;;;", column.key.starts_with("date")) << column.key;
    Init_HardlinksList(files, options, texts.texts);
    options.DateFormat = "MM/yyyy";
    Init_HardlinksList_DateFormat(files, options);
    for (const GridColumn& column : files.columns())
        EXPECT_EQ(column.mask == "*MM/yyyy *;;;", column.key.starts_with("date")) << column.key;
}

TEST_F(ListColumns, ADateFormatBeforeTheColumnsExistChangesNothing) {
    Init_TopList_DateFormat(files, options);
    Init_HardlinksList_DateFormat(files, options);
    EXPECT_TRUE(files.columns().empty());
}

}  // namespace
}  // namespace hl
