// The columns of a grid's view: their widths, what a width has to hold, and the sign of the sorted one. The
// grid stores the widths. For the grid's thread.
#pragma once

#include <optional>

#include "platform/qt/grid/row_painter.h"

namespace hl {

class GridHeader;
class GridView;

class GridColumns {
  public:
    /// Both must outlive it.
    GridColumns(GridView& view, const RowSources& sources) : view_(view), sources_(sources) {}

    /// Returns the title row, which tells this object of its clicks and drags; `view` owns it.
    GridHeader* makeHeader();
    /// Shows and hides the columns as the grid says, with the widths that it stores.
    void apply();
    /// Shows the grid's order of rows as a sign in a title.
    void showSort();
    /// See GridPane::autosizeColumn; `column` exists.
    void autosize(std::size_t column, int margin);
    /// Makes columns of numbers as wide as the numbers of the visible rows need; none becomes narrower.
    void widenNumbers();
    /// In a hierarchy, gives the names the width that they want, as far as the numbers stay in sight.
    void nameGivesWay();

  private:
    std::optional<std::size_t> sortedColumn() const;
    void clicked(std::size_t column);
    void store(std::size_t column, int width);
    void setWidth(std::size_t column, int width);
    int widest(std::size_t column) const;
    int fittingWidth(std::size_t column, int margin) const;
    int besideNumbers(int fitting) const;
    int widestFit(std::size_t column) const;
    bool hasNumbers(std::size_t column) const;

    GridView& view_;
    const RowSources& sources_;
    int wantedName_ = 0;  ///< The width that the names would take; 0 until it is known.
};

}  // namespace hl
