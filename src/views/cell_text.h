// What a column of a grid shows in each row, as text: the value of its cell through its mask.
//
// A mask without asterisks is a choice of three texts: "more;less;none;" reads as the first for a number
// above 0, as the second for one below, as the third for 0. A number without a mask is written as it is. A
// date of 0 is "not set" and shows nothing; one before 1970 is a date like any other. A size that is too
// small for the digits of its unit reads as "< 0.01".
#pragma once

#include <optional>
#include <string>

#include "base/number_format.h"
#include "grid/grid.h"
#include "grid/mask.h"

namespace hl {

/// One column made ready for reading: its cell is found and its mask read once. For the time in which the
/// columns of the grid stay as they are. Thread of the grid.
class ColumnText {
  public:
    /// What is passed must outlive it. REQUIRES: the column exists.
    ColumnText(const Grid& grid, std::size_t column, const NumberFormat& numbers);

    /// Empty for a cell that the grid does not have. Control characters in a text are visible.
    std::string of(Row row) const;

  private:
    bool showsBelowLastDigit(Row row) const;
    std::string ofNumber(double value) const;

    const Grid& grid_;
    const GridColumn& column_;
    const NumberFormat& numbers_;
    CellId cell_;
    std::optional<Mask> mask_;
    // Of a size in a unit: which, and the cell of its bytes. Of any other column: 0 and kNoCell.
    int mode_ = 0;
    CellId bytes_ = kNoCell;
};

}  // namespace hl
