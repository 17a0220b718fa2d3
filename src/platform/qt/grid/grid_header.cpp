#include "platform/qt/grid/grid_header.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <utility>

#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kGridHeaderGuard{"GridHeader"};

GridHeader::GridHeader(HeaderCalls calls, WindowEvents& events, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), calls_(std::move(calls)), events_(events) {
    setSectionsClickable(true);
    setSectionsMovable(false);
    setHighlightSections(false);
    setSectionResizeMode(QHeaderView::Interactive);
    setTextElideMode(Qt::ElideRight);
    connect(this, &QHeaderView::sectionClicked, this, [this](int column) { calls_.click(column); });
    // The second of two quick clicks arrives only as this. Right of the last title it has no column.
    connect(this, &QHeaderView::sectionDoubleClicked, this, [this](int column) {
        if (column >= 0) calls_.click(column);
    });
    connect(this, &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) { calls_.fit(column); });
    connect(this, &QHeaderView::sectionResized, this,
            [this](int column, int oldWidth, int width) { sectionSized(column, oldWidth, width); });
}

void GridHeader::sectionSized(int column, int oldWidth, int width) {
    if (!moving_ || oldWidth == width) return;
    kGridHeaderGuard(events_, [&] {
        // The width comes first: the other call may bring the columns up to date, which would undo the drag.
        calls_.sized(column, width);
        if (std::exchange(dragged_, column) < 0) calls_.sizing();
    });
}

void GridHeader::mousePressEvent(QMouseEvent* event) {
    kGridHeaderGuard(events_, [&] {
        dragged_ = -1;
        QHeaderView::mousePressEvent(event);
    });
}

void GridHeader::mouseMoveEvent(QMouseEvent* event) {
    kGridHeaderGuard(events_, [&] {
        const bool outer = std::exchange(moving_, (event->buttons() & Qt::LeftButton) != 0);
        QHeaderView::mouseMoveEvent(event);
        moving_ = outer;
    });
}

void GridHeader::mouseReleaseEvent(QMouseEvent* event) {
    kGridHeaderGuard(events_, [&] {
        QHeaderView::mouseReleaseEvent(event);
        // The toolkit does not report a click when a release ends a drag.
        if (const int column = std::exchange(dragged_, -1); column >= 0) calls_.click(column);
    });
}

void GridHeader::contextMenuEvent(QContextMenuEvent* event) {
    kGridHeaderGuard(events_, [&] {
        event->accept();
        calls_.menu(event->globalPos());
    });
}

}  // namespace hl
