// The rows of a grid: what they show, their cells and state, the columns and the notices. Sorting and
// searching are in grid_sort.cpp. Every row number below tree_.limit() has a place in cells_, text_, picture_
// and flags_. An operation that runs out of memory leaves the grid consistent and can be repeated.
#include "grid/grid.h"

#include <algorithm>
#include <exception>

#include "grid/no_redraw.h"

namespace hl {

namespace {

// Less waste of texts than this is not worth packing.
constexpr std::size_t kLeastWaste = std::size_t{1} << 20;

}  // namespace

Grid::Grid(std::span<const CellSpec> cells) : cells_(cells) {}

// --- rows

Row Grid::addRow(Row parent, std::string_view text) {
    return addRow(parent, texts_.add(text));
}

Row Grid::addRow(Row parent, TextRef text) {
    // Room for a new row number is made first, so that a row in the tree has all its cells even if memory
    // runs out.
    const Row fresh = tree_.limit();
    cells_.addRow(fresh);
    text_.ensure(fresh);
    picture_.ensure(fresh);
    flags_.ensure(fresh);
    const Row row = tree_.add(parent);
    if (row != fresh) cells_.addRow(row);
    text_[row] = text;
    picture_[row] = 0;
    flags_[row] = 0;
    noteAdded(row);
    return row;
}

void Grid::forget(const std::vector<Row>& removed) {
    for (const Row row : removed) {
        wasteBytes_ += text(row).size() + rowNote(row).size();
        for (std::size_t cell = 0; cell < cells_.count(); ++cell)
            wasteBytes_ += cellText(row, static_cast<CellId>(cell)).size();
        if (!notes_.empty()) notes_.erase(row);
        if (!marks_.empty()) marks_.erase(row);
        if (!unshown_.empty()) unshown_.erase(row);
        if (!selected_.empty()) selected_.erase(row);
        if (bar_.valueOr(row, 0) != 0) bar_[row] = 0;
        if (backColor_.valueOr(row, 0) != 0) backColor_[row] = 0;
        if (current_ == row) current_ = kNoRow;
        if (top_ == row) top_ = kNoRow;
    }
    if (rowCount() == 0) {
        texts_.clear();
        wasteBytes_ = 0;
    } else if (wasteBytes_ > kLeastWaste && wasteBytes_ * 2 > texts_.bytesUsed()) {
        // If there is no memory for packing, the waste stays until a later removal; the rows are removed
        // anyway.
        try {
            packTexts();
        } catch (const std::exception&) {
        }
    }
    if (!removed.empty()) changed(&GridChange::structure);
}

// Packing ends the references made by keepText; callers keep those only while they add rows. The new
// references are stored only when all of them exist, since they mean nothing in the old store.
void Grid::packTexts() {
    TextStore packed;
    std::vector<TextRef> references;
    const auto cellCount = static_cast<CellId>(cells_.count());
    for (Row row = firstRoot(); row != kNoRow; row = tree_.following(row)) {
        references.push_back(packed.add(text(row)));
        for (CellId cell = 0; cell < cellCount; ++cell)
            if (cells_.isText(cell)) references.push_back(packed.addShared(cellText(row, cell)));
    }
    for (const auto& [row, note] : notes_) references.push_back(packed.add(texts_.get(note)));

    auto next = references.begin();
    for (Row row = firstRoot(); row != kNoRow; row = tree_.following(row)) {
        text_[row] = *next++;
        for (CellId cell = 0; cell < cellCount; ++cell)
            if (cells_.isText(cell)) cells_.setText(row, cell, *next++);
    }
    for (auto& [row, note] : notes_) note = *next++;
    texts_ = std::move(packed);
    wasteBytes_ = 0;
}

void Grid::removeRow(Row row) {
    std::vector<Row> removed;
    noteGapBefore(row);
    tree_.remove(row, removed);
    forget(removed);
}

// Rows are removed one by one, so that those already removed are forgotten even if memory runs out.
void Grid::removeChildren(Row row) {
    const NoRedraw off(*this);
    while (firstChild(row) != kNoRow) removeRow(firstChild(row));
}

void Grid::removeFrom(std::size_t from) {
    const NoRedraw off(*this);
    while (rowCount() > from) removeRow(tree_.lastChild(kNoRow));
}

void Grid::clear() {
    tree_.clear();
    cells_.clear();
    texts_.clear();
    text_.clear();
    picture_.clear();
    flags_.clear();
    bar_.clear();
    backColor_.clear();
    notes_.clear();
    marks_.clear();
    unshown_.clear();
    selected_.clear();
    current_ = top_ = kNoRow;
    wasteBytes_ = 0;
    changedOrder();
}

// --- what a row shows

void Grid::setText(Row row, std::string_view text) {
    const TextRef added = texts_.add(text);
    wasteBytes_ += this->text(row).size();
    text_[row] = added;
    changedCells(row);
}

std::uint32_t Grid::mark(Row row) const {
    if (marks_.empty()) return 0;
    const auto mark = marks_.find(row);
    return mark == marks_.end() ? 0 : mark->second;
}

void Grid::setMark(Row row, std::uint32_t mark) {
    if (mark == this->mark(row)) return;
    if (mark == 0)
        marks_.erase(row);
    else
        marks_.insert_or_assign(row, mark);
    changedCells(row);
}

Unshown Grid::unshown(Row row) const {
    if (unshown_.empty()) return {};
    const auto counts = unshown_.find(row);
    return counts == unshown_.end() ? Unshown() : counts->second;
}

void Grid::setUnshown(Row row, Unshown counts) {
    if (counts != Unshown())
        unshown_.insert_or_assign(row, counts);
    else if (!unshown_.empty())
        unshown_.erase(row);
}

std::string_view Grid::rowNote(Row row) const {
    const auto note = notes_.find(row);
    return note == notes_.end() ? std::string_view() : texts_.get(note->second);
}

void Grid::setRowNote(Row row, std::string_view note) {
    const std::size_t waste = rowNote(row).size();
    notes_[row] = texts_.add(note);
    wasteBytes_ += waste;
    changedCells(row);
}

void Grid::setPicture(Row row, int picture) {
    picture_[row] = static_cast<std::uint8_t>(picture);
    changedCells(row);
}

void Grid::setBarPicture(Row row, int index) {
    bar_.ensure(row);
    bar_[row] = static_cast<std::uint8_t>(index + 1);
    changedCells(row);
}

std::optional<std::uint32_t> Grid::backColor(Row row) const {
    const std::uint32_t stored = backColor_.valueOr(row, 0);
    if (stored == 0) return std::nullopt;
    return stored - 1;
}

void Grid::setBackColor(Row row, std::uint32_t color) {
    backColor_.ensure(row);
    backColor_[row] = color + 1;
    changedCells(row);
}

// --- cells

void Grid::setNumber(Row row, CellId cell, double value) {
    cells_.setNumber(row, cell, value);
    changedCells(row);
}

void Grid::dropCell(CellId cell) {
    cells_.drop(cell);
    if (observer_ == nullptr) return;
    pending_.cells.addAll();
    if (redraw_) notify();
}

void Grid::setCellText(Row row, CellId cell, std::string_view text) {
    const std::size_t waste = cellText(row, cell).size();
    cells_.setText(row, cell, texts_.addShared(text));
    wasteBytes_ += waste;
    changedCells(row);
}

// --- state

void Grid::setExpanded(Row row, bool on) {
    if (expanded(row) == on) return;
    flags_[row] = static_cast<std::uint8_t>(on ? flags_[row] | kExpanded : flags_[row] & ~kExpanded);
    pending_.folded.add(row);
    changed(&GridChange::structure);
}

void Grid::setSelected(Row row, bool on) {
    if (on) {
        selected_.insert(row);
    } else {
        selected_.erase(row);
    }
    changed(&GridChange::current);
}

void Grid::selectNone() {
    selected_.clear();
    changed(&GridChange::current);
}

std::vector<Row> Grid::selectedRows() const {
    std::vector<Row> rows(selected_.begin(), selected_.end());
    std::sort(rows.begin(), rows.end(), [this](Row a, Row b) { return indexOf(a) < indexOf(b); });
    return rows;
}

void Grid::setCurrentRow(Row row) {
    current_ = row;
    changed(&GridChange::current);
}

void Grid::setTopRow(Row row) {
    top_ = row;
    changed(&GridChange::current);
}

void Grid::setRedraw(bool on) {
    redraw_ = on;
    if (on) notify();
}

// --- columns

void Grid::setColumns(std::vector<GridColumn> columns) {
    columns_ = std::move(columns);
    changed(&GridChange::columns);
}

GridColumn& Grid::changeColumn(std::size_t column) {
    changed(&GridChange::columns);
    return columns_.at(column);
}

// --- notices

void Grid::changed(bool GridChange::*what) {
    if (observer_ == nullptr) return;
    pending_.*what = true;
    if (redraw_) notify();
}

void Grid::changedCells(Row row) {
    if (observer_ == nullptr) return;
    pending_.cells.add(row);
    if (redraw_) notify();
}

void Grid::changedOrder() {
    pending_.added.addAll();
    changed(&GridChange::structure);
}

// A row behind or below an added one needs no gap: the rows that follow the gap of that one come to it, too.
void Grid::noteAdded(Row row) {
    if (observer_ != nullptr && !pending_.added.isAll()) {
        const Row above = parent(row), before = tree_.previousSibling(row);
        const bool follows = (before != kNoRow && pending_.added.contains(before)) ||
                             (above != kNoRow && pending_.added.contains(above));
        if (!follows) noteGapBefore(row);
        pending_.added.add(row);
    }
    changed(&GridChange::structure);
}

void Grid::noteGapBefore(Row row) {
    if (observer_ == nullptr || pending_.newList()) return;
    Row before = parent(row);
    for (Row above = before; above != kNoRow; above = parent(above))
        if (!expanded(above)) return;  // The row is hidden.
    if (const Row sibling = tree_.previousSibling(row); sibling != kNoRow) {
        before = sibling;
        while (expanded(before) && hasChildren(before)) before = tree_.lastChild(before);
    }
    pending_.gaps.add(before);
}

void Grid::notify() {
    if (observer_ != nullptr && !pending_.isEmpty()) observer_->gridChanged(pending_);
    pending_.clear();
}

}  // namespace hl
