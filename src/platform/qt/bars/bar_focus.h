// Makes a bar a single stop of the Tab key, from which the arrow keys lead to its other parts. For the
// window's thread.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

#include "platform/window.h"

namespace hl {

class BarFocus final : public QObject {
  public:
    /// `places` returns the parts in their order, also those that cannot have the focus now.
    BarFocus(std::function<std::vector<QWidget*>()> places, WindowEvents& faults)
        : places_(std::move(places)), faults_(faults) {}

    /// Must be called for each part, which may be destroyed at any time.
    void watch(QWidget& part) { part.installEventFilter(this); }
    /// Adds the part that had the focus last, or else the first that can have it. If the last one is
    /// disabled, the next one that is not follows behind it, so that the focus can be handed on to that.
    void addTabStops(std::vector<QWidget*>& stops) const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool moveFrom(QWidget* part, int key);

    std::function<std::vector<QWidget*>()> places_;
    WindowEvents& faults_;
    QPointer<QWidget> last_;
};

}  // namespace hl
