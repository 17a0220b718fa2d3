#include "grid/row_tree.h"

#include <algorithm>

#include "base/fault.h"
#include "grid/room.h"

namespace hl {

Row RowTree::add(Row parent) {
    Row row = limit_;
    if (free_.empty()) {
        if (limit_ == kNoRow) raiseOverflow("RowTree");
        links_.ensure(row);
        ++limit_;
    } else {
        row = free_.back();
        free_.pop_back();
    }
    Row& first = parent == kNoRow ? firstRoot_ : links_[parent].first;
    Row& last = parent == kNoRow ? lastRoot_ : links_[parent].last;
    const std::uint32_t level = parent == kNoRow ? 0 : links_[parent].level + 1;
    links_[row] = {parent, kNoRow, kNoRow, kNoRow, last, level};
    (last == kNoRow ? first : links_[last].next) = row;
    last = row;
    ++count_;
    changed();
    return row;
}

void RowTree::unlink(Row row) {
    const Links& links = links_[row];
    Row& first = links.parent == kNoRow ? firstRoot_ : links_[links.parent].first;
    Row& last = links.parent == kNoRow ? lastRoot_ : links_[links.parent].last;
    (links.previous == kNoRow ? first : links_[links.previous].next) = links.next;
    (links.next == kNoRow ? last : links_[links.next].previous) = links.previous;
}

void RowTree::remove(Row row, std::vector<Row>& removed) {
    // Parents come before their children here; the rows are handed out in reverse once nothing can fail any
    // more.
    std::vector<Row> rows = {row};
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (Row child = firstChild(rows[i]); child != kNoRow; child = nextSibling(child))
            rows.push_back(child);
    makeRoom(removed, rows.size());
    makeRoom(free_, rows.size());
    unlink(row);
    removed.insert(removed.end(), rows.rbegin(), rows.rend());
    free_.insert(free_.end(), rows.rbegin(), rows.rend());
    for (const Row gone : rows) links_[gone].level = kGone;
    count_ -= rows.size();
    changed();
}

void RowTree::clear() {
    *this = RowTree();
}

Row RowTree::following(Row row) const {
    if (links_[row].first != kNoRow) return links_[row].first;
    while (row != kNoRow && links_[row].next == kNoRow) row = links_[row].parent;
    return row == kNoRow ? kNoRow : links_[row].next;
}

Row RowTree::preceding(Row row) const {
    Row before = row == kNoRow ? lastRoot_ : links_[row].previous;
    if (before == kNoRow) return row == kNoRow ? kNoRow : links_[row].parent;
    while (links_[before].last != kNoRow) before = links_[before].last;
    return before;
}

void RowTree::listRows() const {
    if (ordered_) return;
    order_.clear();
    order_.reserve(count_);
    for (Row row = firstRoot_; row != kNoRow; row = following(row)) order_.push_back(row);
    ordered_ = true;
}

void RowTree::placeRows() const {
    if (placed_) return;
    listRows();
    position_.assign(limit_, 0);
    for (std::uint32_t index = 0; index < order_.size(); ++index) position_[order_[index]] = index;
    placed_ = true;
}

Row RowTree::rowAt(std::size_t index) const {
    listRows();
    return index < order_.size() ? order_[index] : kNoRow;
}

std::size_t RowTree::indexOf(Row row) const {
    placeRows();
    return position_[row];
}

void RowTree::reorder(Row parent, const std::vector<Row>& children) {
    Row before = kNoRow;
    for (const Row child : children) {
        (before == kNoRow ? (parent == kNoRow ? firstRoot_ : links_[parent].first) : links_[before].next) =
            child;
        links_[child].previous = before;
        before = child;
    }
    if (before != kNoRow) links_[before].next = kNoRow;
    (parent == kNoRow ? lastRoot_ : links_[parent].last) = before;
    changed();
    if (parent != kNoRow || children.size() != count_) return;
    order_ = children;
    sorted_ = ordered_ = true;
}

}  // namespace hl
