// What a list is made of: a table with one row for each of its columns. The columns of the grid, the buttons
// that show and hide them, and the filling of rows come from it. The tables are constants.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "app/command.h"
#include "app/options.h"
#include "base/row_text.h"
#include "grid/grid.h"

namespace hl {

struct FoundFile;

/// A cell that is being filled.
struct CellPlace {
    Grid& list;
    Row row;
    CellId cell;

    void set(double number) const { list.setNumber(row, cell, number); }
    void set(std::string_view text) const { list.setCellText(row, cell, text); }
};

/// What a column shows. It decides about mask and alignment.
enum class ColumnKind : std::uint8_t {
    kPlain,         ///< A text, or a number as it is.
    kSize,          ///< Bytes in the unit of the list; the title names the unit in the place of "%1".
    kSizeWithUnit,  ///< Bytes in the unit of the list, with the unit behind them; the mask alone rounds.
    kChange,        ///< A difference of bytes, with its sign and a bar to its side, else as kSize.
    kPercent,       ///< A share; it has decimals if sizes have.
    kCount,         ///< A number of things.
    kDate,
    kBar,    ///< A whole percent in a bar.
    kWords,  ///< One of three words: for a number above 0, for one below 0, for 0.
};

struct ListColumn {
    CellId cell = kNoCell;  ///< kNoCell stands for the text of the row.
    ColumnKind kind = ColumnKind::kPlain;
    RowText title = {};
    RowText titleAlone = {};  ///< Of a size in the unit that fits it; without one it is "Größe".
    /// Fills the cell of a row of files; null for a cell that something else fills.
    void (*fill)(const CellPlace& to, const FoundFile& file) = nullptr;
    bool saved = true;         ///< See GridColumn.
    bool shownAtFirst = true;  ///< For a column without a button.

    // The button that shows and hides the column. With Command::kNone there is none.
    RowText button = {}, tooltip = {};
    int icon = -1;  ///< -1 means none.
    Command command = Command::kNone;
    OptionFlag shown = {};

    std::uint32_t barColor = 0;           ///< See GridColumn; for kBar only.
    CellId barMore = kNoCell;             ///< See GridColumn::barMoreKey; for kBar only.
    std::span<const RowText> words = {};  ///< For kWords only.
};

struct ListTable {
    std::span<const CellSpec> cells;
    std::span<const ListColumn> columns;
    CellId sortedBy = kNoCell;  ///< Rows are sorted by this cell, the largest number first.
    // The options that keep the unit of the sizes and whether sizes show decimals; null if there are no
    // sizes.
    Flag Options::*sizeMode = nullptr;
    Flag Options::*decimals = nullptr;

    /// Returns the index of the column that shows a cell; the number of columns if there is none.
    constexpr std::size_t columnOf(CellId cell) const {
        const auto found = std::ranges::find(columns, cell, &ListColumn::cell);
        return static_cast<std::size_t>(found - columns.begin());
    }
    constexpr std::string_view keyOf(CellId cell) const {
        return cell == kNoCell ? std::string_view() : cells[cell].key;
    }
};

}  // namespace hl
