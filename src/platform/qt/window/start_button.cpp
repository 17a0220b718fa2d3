#include "platform/qt/window/start_button.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kStartButtonGuard{"StartButton"};
constexpr int kButtonMargin = 8, kIconGap = 8, kIcon = 24, kBar = 5, kBarGap = 3, kWidest = 420,
              kNarrowest = 120;
constexpr qreal kSmallestNote = 0.75;
constexpr int kNearlyFull = 90;  // Percent; from there on the bar warns.

}  // namespace

void StartButton::show(const StartEntry& entry) {
    caption_ = shownName(entry.caption);
    note_ = shownName(entry.note);
    percent_ = entry.percent;
    setAccessibleName(caption_);
    // Without a description a screen reader would read the tooltip with its marks.
    setAccessibleDescription(note_.isEmpty() ? caption_ : note_);
    // A name must never be read as rich text.
    setToolTip(QStringLiteral("<p style='white-space:pre'>") + caption_.toHtmlEscaped() +
               (note_.isEmpty() ? QString() : QStringLiteral("<br>") + note_.toHtmlEscaped()));
    updateGeometry();
    update();
}

// The height of the lines and of the bar below them.
int StartButton::linesHeight() const {
    return (note_.isEmpty() ? 1 : 2) * fontMetrics().height() + (percent_ < 0 ? 0 : kBar + kBarGap);
}

QSize StartButton::sizeHint() const {
    return {kWidest, std::max(linesHeight(), kIcon) + 2 * kButtonMargin};
}

QSize StartButton::minimumSizeHint() const {
    return {kNarrowest, sizeHint().height()};
}

void StartButton::keyPressEvent(QKeyEvent* event) {
    kStartButtonGuard(faults_, [&] {
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (enter && !event->isAutoRepeat()) return click();
        const int key = event->key();
        const bool arrow =
            key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
        if (arrow) return event->ignore();  // The page moves the keyboard.
        QPushButton::keyPressEvent(event);
    });
}

void StartButton::changeEvent(QEvent* event) {
    kStartButtonGuard(faults_, [&] {
        QPushButton::changeEvent(event);
        if (event->type() == QEvent::FontChange) updateGeometry();
    });
}

void StartButton::paintEvent(QPaintEvent*) {
    kStartButtonGuard(faults_, [&] { paintContents(); });
}

void StartButton::paintContents() {
    QPainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.icon = {};
    style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
    QRect room = rect().adjusted(kButtonMargin, kButtonMargin, -kButtonMargin, -kButtonMargin);
    const QRect picture(room.left(), room.center().y() - kIcon / 2, kIcon, kIcon);
    icon().paint(&painter, picture, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    room.setLeft(picture.right() + kIconGap);
    const int line = fontMetrics().height();
    QRect row(room.left(), room.center().y() - linesHeight() / 2, room.width(), line);
    const auto text = [&](const QString& whole) {
        painter.drawText(row, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(whole, Qt::ElideMiddle, row.width()));
        row.translate(0, line);
    };
    QColor ink = option.palette.color(QPalette::ButtonText);
    painter.setPen(ink);
    text(caption_);
    ink.setAlphaF(0.75F);
    painter.setPen(ink);
    painter.setFont(noteFont(row.width()));
    if (!note_.isEmpty()) text(note_);
    if (percent_ >= 0) paintFill(painter, {row.left(), row.top() + kBarGap, row.width(), kBar});
    if (!hasFocus()) return;
    painter.setPen(QPen(option.palette.color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 3, 3);
}

// Numbers are not cut: they become smaller, within bounds.
QFont StartButton::noteFont(int room) const {
    QFont font = this->font();
    const int width = fontMetrics().horizontalAdvance(note_);
    if (percent_ < 0 || width <= room) return font;
    const qreal scale = std::max(kSmallestNote, static_cast<qreal>(room) / width);
    font.setPointSizeF(QFontInfo(font).pointSizeF() * scale);
    return font;
}

void StartButton::paintFill(QPainter& painter, const QRect& bar) const {
    QColor edge = palette().color(QPalette::ButtonText);
    edge.setAlphaF(0.25F);
    painter.fillRect(bar, edge);
    QRect filled = bar;
    filled.setWidth(std::max(1, bar.width() * std::min(percent_, 100) / 100));
    const QColor full(0xC0, 0x39, 0x2B);
    painter.fillRect(filled, percent_ >= kNearlyFull ? full : palette().color(QPalette::Highlight));
}

}  // namespace hl
