// The keyed cells of a grid's rows, in one column for each key, of the smallest type that fits. For one
// thread.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "grid/column.h"
#include "grid/row_tree.h"
#include "grid/text_store.h"

namespace hl {

enum class CellType : std::uint8_t {
    kSize,     ///< Whole bytes, to 2^63; 8 bytes a row.
    kCount,    ///< A signed number of 32 bits; 4 bytes.
    kPercent,  ///< 0 to 655.35 in hundredths; 2 bytes.
    kFlag,     ///< 0 to 255; 1 byte.
    kDate,     ///< Seconds since 1970; 8 bytes. 0 is "not set".
    kText,     ///< 4 bytes and the text.
    kReal,     ///< Any number, or none (NaN); 8 bytes.
};

struct CellSpec {
    std::string_view key;
    CellType type;
    /// The cell takes memory only from the first number that is set in it until it is dropped. Not for texts.
    bool onDemand = false;
};

constexpr std::size_t cellBytes(CellType type) {
    switch (type) {
        case CellType::kSize:
        case CellType::kDate:
        case CellType::kReal:
            return 8;
        case CellType::kCount:
        case CellType::kText:
            return 4;
        case CellType::kPercent:
            return 2;
        case CellType::kFlag:
            return 1;
    }
    return 0;
}

constexpr std::size_t cellBytes(std::span<const CellSpec> cells) {
    std::size_t bytes = 0;
    for (const CellSpec& cell : cells)
        if (!cell.onDemand) bytes += cellBytes(cell.type);
    return bytes;
}

/// The id of a cell's key, looked up once, so that reading a cell needs no search.
using CellId = std::uint16_t;
inline constexpr CellId kNoCell = 0xFFFF;

class CellTable {
  public:
    /// `cells` must outlive the table and has at most 64 elements.
    explicit CellTable(std::span<const CellSpec> cells);

    /// Returns the id of a key, or kNoCell if this grid does not have it.
    CellId find(std::string_view key) const;
    /// Returns the number of stored cells; their ids are 0 to count() - 1.
    std::size_t count() const { return stores_.size(); }
    bool isText(CellId cell) const;
    bool isDate(CellId cell) const;
    bool isSize(CellId cell) const;

    /// Makes room for the row; its cells are 0 and empty.
    void addRow(Row row);
    /// Returns the cell as a number; 0 for a text. REQUIRES: cell is not kNoCell; the row exists.
    double number(Row row, CellId cell) const;
    /// Raises kFaultOverflow for a value outside the type's range. REQUIRES: the cell is no text.
    void setNumber(Row row, CellId cell, double value);
    TextRef text(Row row, CellId cell) const;
    void setText(Row row, CellId cell, TextRef text);
    void clear();
    /// Gives back the memory of a cell that is kept on demand; it is 0 in all rows then.
    void drop(CellId cell);

  private:
    struct Store {
        CellType type;
        bool onDemand;
        std::uint16_t slot;  ///< The index of its column among those of its type's width.
    };
    std::span<const CellSpec> specs_;
    std::vector<Store> stores_;
    std::vector<Column<std::int64_t>> wide_;
    std::vector<Column<double>> onDemand_;  ///< A new row has no room in them until a number is set.
    std::vector<Column<std::uint32_t>> medium_;
    std::vector<Column<std::uint16_t>> narrow_;
    std::vector<Column<std::uint8_t>> tiny_;
};

}  // namespace hl
