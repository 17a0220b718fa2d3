// What a hand does with the mouse, where the toolkit's own helpers leave out a part of it.
#pragma once

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QTest>
#include <initializer_list>

#include "platform/qt/grid/grid_view.h"

namespace hl::test {

/// Two clicks, as a hand does them; the toolkit's own sends the second press alone.
inline void doubleClick(QWidget* on, const QPoint& point) {
    QTest::mouseClick(on, Qt::LeftButton, {}, point);
    QTest::mouseDClick(on, Qt::LeftButton, {}, point);
    QTest::mouseRelease(on, Qt::LeftButton, {}, point);
}

/// In the title row: drags the border at that place, by way of each of these distances.
inline void dragBorder(const GridView& view, const QPoint& border, std::initializer_list<int> way) {
    QWidget* titles = view.horizontalHeader()->viewport();
    QPoint at = border;
    QTest::mousePress(titles, Qt::LeftButton, {}, at);
    for (const int dx : way) {
        at = border + QPoint(dx, 0);
        // The titles look for the button in the event, which QTest's own moves lack.
        QMouseEvent move(QEvent::MouseMove, at, titles->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(titles, &move);
    }
    QTest::mouseRelease(titles, Qt::LeftButton, {}, at);
}

}  // namespace hl::test
