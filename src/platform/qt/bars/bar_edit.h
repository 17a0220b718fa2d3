// An edit box of a bar. For the window's thread.
#pragma once

#include <QLineEdit>
#include <functional>

#include "platform/command_bar.h"
#include "platform/window.h"

namespace hl {

/// Text that is typed is stored in the entry first and reported then.
class BarEdit final : public QLineEdit {
  public:
    /// Runs what tells the logic; that may take long, and the bar may be built anew meanwhile.
    using Within = std::function<void(const std::function<void()>&)>;

    /// `bar`, `faults` and `events` must outlive it; `entry` need not. `faults` hears of errors. `clear`
    /// names the button that empties it, for assistive tools.
    BarEdit(CommandBar& bar, const BarEntry& entry, WindowEvents& faults, BarEvents& events, Within within,
            const QString& clear, QWidget* parent);

    int id() const { return id_; }
    /// Marks the text as one that was not found, until it changes.
    void setNotFound(bool notFound);

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showHint();

    CommandBar& bar_;
    WindowEvents& faults_;
    BarEvents& events_;
    Within within_;
    int id_;
    bool notFound_ = false;
};

}  // namespace hl
