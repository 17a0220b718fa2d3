// Shows a CommandBar in the window. For the window's thread.
#pragma once

#include <QToolButton>
#include <functional>
#include <vector>

#include "platform/command_bar.h"
#include "platform/qt/bars/bar_flow.h"
#include "platform/qt/bars/bar_focus.h"
#include "platform/qt/bars/bar_menu.h"
#include "platform/window.h"

namespace hl {

/// Paints the entries of a bar and handles clicks, but stores nothing: a click is reported, and its effects
/// come back through the bar. So the command of a check box switches it.
///
/// Entries that are added one after another are built together, before the bar is next measured or shown.
class ToolBar final : public QWidget, public BarPane, private BarObserver {
  public:
    /// `bar`, `faults` and `events` must outlive it; `faults` hears of errors. `custom` is shown in the place
    /// of the entry of kind kCustom and becomes the bar's child; null for none.
    ToolBar(CommandBar& bar, IconStore& icons, WindowEvents& faults, BarEvents& events,
            QWidget* custom = nullptr);
    ~ToolBar() override;

    /// Presses an entry, wherever it is; nothing happens if it is disabled, hidden or unknown.
    void press(int id);
    // --- BarPane
    int wrappedHeight() override { return heightForWidth(width()); }
    void focusEdit(int id) override;
    void markEdit(int id, bool notFound) override;
    void showPopup(int id, Point at) override;

    /// Sets the names, for assistive tools, of the button that shows the entries that do not fit, and of
    /// those that empty edit boxes. Must be called before anything is built.
    void setNames(const QString& more, const QString& clear);
    /// Builds the bar anew, with the icons of a new palette.
    void rebuild();

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// Adds the one part that the Tab key may stop at: that which had the focus last. The arrow keys lead
    /// from there to the others.
    void addTabStops(std::vector<QWidget*>& stops) const { focus_.addTabStops(stops); }

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    struct Part {
        QWidget* widget = nullptr;
        BarMenu* menu = nullptr;  ///< The menu of a split button.
        int id = 0;
        bool visible = true;
    };

    void entryChanged(const CommandBar& bar, const BarEntry& entry) override;
    void barChanged(const CommandBar& bar) override;

    void build();
    void dropParts();
    QWidget* make(const BarEntry& entry, Part& part);
    QWidget* makeButton(const BarEntry& entry, Part& part);
    QWidget* makeCheckBox(const BarEntry& entry);
    void sync(Part& part, const BarEntry& entry);
    void syncButton(QToolButton& button, const BarEntry& entry);
    void addPlace(const BarEntry& entry, const Part& part, std::vector<FlowItem>& items) const;
    Flow flow(int width, std::vector<std::size_t>* shown = nullptr) const;
    void arrange();
    void setBehindExtension(std::vector<std::size_t> parts);
    BarMenu::Context menuContext();
    void within(const std::function<void()>& telling);
    void run(int id);
    void focusEditBehind(int id);
    std::vector<QWidget*> placesOfFocus() const;
    void drop(QObject* old);

    CommandBar& bar_;
    IconStore& icons_;
    WindowEvents& faults_;
    BarEvents& events_;
    QWidget* custom_;
    QToolButton* extension_;
    BarFocus focus_;
    QString clear_;
    std::vector<Part> parts_;
    std::vector<QRect> separators_;
    std::vector<std::size_t> behindExtension_;  ///< The indexes of the parts behind the extension button.
    std::vector<QObject*> parked_;              ///< Replaced objects that may still be handling a click.
    int running_ = 0;
    int height_ = 0;
    int largerBy_ = 0;
    bool dirty_ = true;
    BarMenu* popup_ = nullptr;  ///< The menu that was opened last; a child of the bar.
};

}  // namespace hl
