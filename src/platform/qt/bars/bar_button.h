// A button of a bar.
#pragma once

#include <QToolButton>

#include "platform/window.h"

namespace hl {

/// Opens its list also with the Down key, as a combo box does, and shows that it is checked in any palette.
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
