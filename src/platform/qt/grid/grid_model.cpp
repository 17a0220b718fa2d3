#include "platform/qt/grid/grid_model.h"

#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kGridModelGuard{"GridModel"};

GridModel::GridModel(const Grid& grid, GridId id, const VisibleRows& rows, const CellTextFunction& cellText,
                     WindowEvents& events)
    : grid_(grid), id_(id), rows_(rows), cellText_(cellText), events_(events) {}

void GridModel::columnsChanged() {
    const int columns = static_cast<int>(grid_.columns().size());
    if (columns != columns_) {
        beginResetModel();
        columns_ = columns;
        endResetModel();
    } else if (columns > 0) {
        emit headerDataChanged(Qt::Horizontal, 0, columns - 1);
    }
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.count());
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
    return kGridModelGuard(events_, [&]() -> QVariant {
        const auto row = static_cast<std::size_t>(index.row());
        const auto column = static_cast<std::size_t>(index.column());
        if (!grid_.redraw() || row >= rows_.count() || column >= grid_.columns().size()) return {};
        return QString::fromStdString(cellText_(id_, column, rows_.at(row)));
    });
}

QVariant GridModel::titleData(std::size_t column, int role) const {
    const GridColumn& of = grid_.columns().at(column);
    if (role == Qt::DisplayRole) {
        // Without it, the next column's title would begin where this one ends.
        const QString title = QString::fromStdString(of.title);
        return of.alignment == Alignment::kRight ? title + QChar(QChar::Nbsp) : title;
    }
    const Qt::AlignmentFlag side = of.alignment == Alignment::kRight ? Qt::AlignRight : Qt::AlignLeft;
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(Qt::Alignment(side | Qt::AlignVCenter));
    return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0) return {};
    return kGridModelGuard(events_, [&]() -> QVariant {
        const auto column = static_cast<std::size_t>(section);
        return column < grid_.columns().size() ? titleData(column, role) : QVariant();
    });
}

}  // namespace hl
