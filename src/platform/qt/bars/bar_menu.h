// The lists below split buttons, and the popups of a bar, as menus.
#pragma once

#include <QMenu>
#include <vector>

#include "platform/command_bar.h"
#include "platform/qt/bars/bar_edit.h"
#include "platform/qt/bars/icon_store.h"
#include "platform/window.h"

namespace hl {

/// A menu in which check boxes can be switched one after another: a click on one, or Space, leaves it open.
/// Every action carries the id of its entry as its data.
class BarMenu final : public QMenu {
  public:
    /// What the entries need. Whatever tells the logic of a choice runs inside `within`.
    struct Context {
        CommandBar& bar;
        IconStore& icons;
        WindowEvents& events;
        BarEdit::Within within;
        QString clear;  ///< See BarEdit.
    };

    BarMenu(const Context& context, const std::vector<BarEntry>& entries, QWidget* parent);

    /// Adds one entry at the end; an edit box as one that can be typed into.
    void add(const BarEntry& entry);
    /// To be called before it opens: what is typed then goes into this edit box.
    void focusWhenOpen(int id);
    /// Shows the entries as they are now. Their number is as it was.
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
