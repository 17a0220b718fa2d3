// The title of a bar.
#pragma once

#include <QLabel>

#include "platform/window.h"

namespace hl {

/// Bold. What has no room ends in an ellipsis, and is told whole when it is pointed at.
class BarLabel final : public QLabel {
  public:
    /// `events` outlives it.
    BarLabel(const QString& text, WindowEvents& events, QWidget* parent);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString shown() const;

    WindowEvents& events_;
};

}  // namespace hl
