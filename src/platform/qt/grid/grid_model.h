// A grid's visible rows and columns as the toolkit's table asks for them. It stores nothing. For the window's
// thread.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>

#include "platform/qt/grid/visible_rows.h"
#include "platform/window.h"

namespace hl {

using CellTextFunction = std::function<std::string(GridId, std::size_t column, Row)>;

class GridModel : public QAbstractTableModel, public RowListObserver {
  public:
    /// The arguments must outlive it.
    GridModel(const Grid& grid, GridId id, const VisibleRows& rows, const CellTextFunction& cellText,
              WindowEvents& events);

    /// These enclose the rebuilding of the list of rows.
    void beginRows() { beginResetModel(); }
    void endRows() { endResetModel(); }
    void columnsChanged();
    void beforeRemoval(std::size_t first, std::size_t last) override {
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
    }
    void afterRemoval() override { endRemoveRows(); }
    void beforeInsertion(std::size_t first, std::size_t last) override {
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(last));
    }
    void afterInsertion() override { endInsertRows(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    QVariant titleData(std::size_t column, int role) const;

    const Grid& grid_;
    GridId id_;
    const VisibleRows& rows_;
    const CellTextFunction& cellText_;
    WindowEvents& events_;
    int columns_ = 0;
};

}  // namespace hl
