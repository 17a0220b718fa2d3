// The store of rows: a tree of rows with keyed cells, and what a view needs to show and work with them.
//
// Each view has one Grid. It is the only copy of the results. A window attaches to it as an observer and
// paints it; a run without a window attaches nothing. A flat list is a grid whose rows are all roots. A grid
// is for one thread only.
//
// A row takes kRowBytes, its cells (cellBytes), its text and one byte more. Side tables hold what few rows
// have (a note, a mark, a selection); the column of colours exists only once a colour was set.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/size_text.h"
#include "grid/cell_table.h"
#include "grid/grid_change.h"
#include "grid/row_tree.h"
#include "grid/text_store.h"

namespace hl {

enum class Alignment : std::uint8_t { kLeft, kRight };

struct GridColumn {
    std::string title;
    std::string key;   ///< The key of the cell that it shows; empty for the row's text.
    std::string mask;  ///< See grid/mask.h; empty for none.
    Alignment alignment = Alignment::kLeft;
    bool visible = true;
    double width = 0;  ///< In the window's units; 0 until it is measured.
    /// The base colour (0xRRGGBB) of a percent bar (platform/percent_bar.h) that the cell's text is drawn in.
    /// A cell without a text has no bar.
    std::optional<std::uint32_t> barColor = {};
    bool barBehind = false;  ///< The bar has no edge, and the text stands where it would without a bar.
    /// The key of a cell with a further percent, which the bar shows in a third tone behind the first; empty
    /// for none.
    std::string barMoreKey = {};
    /// The bar stands left of the text and begins in its middle: for a number above 0 it goes to the right,
    /// for one below 0 to the left, in two colours of its own (platform/percent_bar.h).
    bool barTwoSided = false;
    double barMost = 0;      ///< The number, without its sign, whose two-sided bar is longest.
    bool showsSign = false;  ///< A size is a difference: one above 0 has a "+", and 0 shows nothing.
    /// The unit in which a cell of bytes is shown and saved. Any other cell has kModeBytes.
    SizeMode unit = kModeBytes;
    /// The title where the rows are saved, if it is another: sizes of kModeAuto are saved in bytes.
    std::string savedTitle = {};
    /// A size in a larger unit is rounded to two decimals, ties to even, before the mask rounds it.
    bool roundsUnit = true;
    bool saved = true;  ///< The column is written where the rows are saved, if it is visible.
};

/// How the rows of one level are sorted.
struct LevelSort {
    std::string key;      ///< The key of the cell to sort by; empty for the row's text.
    bool numbers = true;  ///< Sorts a text by the number at its front; if false, as text without regard to
                          ///< case.
    bool descending = true;
    bool keepsTies = false;  ///< Rows of equal keys keep their order.
};

/// What rules left out below a row: folders, each of which has a grey row, and files, which have none.
struct Unshown {
    std::uint32_t folders = 0, files = 0;
    bool operator==(const Unshown&) const = default;
};

/// What the user may do in a grid.
enum class GridAccess : std::uint8_t {
    kLocked,   ///< Scroll.
    kLooking,  ///< What changes no row, too: pick and unfold rows, drag columns. Rows come meanwhile.
    kFull,
};

class Grid {
  public:
    static constexpr std::size_t kSortLevels = 256;
    /// Bytes that a row takes without its cells and its text: links, text reference, picture, flags.
    static constexpr std::size_t kRowBytes = RowTree::kRowBytes + sizeof(TextRef) + 2;

    /// `cells` must outlive the grid.
    explicit Grid(std::span<const CellSpec> cells);
    Grid(const Grid&) = delete;
    Grid& operator=(const Grid&) = delete;

    // --- rows
    /// Adds a row behind the last child of `parent`, or behind the last root for kNoRow. A new row is folded,
    /// is not selected and has picture 0.
    Row addRow(Row parent, std::string_view text);
    /// Adds a row whose text keepText stored; many rows can share one.
    Row addRow(Row parent, TextRef text);
    TextRef keepText(std::string_view text) { return texts_.add(text); }
    void removeRow(Row row);
    void removeChildren(Row row);
    /// Removes all rows whose index is `from` or more. REQUIRES: all rows are roots.
    void removeFrom(std::size_t from);
    void clear();

    std::size_t rowCount() const { return tree_.count(); }
    const RowTree& tree() const { return tree_; }
    Row rowAt(std::size_t index) const { return tree_.rowAt(index); }
    std::size_t indexOf(Row row) const { return tree_.indexOf(row); }
    Row parent(Row row) const { return tree_.parent(row); }
    /// Returns the row of the highest level above a row, or the row itself. REQUIRES: the row exists.
    Row rootOf(Row row) const {
        while (parent(row) != kNoRow) row = parent(row);
        return row;
    }
    Row firstChild(Row row) const { return tree_.firstChild(row); }
    Row nextSibling(Row row) const { return tree_.nextSibling(row); }
    Row firstRoot() const { return tree_.firstChild(kNoRow); }
    bool hasChildren(Row row) const { return tree_.firstChild(row) != kNoRow; }
    std::uint32_t level(Row row) const { return tree_.level(row); }

    // --- what a row shows
    std::string_view text(Row row) const { return texts_.get(text_[row]); }
    void setText(Row row, std::string_view text);
    std::string_view rowNote(Row row) const;
    void setRowNote(Row row, std::string_view note);
    /// A number that few rows have; a row that has one carries a small mark at its picture. 0 for none.
    std::uint32_t mark(Row row) const;
    void setMark(Row row, std::uint32_t mark);
    /// Counts that few rows have, and that nobody sees at the row.
    Unshown unshown(Row row) const;
    void setUnshown(Row row, Unshown counts);
    int picture(Row row) const { return picture_[row]; }
    void setPicture(Row row, int picture);
    /// The index of the percent bar's picture in front of the text; -1 for none.
    int barPicture(Row row) const { return bar_.valueOr(row, 0) - 1; }
    void setBarPicture(Row row, int index);
    /// 0xRRGGBB, or nothing if the row has the view's own background.
    std::optional<std::uint32_t> backColor(Row row) const;
    void setBackColor(Row row, std::uint32_t color);

    // --- cells
    CellId cell(std::string_view key) const { return cells_.find(key); }
    double number(Row row, CellId cell) const { return cells_.number(row, cell); }
    void setNumber(Row row, CellId cell, double value);
    /// Gives back the memory of a cell that is kept on demand; it is 0 in all rows then.
    void dropCell(CellId cell);
    std::string_view cellText(Row row, CellId cell) const { return texts_.get(cells_.text(row, cell)); }
    void setCellText(Row row, CellId cell, std::string_view text);
    const CellTable& cells() const { return cells_; }

    // --- state
    bool expanded(Row row) const { return (flags_[row] & kExpanded) != 0; }
    void setExpanded(Row row, bool on);
    bool selected(Row row) const { return selected_.contains(row); }
    void setSelected(Row row, bool on);
    void selectNone();
    std::size_t selectedCount() const { return selected_.size(); }
    /// Returns them in the order of the view.
    std::vector<Row> selectedRows() const;
    Row currentRow() const { return current_; }
    void setCurrentRow(Row row);
    Row topRow() const { return top_; }
    void setTopRow(Row row);
    GridAccess access() const { return access_; }
    void setAccess(GridAccess access) { access_ = access; }
    /// Tells whether the user may work in the grid.
    bool enabled() const { return access_ == GridAccess::kFull; }
    void setEnabled(bool on) { access_ = on ? GridAccess::kFull : GridAccess::kLocked; }
    bool redraw() const { return redraw_; }
    /// While it is off, changes gather; when it goes on, one notice tells of all of them.
    void setRedraw(bool on);

    // --- columns
    const std::vector<GridColumn>& columns() const { return columns_; }
    void setColumns(std::vector<GridColumn> columns);
    /// REQUIRES: the column exists.
    GridColumn& changeColumn(std::size_t column);

    // --- sort and search
    /// All levels from kSortLevels - 1 on share one setting. The reference stays valid as long as the grid.
    LevelSort& levelSort(std::uint32_t level) {
        const std::size_t index = std::min<std::size_t>(level, kSortLevels - 1);
        if (index >= sorts_.size()) sorts_.resize(index + 1);
        return sorts_[index];
    }
    /// Sorts each level from 0 to `deepest` once. Rows of equal keys are sorted by the bytes of their texts,
    /// ascending; if there is a cell "IsFolder", those with 0 in it come last. `between` (may be null) runs
    /// after each level.
    void sortLevels(std::uint32_t deepest, const std::function<void()>& between = nullptr);
    /// Sorts the children of one row (the roots for kNoRow) alone, by the setting of their level.
    void sortChildren(Row parent);
    /// Returns the first row with an index from `from` to `to`, both included, whose text holds `part`
    /// without regard to case; kNoRow if there is none.
    Row find(std::string_view part, std::size_t from, std::size_t to) const;

    // --- observer
    /// Attaches the one observer, which must stay alive while attached; null detaches it.
    void attach(GridObserver* observer) {
        observer_ = observer;
        pending_ = {};
    }

    /// Returns the bytes taken by the texts of rows, notes and cells.
    std::size_t textBytes() const { return texts_.bytesUsed(); }

  private:
    enum Flags : std::uint8_t { kExpanded = 1 };

    void forget(const std::vector<Row>& removed);
    void packTexts();
    bool sortChildren(Row parent, const LevelSort& sort, CellId cell);
    void changed(bool GridChange::*what);
    void changedCells(Row row);
    void changedOrder();
    void noteAdded(Row row);
    void noteGapBefore(Row row);
    void notify();

    RowTree tree_;
    CellTable cells_;
    TextStore texts_;
    Column<TextRef> text_;
    Column<std::uint8_t> picture_;
    Column<std::uint8_t> flags_;
    Column<std::uint8_t> bar_;         ///< Index + 1; it has no block until the first bar is set.
    Column<std::uint32_t> backColor_;  ///< Colour + 1; it has no block until the first colour is set.
    std::unordered_map<Row, TextRef> notes_;
    std::unordered_map<Row, std::uint32_t> marks_;
    std::unordered_map<Row, Unshown> unshown_;
    std::unordered_set<Row> selected_;
    Row current_ = kNoRow;
    Row top_ = kNoRow;
    GridAccess access_ = GridAccess::kFull;
    bool redraw_ = true;
    std::size_t wasteBytes_ = 0;
    std::vector<GridColumn> columns_;
    std::deque<LevelSort> sorts_;  ///< Only of the levels that were asked for: a list has one.

    GridObserver* observer_ = nullptr;
    GridChange pending_;
};

}  // namespace hl
