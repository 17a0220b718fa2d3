// A button of the start page: a picture, a caption, a note, and the fill bar of a drive. For the window's
// thread.
#pragma once

#include <QPushButton>

#include "platform/start_page.h"
#include "platform/window.h"

namespace hl {

class StartButton final : public QPushButton {
  public:
    StartButton(const QIcon& icon, WindowEvents& faults) : QPushButton(icon, QString()), faults_(faults) {
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    /// Takes over what an entry shows. The whole texts are in the tooltip and told to assistive tools.
    void show(const StartEntry& entry);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    int linesHeight() const;
    void paintContents();
    QFont noteFont(int room) const;
    void paintFill(QPainter& painter, const QRect& bar) const;

    WindowEvents& faults_;
    QString caption_, note_;
    int percent_ = -1;
};

}  // namespace hl
