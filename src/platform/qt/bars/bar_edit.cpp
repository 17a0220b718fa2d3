#include "platform/qt/bars/bar_edit.h"

#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QToolButton>
#include <utility>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kBarEditGuard{"BarEdit"};

BarEdit::BarEdit(CommandBar& bar, const BarEntry& entry, WindowEvents& faults, BarEvents& events,
                 Within within, const QString& clear, QWidget* parent)
    : QLineEdit(parent),
      bar_(bar),
      faults_(faults),
      events_(events),
      within_(std::move(within)),
      id_(entry.id) {
    setText(qtText(entry.text));
    setPlaceholderText(qtText(entry.caption));
    setAccessibleName(qtText(entry.caption.empty() ? entry.tooltip : entry.caption));
    setToolTip(qtText(entry.tooltip));
    setEnabled(entry.enabled);
    showHint();
    connect(this, &QLineEdit::textChanged, this, [this] { setNotFound(false); });
    // The first button to clear a box makes the toolkit load its readers of all kinds of pictures, so there
    // is none before there is a text. In a box of a few digits it would cover them.
    if (entry.width == 0) {
        const auto follow = [this, clear] {
            if (isClearButtonEnabled() || text().isEmpty()) return;
            setClearButtonEnabled(true);
            if (auto* button = findChild<QToolButton*>()) button->setAccessibleName(clear);
        };
        connect(this, &QLineEdit::textChanged, this,
                [this, follow] { kBarEditGuard(faults_, "textChanged", follow); });
        follow();
    }
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        kBarEditGuard(faults_, "textEdited", [&] {
            bar_.setText(id_, utf8(text));
            within_([&] { events_.editChanged(bar_.id(), id_, utf8(text)); });
        });
    });
}

/// Files are for the window, which reads them.
void BarEdit::dragEnterEvent(QDragEnterEvent* event) {
    kBarEditGuard(faults_, [&] {
        if (event->mimeData()->hasUrls()) return event->ignore();
        QLineEdit::dragEnterEvent(event);
    });
}

/// Some dark palettes have no colour for the hint, which is then dark.
void BarEdit::showHint() {
    QPalette own = palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor hint = own.color(group, QPalette::Text);
        hint.setAlphaF(0.6F);
        own.setColor(group, QPalette::PlaceholderText, hint);
    }
    setPalette(own);
}

/// The colour lies between red and the ground, so that the text can be read in any palette.
void BarEdit::setNotFound(bool notFound) {
    if (std::exchange(notFound_, notFound) == notFound) return;
    setPalette(QPalette());
    showHint();
    if (!notFound) return;
    constexpr int kRed = 220, kOther = 30;
    QPalette own = palette();
    const QColor ground = own.color(QPalette::Base);
    const auto mixed = [](int channel, int towards) { return (2 * channel + towards) / 3; };
    own.setColor(QPalette::Base,
                 {mixed(ground.red(), kRed), mixed(ground.green(), kOther), mixed(ground.blue(), kOther)});
    setPalette(own);
}

// When a menu or another window closes, the focus comes back.
void BarEdit::focusOutEvent(QFocusEvent* event) {
    kBarEditGuard(faults_, [&] {
        QLineEdit::focusOutEvent(event);
        if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) return;
        within_([&] { events_.editLeft(bar_.id(), id_); });
    });
}

void BarEdit::keyPressEvent(QKeyEvent* event) {
    kBarEditGuard(faults_, [&] {
        QLineEdit::keyPressEvent(event);
        const int key = handledKey(*event);
        if (key == 0) return;
        // Otherwise Return would reach a default button, or close the menu that contains the box.
        if (key == kKeyReturn) event->accept();
        within_([&] { events_.editKeyDown(bar_.id(), id_, key); });
    });
}

}  // namespace hl
