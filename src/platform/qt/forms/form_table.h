// Shows a form's TableBox. For the window's thread.
#pragma once

#include <QTableWidget>
#include <functional>

#include "platform/form.h"
#include "platform/window.h"

namespace hl {

/// Copy (Ctrl+C) takes the selected lines, with a tab between two cells. It is as large as its lines, within
/// limits.
class FormTable final : public QTableWidget {
  public:
    /// `activated` is called with the index of a line that leads somewhere, when the user activates it.
    FormTable(WindowEvents& events, std::function<void(int)> activated, QWidget* parent);
    /// Shows the table as it is now; what did not change is not touched.
    void show(const TableBox& table);

    QSize sizeHint() const override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showLine(int row, const TableBox::Line& line);
    void activate(int row);
    void copySelection() const;

    WindowEvents& events_;
    std::function<void(int)> activated_;
};

}  // namespace hl
