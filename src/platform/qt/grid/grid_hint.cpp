#include "platform/qt/grid/grid_hint.h"

#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "platform/qt/common/qt_guard.h"
#include "platform/qt/grid/grid_view.h"

namespace hl {

namespace {

constexpr QtGuard kGridHintGuard{"GridHint"};
constexpr int kMargin = 12;

}  // namespace

void GridHint::paint(QPainter& painter) {
    if (!text) return;
    painter.setPen(view_.palette().color(QPalette::PlaceholderText));
    QRect taken;
    painter.drawText(view_.viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text(), &taken);
    textEnd_ = taken.bottom();
    followLater();
}

void GridHint::rowsPainted() {
    if (button_ != nullptr && button_->isVisible()) followLater();
}

QWidget* GridHint::button() const {
    return button_;
}

// A widget must not be shown, moved or hidden while another one paints.
void GridHint::followLater() {
    if (std::exchange(waits_, true)) return;
    QTimer::singleShot(0, &context_, [this] {
        kGridHintGuard(view_.events(), "follow", [this] {
            waits_ = false;
            follow();
        });
    });
}

void GridHint::follow() {
    const bool empty = view_.grid().firstRoot() == kNoRow;
    const QString caption = empty && buttonCaption ? buttonCaption() : QString();
    if (caption.isEmpty()) {
        if (button_ != nullptr) button_->hide();
        return;
    }
    if (button_ == nullptr) makeButton();
    button_->setText(caption);
    const QSize size = button_->sizeHint();
    const int left = std::max(0, (view_.viewport()->width() - size.width()) / 2);
    button_->setGeometry({QPoint(left, textEnd_ + kMargin), size});
    button_->show();
}

void GridHint::makeButton() {
    button_ = new QPushButton(view_.viewport());
    button_->setObjectName(view_.objectName() + QStringLiteral(".fill"));
    button_->setCursor(Qt::ArrowCursor);
    QObject::connect(button_, &QPushButton::clicked, &context_, [this] {
        kGridHintGuard(view_.events(), "clicked", [this] {
            if (view_.takesInput()) view_.listener().emptyButtonPressed();
        });
    });
}

}  // namespace hl
