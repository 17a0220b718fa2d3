#include "platform/qt/window/splitter_widget.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "platform/qt/common/qt_guard.h"

namespace hl {

constexpr QtGuard kHandleGuard{"Handle"};
constexpr QtGuard kSplitterWidgetGuard{"SplitterWidget"};

/// The bar between the panes. If it can be dragged, it has at least kGrip pixels for the pointer, which
/// extend over the panes.
class SplitterWidget::Handle final : public QWidget {
  public:
    Handle(cSplitter& splitter, WindowEvents& events, QWidget* parent)
        : QWidget(parent), splitter_(splitter), events_(events) {}

    void place(const cSplitter::Span& span, const QSize& container) {
        const bool draggable = splitter_.ShowGripper();
        const int size = draggable ? std::max(span.size, kGrip) : span.size;
        const int start = span.start - (size - span.size) / 2;
        setCursor(!draggable ? Qt::ArrowCursor : sideBySide() ? Qt::SplitHCursor : Qt::SplitVCursor);
        setGeometry(sideBySide() ? QRect(start, 0, size, container.height())
                                 : QRect(0, start, container.width(), size));
        setVisible(span.visible);
        raise();
        update();
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        kHandleGuard(events_, [&] {
            if (event->button() == Qt::LeftButton && splitter_.ShowGripper()) splitter_.MouseDown(at(*event));
        });
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        kHandleGuard(events_, [&] {
            if (splitter_.dragging()) splitter_.MouseMove(at(*event));
        });
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        kHandleGuard(events_, [&] {
            if (splitter_.dragging()) splitter_.MouseUp(at(*event));
        });
    }
    void enterEvent(QEnterEvent*) override { hover(true); }
    void leaveEvent(QEvent*) override { hover(false); }

    void paintEvent(QPaintEvent*) override {
        kHandleGuard(events_, [this] {
            if (!splitter_.ShowGripper()) return;
            QPainter painter(this);
            QColor ink = palette().color(hovered_ ? QPalette::Highlight : QPalette::WindowText);
            ink.setAlphaF(hovered_ ? 0.6F : 0.35F);
            if (hovered_) painter.fillRect(middle(rect().size()), ink);
            paintGripper(painter, ink);
        });
    }

  private:
    static constexpr int kGrip = 5;
    static constexpr int kDots = 5, kDotDistance = 5;

    bool sideBySide() const { return splitter_.orientation() == Orientation::kSideBySide; }

    int at(const QMouseEvent& event) const {
        const QPoint point = mapToParent(event.position().toPoint());
        return sideBySide() ? point.x() : point.y();
    }
    void hover(bool on) {
        hovered_ = on && splitter_.ShowGripper();
        update();
    }
    /// Returns a line of one pixel along the bar.
    QRect middle(const QSize& size) const {
        return sideBySide() ? QRect(size.width() / 2, 0, 1, size.height())
                            : QRect(0, size.height() / 2, size.width(), 1);
    }
    void paintGripper(QPainter& painter, const QColor& ink) const {
        const QPoint center = rect().center();
        for (int i = 0; i < kDots; ++i) {
            const int offset = (i - kDots / 2) * kDotDistance;
            const QPoint dot = sideBySide() ? QPoint(center.x(), center.y() + offset)
                                            : QPoint(center.x() + offset, center.y());
            painter.fillRect(QRect(dot - QPoint(1, 1), QSize(2, 2)), ink);
        }
    }

    cSplitter& splitter_;
    WindowEvents& events_;
    bool hovered_ = false;
};

SplitterWidget::SplitterWidget(cSplitter& splitter, PaneFactory factory, WindowEvents& events)
    : splitter_(splitter),
      factory_(std::move(factory)),
      events_(events),
      handle_(new Handle(splitter, events, this)) {
    handle_->hide();
    splitter_.changed = [this] { kSplitterWidgetGuard(events_, "follow", [this] { follow(); }); };
}

SplitterWidget::~SplitterWidget() {
    splitter_.changed = nullptr;
}

int SplitterWidget::along(const QSize& size) const {
    return splitter_.orientation() == Orientation::kSideBySide ? size.width() : size.height();
}

void SplitterWidget::follow() {
    const int total = along(size());
    // It was turned by 90 degrees: the other size counts now, and setTotal leads back here.
    if (splitter_.total() != total && splitter_.total() > 0 && isVisible()) splitter_.setTotal(total);
    bind(panes_[0], splitter_.Control1());
    bind(panes_[1], splitter_.Control2());
    // Placing the first pane may wrap a bar in it, which moves the rest; so the layout is asked for again.
    place(panes_[0], splitter_.layout().first);
    place(panes_[1], splitter_.layout().second);
    handle_->place(splitter_.layout().bar, size());
}

void SplitterWidget::bind(QWidget*& pane, const PaneRef& ref) {
    QWidget* wanted = factory_(ref);
    QWidget* old = std::exchange(pane, wanted);
    const bool leaves = old != nullptr && old != panes_[0] && old != panes_[1] && old->parentWidget() == this;
    if (leaves) old->hide();
    if (wanted != nullptr && wanted->parentWidget() != this) wanted->setParent(this);
}

void SplitterWidget::place(QWidget* pane, const cSplitter::Span& span) {
    if (pane == nullptr || pane->parentWidget() != this) return;
    const bool sideBySide = splitter_.orientation() == Orientation::kSideBySide;
    const bool visible = span.visible && span.size > 0;
    if (visible)
        pane->setGeometry(sideBySide ? QRect(span.start, 0, span.size, height())
                                     : QRect(0, span.start, width(), span.size));
    if (pane->isVisibleTo(this) != visible) pane->setVisible(visible);
}

void SplitterWidget::resizeEvent(QResizeEvent*) {
    kSplitterWidgetGuard(events_, [this] {
        splitter_.setTotal(along(size()));
        // The size along the axis may be unchanged, but the panes follow the other one.
        follow();
    });
}

}  // namespace hl
