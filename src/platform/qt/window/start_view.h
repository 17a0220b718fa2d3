// Shows the start page. For the window's thread.
#pragma once

#include <QScrollArea>
#include <vector>

#include "platform/qt/bars/icon_store.h"
#include "platform/start_page.h"
#include "platform/window.h"

class QLabel;
class QVBoxLayout;

namespace hl {

class StartButton;

/// A column of buttons that scrolls where there is little room. It stores nothing but the page: a press is
/// told, with the button's tag.
class StartView final : public QScrollArea {
  public:
    /// All arguments must outlive it. The page has the font of `report`.
    StartView(IconStore& icons, WindowEvents& faults, SourceEvents& events, QWidget& report);

    /// Shows the page, or hides itself if the page has no groups. A button that stays keeps the keyboard.
    void setPage(const StartPage& page);
    /// Adds the buttons, which the Tab key stops at.
    void addTabStops(std::vector<QWidget*>& stops) const;
    /// Gives the keyboard to the first button.
    void focusFirst();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void build();
    void showFont();
    void addGroup(const StartGroup& group, QVBoxLayout& rows);
    QLabel* addLabel(const std::string& text, QVBoxLayout& rows);
    std::vector<const StartEntry*> entries() const;

    IconStore& icons_;
    WindowEvents& faults_;
    SourceEvents& events_;
    QWidget& report_;
    QLabel* title_ = nullptr;
    StartPage page_;
    std::vector<StartButton*> buttons_;  ///< In the order of the page's entries.
};

}  // namespace hl
