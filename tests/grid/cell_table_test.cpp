#include "grid/cell_table.h"

#include <gtest/gtest.h>

#include "base/fault.h"

namespace hl {
namespace {

constexpr CellSpec kSpecs[] = {{"flag", CellType::kFlag},       {"size", CellType::kSize},
                               {"percent", CellType::kPercent}, {"count", CellType::kCount},
                               {"date", CellType::kDate},       {"name", CellType::kText},
                               {"second", CellType::kCount}};

struct CellTableTest : testing::Test {
    CellTable table{kSpecs};
    void SetUp() override { table.addRow(0); }
    double stored(std::string_view key, double value) {
        table.setNumber(0, table.find(key), value);
        return table.number(0, table.find(key));
    }
};

TEST_F(CellTableTest, KeepsEveryValueOfATypesRangeAndRaisesOverflowBeyond) {
    struct Case {
        const char* key;
        double low, high, below, above;
    };
    for (const Case& c : {Case{"flag", 0, 255, -1, 256}, Case{"percent", 0, 655.35, -0.01, 655.36},
                          Case{"count", -2147483648.0, 2147483647, -2147483649.0, 2147483648.0},
                          Case{"size", -0x1p62, 0x1p62, -0x1p63, 0x1p63},
                          Case{"date", -62135596800.0, 253402300799.0, -0x1p63, 0x1p63}}) {
        EXPECT_EQ(stored(c.key, c.low), c.low) << c.key;
        EXPECT_EQ(stored(c.key, c.high), c.high) << c.key;
        EXPECT_THROW(stored(c.key, c.below), Fault) << c.key;
        EXPECT_THROW(stored(c.key, c.above), Fault) << c.key;
        EXPECT_EQ(table.number(0, table.find(c.key)), c.high) << c.key;
    }
    for (const double percent : {0.01, 0.29, 33.33, 99.99}) EXPECT_EQ(stored("percent", percent), percent);
}

TEST_F(CellTableTest, ComputesTheLargerUnitsWithTiesToEven) {
    struct Case {
        double bytes, kilobytes, megabytes, gigabytes;
    };
    for (const Case& c : {Case{0, 0, 0, 0}, Case{128, 0.12, 0, 0}, Case{384, 0.38, 0, 0}, Case{1024, 1, 0, 0},
                          Case{131072, 128, 0.12, 0}, Case{1610612736, 1572864, 1536, 1.5}}) {
        table.setNumber(0, table.find("size"), c.bytes);
        EXPECT_EQ(table.number(0, table.find("sizeK")), c.kilobytes) << c.bytes;
        EXPECT_EQ(table.number(0, table.find("sizeM")), c.megabytes) << c.bytes;
        EXPECT_EQ(table.number(0, table.find("sizeG")), c.gigabytes) << c.bytes;
    }
}

TEST_F(CellTableTest, FindsItsKeysAndNoOthers) {
    for (CellId i = 0; i < table.count(); ++i) EXPECT_EQ(table.find(kSpecs[i].key), i);
    for (const char* key : {"", "Size", "sizeT", "siz"}) EXPECT_EQ(table.find(key), kNoCell) << key;
    static constexpr CellSpec kNoSize[] = {{"target", CellType::kText}};
    EXPECT_EQ(CellTable(kNoSize).find("sizeK"), kNoCell);
}

TEST_F(CellTableTest, RaisesTypeMismatchBetweenTextsAndNumbers) {
    EXPECT_THROW(table.setNumber(0, table.find("name"), 1), Fault);
    EXPECT_THROW(table.setText(0, table.find("count"), 1), Fault);
    EXPECT_EQ(table.number(0, table.find("name")), 0);
    EXPECT_EQ(table.text(0, table.find("count")), 0U);
}

TEST_F(CellTableTest, KeepsCellsAndRowsApartAndEmptiesARowThatIsUsedAgain) {
    for (Row row = 1; row < 2050; ++row) {
        table.addRow(row);
        table.setNumber(row, table.find("count"), row);
        table.setNumber(row, table.find("second"), 2.0 * row);
        table.setText(row, table.find("name"), row + 7);
    }
    for (const Row row : {1U, 1023U, 1024U, 2047U, 2048U}) {
        EXPECT_EQ(table.number(row, table.find("count")), row);
        EXPECT_EQ(table.number(row, table.find("second")), 2.0 * row);
        EXPECT_EQ(table.text(row, table.find("name")), row + 7);
    }
    table.addRow(1024);
    for (CellId i = 0; i < table.count(); ++i) EXPECT_EQ(table.number(1024, i), 0) << i;
    EXPECT_EQ(table.text(1024, table.find("name")), 0U);
    EXPECT_EQ(table.number(1025, table.find("count")), 1025);
}

}  // namespace
}  // namespace hl
