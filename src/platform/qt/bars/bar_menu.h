// The lists below split buttons, and the popups of a bar, as menus. For the window's thread.
#pragma once

#include <QMenu>
#include <vector>

#include "platform/command_bar.h"
#include "platform/qt/bars/bar_edit.h"
#include "platform/qt/bars/icon_store.h"
#include "platform/window.h"

namespace hl {

/// A menu that stays open when a check box in it is clicked, or switched with Space, so that several can be
/// switched. The data of each action is the id of its entry.
class BarMenu final : public QMenu {
  public:
    /// What the entries need. Calls that tell the logic of a choice run inside `within`.
    struct Context {
        CommandBar& bar;
        IconStore& icons;
        WindowEvents& faults;
        BarEvents& events;
        BarEdit::Within within;
        QString clear;  ///< See BarEdit.
    };

    BarMenu(const Context& context, const std::vector<BarEntry>& entries, QWidget* parent);

    /// Adds an entry at the end; an edit box can be typed into.
    void add(const BarEntry& entry);
    /// Must be called before it opens: this edit box then gets what is typed.
    void focusWhenOpen(int id);
    /// Shows the entries as they are now. Their number must not have changed.
    void sync();
    void syncEntry(const BarEntry& entry);

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool switchCheckBox(QAction* action);
    void addEdit(const BarEntry& entry);
    void addList(const BarEntry& entry);
    void show(QAction& action, const BarEntry& entry) const;

    Context context_;
    std::vector<BarMenu*> lists_;
};

}  // namespace hl
