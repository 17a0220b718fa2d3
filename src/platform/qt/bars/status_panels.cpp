#include "platform/qt/bars/status_panels.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kPanelGuard{"Panel"};

/// A label for texts that change many times a second: a new text repaints it, and changes no layout unless it
/// is longer than the panel.
class StatusPanelBar::Panel final : public QWidget {
  public:
    Panel(WindowEvents& events, const char* name) : events_(events) {
        setObjectName(QLatin1String(name));
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    void setText(const QString& text) {
        if (text == text_) return;
        text_ = text;
        setAccessibleName(text);
        setToolTip(text);
        update();
    }
    /// Returns the width that shows the whole text.
    int wholeWidth() const { return fontMetrics().horizontalAdvance(text_) + 2 * kMargin + 1; }
    QSize sizeHint() const override { return {0, fontMetrics().height() + 4}; }
    QSize minimumSizeHint() const override { return {0, fontMetrics().height() + 4}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        kPanelGuard(events_, [this] {
            QPainter painter(this);
            const QRect room = rect().adjusted(kMargin, 0, -kMargin, 0);
            const QString shown = fontMetrics().elidedText(text_, Qt::ElideMiddle, room.width());
            painter.drawText(room, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine,
                             shown);
        });
    }

  private:
    static constexpr int kMargin = 4;

    WindowEvents& events_;
    QString text_;
};

StatusPanelBar::StatusPanelBar(WindowEvents& events, BarEvents& barEvents)
    : events_(events),
      barEvents_(barEvents),
      first_(new Panel(events, "panel1")),
      second_(new Panel(events, "panel2")) {
    setObjectName(QStringLiteral("StatusBar"));
    addWidget(first_, 1);
    addWidget(second_, 1);
}

void StatusPanelBar::setPanels(const StatusPanels& panels) {
    if (std::exchange(largerBy_, panels.largerBy) != panels.largerBy) setFont(desktopFont(largerBy_));
    first_->setText(shownName(panels.first));
    second_->setText(shownName(panels.second));
    second_->setVisible(panels.secondVisible);
    setButtons(panels.buttons);
    shareWidth(panels);
}

// The second panel stands where the second pane does, unless the first needs what the second leaves. Widths
// are limits: the bar must not widen the window.
void StatusPanelBar::shareWidth(const StatusPanels& panels) {
    const bool takesAll = panels.firstTakesAll || !panels.secondVisible;
    const bool needsMore = !takesAll && first_->wholeWidth() > panels.firstWidth;
    first_->setMaximumWidth(takesAll || needsMore ? QWIDGETSIZE_MAX : std::max(0, panels.firstWidth));
    second_->setMaximumWidth(needsMore ? second_->wholeWidth() : QWIDGETSIZE_MAX);
}

// A button that is added or shown may make the window wider, and its panes then set the panels again, while
// this still runs. So a button is known before it is laid out, and nothing is held across that.
void StatusPanelBar::setButtons(const std::vector<StatusButton>& buttons) {
    for (const StatusButton& each : buttons) {
        if (!buttons_.contains(each.id)) addButton(each);
        buttons_.at(each.id)->setText(qtText(each.caption));
    }
    for (const auto& [id, button] : buttons_)
        button->setVisible(std::ranges::find(buttons, id, &StatusButton::id) != buttons.end());
}

void StatusPanelBar::addButton(const StatusButton& added) {
    auto* button = new QPushButton(this);
    button->setObjectName(QStringLiteral("status.%1").arg(added.id));
    button->hide();  // Otherwise the layout shows it before it has its text.
    connect(button, &QPushButton::clicked, this, [this, id = added.id] {
        kPanelGuard(events_, [this, id] { barEvents_.execute(BarId::kMain, id); });
    });
    buttons_.emplace(added.id, button);
    if (added.ofFirst)
        insertWidget(1, button);
    else
        addWidget(button);
}

}  // namespace hl
