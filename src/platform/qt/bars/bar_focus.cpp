#include "platform/qt/bars/bar_focus.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>

#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr QtGuard kBarFocusGuard{"BarFocus"};

bool takesFocus(const QWidget* widget) {
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0;
}

/// Tells whether the key has work to do in the text of a box.
bool movesCursor(const QWidget* box, int key) {
    const auto* edit = dynamic_cast<const QLineEdit*>(box);
    if (const auto* combo = dynamic_cast<const QComboBox*>(box)) edit = combo->lineEdit();
    if (edit == nullptr) return false;
    if (key == Qt::Key_Home || key == Qt::Key_End || edit->hasSelectedText()) return true;
    return edit->cursorPosition() != (key == Qt::Key_Left ? 0 : edit->text().size());
}

}  // namespace

void BarFocus::addTabStops(std::vector<QWidget*>& stops) const {
    std::vector<QWidget*> all = places_();
    const auto last = std::find(all.begin(), all.end(), last_.data());
    if (last != all.end()) {
        stops.push_back(*last);
        if (takesFocus(*last)) return;
        std::rotate(all.begin(), last, all.end());
    }
    const auto usable = std::find_if(all.begin(), all.end(), takesFocus);
    if (usable != all.end()) stops.push_back(*usable);
}

bool BarFocus::eventFilter(QObject* watched, QEvent* event) {
    return kBarFocusGuard(faults_, [&] {
        auto* part = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::FocusIn) last_ = part;
        if (event->type() != QEvent::KeyPress) return false;
        const auto& pressed = static_cast<const QKeyEvent&>(*event);
        const bool plain = (pressed.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
        return plain && moveFrom(part, pressed.key());
    });
}

// Left and Right lead around the bar, Home and End to its first and its last part.
bool BarFocus::moveFrom(QWidget* part, int key) {
    const bool back = key == Qt::Key_Left || key == Qt::Key_End;
    if (!back && key != Qt::Key_Right && key != Qt::Key_Home) return false;
    if (movesCursor(part, key)) return false;
    std::vector<QWidget*> all = places_();
    if (back) std::reverse(all.begin(), all.end());
    if (key == Qt::Key_Left || key == Qt::Key_Right) {
        const auto at = std::find(all.begin(), all.end(), part);
        if (at != all.end()) std::rotate(all.begin(), at + 1, all.end());
    }
    const auto next = std::find_if(all.begin(), all.end(), takesFocus);
    if (next != all.end()) (*next)->setFocus(back ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    return true;
}

}  // namespace hl
