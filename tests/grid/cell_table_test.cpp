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
    using Case = std::tuple<const char*, double, double, double, double>;
    for (const auto& [key, low, high, below, above] :
         {Case{"flag", 0, 255, -1, 256}, Case{"percent", 0, 655.35, -0.01, 655.36},
          Case{"count", -2147483648.0, 2147483647, -2147483649.0, 2147483648.0},
          Case{"size", -0x1p62, 0x1p62, -0x1p63, 0x1p63},
          Case{"date", -62135596800.0, 253402300799.0, -0x1p63, 0x1p63}}) {
        EXPECT_EQ(stored(key, low), low) << key;
        EXPECT_EQ(stored(key, high), high) << key;
        EXPECT_THROW(stored(key, below), Fault) << key;
        EXPECT_THROW(stored(key, above), Fault) << key;
        EXPECT_EQ(table.number(0, table.find(key)), high) << key;
    }
    for (const double percent : {0.29, 33.33}) EXPECT_EQ(stored("percent", percent), percent);
    EXPECT_THROW(stored("name", 1), Fault) << "texts and numbers are different types";
    EXPECT_THROW(table.setText(0, table.find("count"), 1), Fault);
    EXPECT_EQ(table.text(0, table.find("count")), 0U);
}

TEST_F(CellTableTest, ComputesTheLargerUnitsWithTiesToEven) {
    const std::tuple<double, double, double, double> cases[] = {
        {128, 0.12, 0, 0}, {384, 0.38, 0, 0}, {131072, 128, 0.12, 0}, {1610612736, 1572864, 1536, 1.5}};
    for (const auto& [bytes, kilobytes, megabytes, gigabytes] : cases) {
        stored("size", bytes);
        EXPECT_EQ(table.number(0, table.find("sizeK")), kilobytes) << bytes;
        EXPECT_EQ(table.number(0, table.find("sizeM")), megabytes) << bytes;
        EXPECT_EQ(table.number(0, table.find("sizeG")), gigabytes) << bytes;
    }
    for (const char* key : {"", "Size", "sizeT", "siz"}) EXPECT_EQ(table.find(key), kNoCell) << key;
}

TEST_F(CellTableTest, KeepsCellsAndRowsApartAndEmptiesARowThatIsUsedAgain) {
    for (Row row = 1; row < 2050; ++row) {
        table.addRow(row);
        table.setNumber(row, table.find("count"), row);
        table.setNumber(row, table.find("second"), 2.0 * row);
        table.setText(row, table.find("name"), row + 7);
    }
    for (const Row row : {1U, 1023U, 1024U, 2048U}) {
        EXPECT_EQ(table.number(row, table.find("count")), row);
        EXPECT_EQ(table.number(row, table.find("second")), 2.0 * row);
    }
    table.addRow(1024);
    for (CellId i = 0; i < table.count(); ++i) EXPECT_EQ(table.number(1024, i), 0) << i;
    EXPECT_EQ(table.text(1024, table.find("name")), 0U);
    EXPECT_EQ(table.number(1025, table.find("count")), 1025);
}

}  // namespace
}  // namespace hl
