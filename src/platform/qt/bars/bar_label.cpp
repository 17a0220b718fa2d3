#include "platform/qt/bars/bar_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kBarLabelGuard{"BarLabel"};

BarLabel::BarLabel(const QString& text, WindowEvents& events, QWidget* parent)
    : QLabel(text, parent), events_(events) {
    QFont bold = font();
    bold.setBold(true);
    setFont(bold);
    setTextFormat(Qt::PlainText);
    setContentsMargins(4, 0, 6, 0);
}

// The ends of a path say more than its middle.
QString BarLabel::shown() const {
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

bool BarLabel::event(QEvent* event) {
    return kBarLabelGuard(events_, [&] {
        if (event->type() != QEvent::ToolTip || shown() == text()) return QLabel::event(event);
        // A name must never be read as rich text.
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           QStringLiteral("<p style='white-space:pre'>") + text().toHtmlEscaped(), this);
        return true;
    });
}

void BarLabel::paintEvent(QPaintEvent*) {
    kBarLabelGuard(events_, [this] {
        QPainter painter(this);
        style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                              isEnabled(), shown(), foregroundRole());
    });
}

}  // namespace hl
