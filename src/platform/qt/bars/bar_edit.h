// An edit box of a bar.
#pragma once

#include <QLineEdit>
#include <functional>

#include "platform/command_bar.h"
#include "platform/window.h"

namespace hl {

/// What is typed goes into the entry first and is told then.
class BarEdit final : public QLineEdit {
  public:
    /// Runs what tells the logic, which may take long and build the bar anew meanwhile.
    using Within = std::function<void(const std::function<void()>&)>;

    /// `bar` outlives it. `entry` need not. `clear` names the button that empties it, for assistive tools.
    BarEdit(CommandBar& bar, const BarEntry& entry, WindowEvents& events, Within within, const QString& clear,
            QWidget* parent);

  protected:
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showHint();

    CommandBar& bar_;
    WindowEvents& events_;
    Within within_;
    int id_;
};

}  // namespace hl
