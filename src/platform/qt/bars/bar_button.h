// A button of a bar. For the window's thread.
#pragma once

#include <QToolButton>

#include "platform/window.h"

namespace hl {

/// Opens its list with the Down key, too, as a combo box does, and shows in any palette that it is checked.
class BarButton final : public QToolButton {
  public:
    BarButton(WindowEvents& events, QWidget* parent);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintMark();

    WindowEvents& events_;
};

}  // namespace hl
