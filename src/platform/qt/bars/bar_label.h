// The title of a bar. For the window's thread.
#pragma once

#include <QLabel>

#include "platform/window.h"

namespace hl {

/// A bold text. If it does not fit, it is cut in the middle with an ellipsis, and a tooltip shows all of it.
class BarLabel final : public QLabel {
  public:
    /// `events` must outlive it.
    BarLabel(const QString& text, WindowEvents& events, QWidget* parent);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString shown() const;

    WindowEvents& events_;
};

}  // namespace hl
