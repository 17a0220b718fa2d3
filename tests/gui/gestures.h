// Mouse gestures of which the toolkit's own helpers leave out a part.
#pragma once

#include "platform/qt/grid/grid_view.h"

namespace hl::test {

/// Clicks twice, as a hand does; the toolkit's own helper sends only the second press.
inline void doubleClick(QWidget* on, const QPoint& point) {
    QTest::mouseClick(on, Qt::LeftButton, {}, point);
    QTest::mouseDClick(on, Qt::LeftButton, {}, point);
    QTest::mouseRelease(on, Qt::LeftButton, {}, point);
}

/// Returns the place of the sign for folding of the row that shows at `index`.
inline QPoint branchAt(GridView& view, std::size_t index) {
    const int step = view.style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, &view);
    const int left = static_cast<int>(view.grid().level(view.rows().at(index))) * step + step / 2;
    return {left, view.rowRect(index).center().y()};
}

/// Drags the border at that place of the title row by each of these distances in turn.
inline void dragBorder(const GridView& view, const QPoint& border, std::initializer_list<int> way) {
    QWidget* titles = view.horizontalHeader()->viewport();
    QPoint at = border;
    QTest::mousePress(titles, Qt::LeftButton, {}, at);
    for (const int dx : way) {
        at = border + QPoint(dx, 0);
        // The titles look for the button in the event, which the moves of QTest lack.
        QMouseEvent move(QEvent::MouseMove, at, titles->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(titles, &move);
    }
    QTest::mouseRelease(titles, Qt::LeftButton, {}, at);
}

}  // namespace hl::test
