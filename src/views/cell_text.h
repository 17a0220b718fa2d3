// What a column of a grid shows in each row, as text: the value of its cell, formatted by its mask.
//
// A mask without asterisks chooses one of three texts: of "more;less;none;" a number above 0 shows the first,
// one below 0 the second, and 0 the third. A number without a mask is written as it is. A date of 0 means
// "not set" and shows nothing; one before 1970 is a date like any other. A size too small for the digits of
// its unit shows as "< 0.01". A difference of sizes has its sign in front; none, as a cell with NaN, shows
// nothing.
#pragma once

#include <optional>
#include <string>

#include "base/number_format.h"
#include "grid/grid.h"
#include "grid/mask.h"

namespace hl {

/// A column prepared for reading: its cell is looked up and its mask is parsed once. The grid's columns must
/// not change while it is used. For the grid's thread.
class ColumnText {
  public:
    /// The arguments must outlive it. REQUIRES: the column exists.
    ColumnText(const Grid& grid, std::size_t column, const NumberFormat& numbers);

    /// Returns an empty text for a cell that the grid does not have. Control characters in a text are made
    /// visible.
    std::string of(Row row) const;
    /// Returns the cell as a number, a size in the column's unit. REQUIRES: the grid has the cell.
    double number(Row row) const;

  private:
    /// Returns any number that is no date; it is one of bytes if the column has a unit of sizes.
    std::string sizeText(double bytes) const;
    std::string difference(double bytes) const;
    double inUnit(double value) const;
    bool isBelowLastDigit(double bytes) const;
    std::string ofNumber(double value) const;

    const Grid& grid_;
    const GridColumn& column_;
    const NumberFormat& numbers_;
    CellId cell_;
    std::optional<Mask> mask_;
};

}  // namespace hl
