#include "platform/qt/bars/bar_button.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kBarButtonGuard{"BarButton"};

BarButton::BarButton(WindowEvents& events, QWidget* parent) : QToolButton(parent), events_(events) {
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
}

void BarButton::keyPressEvent(QKeyEvent* event) {
    kBarButtonGuard(events_, [&] {
        const bool opens = event->key() == Qt::Key_Down || event->key() == Qt::Key_F4;
        if (menu() != nullptr && opens) return showMenu();
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (enter) return click();
        QToolButton::keyPressEvent(event);
    });
}

/// Styles mark a checked button only by a shade, which is invisible in a dark palette.
void BarButton::paintEvent(QPaintEvent* event) {
    kBarButtonGuard(events_, [&] {
        if (!isChecked()) return QToolButton::paintEvent(event);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        option.state &= ~QStyle::State_On;
        paintMark();
        QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, option);
    });
}

void BarButton::paintMark() {
    const bool usable = isEnabled();
    QColor mark = palette().color(usable ? QPalette::Active : QPalette::Disabled, QPalette::Highlight);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    mark.setAlphaF(usable ? 0.8F : 0.4F);
    painter.setPen(mark);
    mark.setAlphaF(usable ? 0.22F : 0.1F);
    painter.setBrush(mark);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

}  // namespace hl
