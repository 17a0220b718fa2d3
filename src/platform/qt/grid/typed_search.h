// The search for a row by typing the beginning of its text. For the grid's thread.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <optional>

#include "platform/qt/grid/visible_rows.h"

namespace hl {

class TypedSearch {
  public:
    /// Returns the row that the search has come to with this key; nothing if no row matches. Keys typed
    /// quickly search for a longer text from the current row on; a first key, and one that is pressed
    /// repeatedly, goes to the next matching row. REQUIRES: the list of visible rows is up to date.
    std::optional<std::size_t> type(const QString& key, const Grid& grid, const VisibleRows& rows,
                                    std::optional<std::size_t> current);
    /// Tells whether nothing was typed since clear().
    bool isEmpty() const { return typed_.isEmpty(); }
    void clear() { typed_.clear(); }

  private:
    QString typed_;
    QElapsedTimer typedAt_;
};

}  // namespace hl
