#include "platform/qt/window/frame.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/window/dropped_places.h"

namespace hl {

constexpr QtGuard kFrameGuard{"Frame"};

void Frame::queue(const char* where, std::function<void()> what) {
    QMetaObject::invokeMethod(
        this, [this, where, what = std::move(what)] { kFrameGuard(events_, where, what); },
        Qt::QueuedConnection);
}

bool Frame::event(QEvent* event) {
    return kFrameGuard(events_, [&] {
        // A run may begin then, so it is not called from here. Not every window becomes active: a window
        // manager may keep the focus elsewhere, or there may be none.
        const bool seen = event->type() == QEvent::Paint || event->type() == QEvent::WindowActivate;
        if (seen && !std::exchange(seen_, true))
            queue("formActivate", [this] {
                if (!unloaded_) events_.formActivate();
            });
        if (event->type() == QEvent::WindowDeactivate) escapePressed_ = false;
        return QMainWindow::event(event);
    });
}

bool Frame::focusNextPrevChild(bool next) {
    return kFrameGuard(events_, [&] {
        if (!tabStops) return QMainWindow::focusNextPrevChild(next);
        std::vector<QWidget*> stops = tabStops();
        if (!next) std::reverse(stops.begin(), stops.end());
        const QWidget* now = focusWidget();
        const auto holds = [now](const QWidget* stop) {
            return stop == now || (now != nullptr && stop->isAncestorOf(now));
        };
        const auto at = std::find_if(stops.begin(), stops.end(), holds);
        if (at != stops.end()) std::rotate(stops.begin(), at + 1, stops.end());
        for (QWidget* stop : stops) {
            if (!stop->isVisible() || !stop->isEnabled() || (stop->focusPolicy() & Qt::TabFocus) == 0)
                continue;
            stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
        return false;
    });
}

void Frame::changeEvent(QEvent* event) {
    kFrameGuard(events_, [&] {
        QMainWindow::changeEvent(event);
        const auto type = event->type();
        if ((type == QEvent::PaletteChange || type == QEvent::StyleChange) && looksChanged)
            queue("looksChanged", looksChanged);
    });
}

void Frame::closeEvent(QCloseEvent* event) {
    kFrameGuard(events_, [&] {
        event->ignore();
        if (!unloaded_ && !events_.formQueryUnload()) return;
        if (!std::exchange(unloaded_, true)) events_.formUnload();
        event->accept();
        QCoreApplication::quit();
    });
}

void Frame::resizeEvent(QResizeEvent* event) {
    kFrameGuard(events_, [&] {
        QMainWindow::resizeEvent(event);
        events_.formResize();
    });
}

void Frame::dragEnterEvent(QDragEnterEvent* event) {
    kFrameGuard(events_, [&] { acceptPlaces(*event); });
}

void Frame::dragMoveEvent(QDragMoveEvent* event) {
    kFrameGuard(events_, [&] { acceptPlaces(*event); });
}

/// The other program waits for the end of this, and what is dropped may take long to read.
void Frame::dropEvent(QDropEvent* event) {
    kFrameGuard(events_, [&] {
        if (!acceptPlaces(*event)) return;
        queue("dropped", [this, places = placesOf(*event->mimeData())] {
            if (dropped && !unloaded_) dropped(places);
        });
    });
}

void Frame::keyPressEvent(QKeyEvent* event) {
    kFrameGuard(events_, [&] {
        const int key = virtualKey(*event);
        const auto keys = event->modifiers() & ~Qt::KeypadModifier;
        if (key == kKeyEscape && !event->isAutoRepeat()) escapePressed_ = true;
        // A key that is held would carry a command out again and again.
        const bool shift = keys == (Qt::ControlModifier | Qt::ShiftModifier);
        const bool control = keys == Qt::ControlModifier || shift;
        const bool plain = (keys == Qt::NoModifier || control) && !event->isAutoRepeat();
        const bool pressed = plain && key != 0 && pressAccelerator &&
                             pressAccelerator(shift ? key | kKeyWithShift : key, control);
        if (!pressed) QMainWindow::keyPressEvent(event);
    });
}

/// A key that closed a menu or another window is released here, but was never pressed here; if it is held
/// down, it first repeats here.
void Frame::keyReleaseEvent(QKeyEvent* event) {
    kFrameGuard(events_, [&] {
        QMainWindow::keyReleaseEvent(event);
        if (event->isAutoRepeat() || virtualKey(*event) != kKeyEscape) return;
        if (std::exchange(escapePressed_, false)) events_.formKeyUp(kKeyEscape);
    });
}

}  // namespace hl
