#include "platform/qt/map/map_area.h"

#include <QAccessible>
#include <QBuffer>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>
#include <optional>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/map/map_accessible.h"

namespace hl {

namespace {

constexpr QtGuard kMapAreaGuard{"MapArea"};
constexpr int kMargin = 3, kFrameWidth = 2, kLeastHeight = 40;
// A map has a line of legend for each so many lines of its height, two at most. The legend's square is a part
// of a line.
constexpr int kLinesForLegend = 8, kMostLegendLines = 2;
constexpr qreal kLegendSquare = 0.65;
constexpr int kMiddleGrey = 128;

std::optional<MapStep> stepOf(int key) {
    switch (key) {
        case Qt::Key_Left:
            return MapStep::kLeft;
        case Qt::Key_Right:
            return MapStep::kRight;
        case Qt::Key_Up:
            return MapStep::kUp;
        case Qt::Key_Down:
            return MapStep::kDown;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return MapStep::kInto;
        case Qt::Key_Backspace:
            return MapStep::kOutOf;
        default:
            return std::nullopt;
    }
}

MouseButton buttonOf(Qt::MouseButton button) {
    if (button == Qt::RightButton) return MouseButton::kRight;
    return button == Qt::MiddleButton ? MouseButton::kMiddle : MouseButton::kLeft;
}

}  // namespace

MapArea::MapArea(WindowEvents& faults, QWidget* parent) : QWidget(parent), faults_(faults) {
    setObjectName(QStringLiteral("map"));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(kLeastHeight);
    installMapAccessible();
}

// --- MapPane

void MapArea::setEvents(MapEvents* events) {
    events_ = events;
    refresh();
}

void MapArea::refresh() {
    pixelsStale_ = true;
    refreshOverlay();
}

void MapArea::refreshOverlay() {
    overlayStale_ = true;
    update();
}

Point MapArea::onScreen(Point at) {
    const QPoint place = mapToGlobal(QPointF(at.x, at.y) / devicePixelRatioF()).toPoint();
    return {place.x(), place.y()};
}

// --- painting

MapLooks MapArea::looks() const {
    const int height = qRound(fontMetrics().height() * devicePixelRatioF());
    return {.lineHeight = height, .isDark = palette().color(QPalette::Base).lightness() < kMiddleGrey};
}

Point MapArea::pixelAt(QPointF at) const {
    const QPointF pixel = at * devicePixelRatioF();
    return {static_cast<int>(pixel.x()), static_cast<int>(pixel.y())};
}

int MapArea::legendHeight() const {
    const int line = fontMetrics().height() + kMargin;
    return std::min(height() / (kLinesForLegend * line), kMostLegendLines) * line;
}

QRectF MapArea::placeOnWidget(const Rect& pixels) const {
    const qreal scale = devicePixelRatioF();
    return {pixels.left / scale, pixels.top / scale, pixels.width / scale, pixels.height / scale};
}

void MapArea::bringUpToDate() {
    const QSizeF room(width(), height() - legendHeight());
    const QSize size = (room * devicePixelRatioF()).toSize();
    if (pixels_.size() != size) {
        pixels_ = QImage(size, QImage::Format_RGB32);
        pixelsStale_ = true;
    }
    pixels_.setDevicePixelRatio(devicePixelRatioF());
    if (events_ == nullptr || pixels_.isNull()) return;
    if (std::exchange(pixelsStale_, false)) {
        overlayStale_ = true;
        events_->paint({.first = reinterpret_cast<std::uint32_t*>(pixels_.bits()),
                        .rowLength = static_cast<std::size_t>(pixels_.bytesPerLine()) / sizeof(std::uint32_t),
                        .width = pixels_.width(),
                        .height = pixels_.height()},
                       looks());
        accessibleTilesChanged(*this);
    }
    if (!std::exchange(overlayStale_, false)) return;
    overlay_ = events_->overlay();
    // Assistive tools are told of a change by Qt.
    setAccessibleDescription(qtText(events_->spoken()));
    accessibleSelectionChanged(*this);
}

// A rim keeps a name readable on every colour, and a dark plate that of a folder, which lies on many.
void MapArea::paintName(QPainter& painter, const MapName& name) const {
    QRectF place = placeOnWidget(name.place).adjusted(kMargin, 0, -kMargin, 0);
    const QString text = painter.fontMetrics().elidedText(shownName(name.text), Qt::ElideMiddle,
                                                          static_cast<int>(place.width()));
    const Qt::Alignment where =
        name.isHeading ? Qt::AlignLeft | Qt::AlignTop : Qt::Alignment(Qt::AlignCenter);
    const QColor dark(0, 0, 0), light(255, 255, 255);
    const bool darkText = name.onLight && !name.isHeading;
    if (name.isHeading) {
        const int width = painter.fontMetrics().horizontalAdvance(text) + 2 * kMargin;
        painter.fillRect(QRectF(place.left() - kMargin, place.top(), width, place.height()),
                         QColor(0, 0, 0, 170));
    } else {
        painter.setPen(darkText ? QColor(255, 255, 255, 120) : QColor(0, 0, 0, 120));
        for (const QPointF& aside : {QPointF(1, 1), QPointF(-1, -1), QPointF(1, -1), QPointF(-1, 1)})
            painter.drawText(place.translated(aside), static_cast<int>(where), text);
    }
    painter.setPen(darkText ? dark : light);
    painter.drawText(place, static_cast<int>(where), text);
}

void MapArea::paintMapAndNames(QPainter& painter) const {
    painter.drawImage(0, 0, pixels_);
    QFont bold = font();
    bold.setBold(true);
    for (const MapName& name : overlay_.names) {
        painter.setFont(name.isHeading ? bold : font());
        paintName(painter, name);
    }
    painter.setFont(font());
    paintLegend(painter);
}

// Shows as many colours as there is room for.
void MapArea::paintLegend(QPainter& painter) const {
    const int line = fontMetrics().height() + kMargin;
    QRectF row(0, height() - legendHeight(), width(), line);
    if (row.top() >= height()) return;
    painter.fillRect(QRectF(0, row.top(), width(), legendHeight()), palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::WindowText));
    const qreal square = line * kLegendSquare;
    qreal x = kMargin;
    for (const MapLegend& entry : overlay_.legend) {
        const QString text = shownName(entry.text);
        const qreal width = painter.fontMetrics().horizontalAdvance(text);
        if (x + square + 2 * kMargin + width > row.right()) {
            row.translate(0, line);
            x = kMargin;
        }
        if (row.bottom() > height() || x + square + 2 * kMargin + width > row.right()) return;
        painter.fillRect(QRectF(x, row.top() + (line - square) / 2, square, square),
                         QColor::fromRgb(entry.colour));
        x += square + kMargin;
        painter.drawText(QRectF(x, row.top(), width + 1, line), Qt::AlignLeft | Qt::AlignVCenter, text);
        x += width + 4 * kMargin;
    }
}

std::string MapArea::png() {
    bringUpToDate();
    if (pixels_.isNull() || itemCount() == 0) return {};
    QImage picture((QSizeF(size()) * devicePixelRatioF()).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(palette().color(QPalette::Window));
    {
        QPainter painter(&picture);
        painter.setFont(font());
        paintMapAndNames(painter);
    }
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    picture.save(&file, "PNG");
    return file.data().toStdString();
}

void MapArea::paintFrames(QPainter& painter) const {
    const auto frame = [&](const QRectF& around, const QColor& color) {
        constexpr qreal kHalf = kFrameWidth / 2.0;
        painter.setPen(QPen(color, kFrameWidth));
        painter.drawRect(around.adjusted(kHalf, kHalf, -kHalf, -kHalf));
    };
    if (overlay_.frame.width > 0) {
        const QRectF place = placeOnWidget(overlay_.frame);
        frame(place.adjusted(-kFrameWidth, -kFrameWidth, kFrameWidth, kFrameWidth), Qt::black);
        frame(place, Qt::white);
    }
    if (hasFocus()) frame(rect(), palette().color(QPalette::Highlight));
}

void MapArea::paintEvent(QPaintEvent*) {
    kMapAreaGuard(faults_, [&] {
        bringUpToDate();
        QPainter painter(this);
        if (pixels_.isNull() || events_ == nullptr || !overlay_.hint.empty()) {
            painter.fillRect(rect(), palette().color(QPalette::Base));
            painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
            painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, qtText(overlay_.hint));
        } else {
            paintMapAndNames(painter);
        }
        paintFrames(painter);
    });
}

// --- for assistive tools

std::size_t MapArea::itemCount() const {
    return events_ != nullptr ? events_->itemCount() : 0;
}

MapItem MapArea::item(std::size_t number) const {
    return events_ != nullptr ? events_->item(number) : MapItem();
}

std::size_t MapArea::itemAt(QPointF at) const {
    return events_ != nullptr ? events_->itemAt(pixelAt(at)) : 0;
}

std::size_t MapArea::selectedItem() const {
    return events_ != nullptr ? events_->selectedItem() : 0;
}

void MapArea::selectItem(std::size_t number) {
    if (events_ != nullptr) events_->selectItem(number);
}

// --- what the user does

bool MapArea::event(QEvent* event) {
    return kMapAreaGuard(faults_, [&] {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
        if (event->type() != QEvent::ToolTip || events_ == nullptr) return QWidget::event(event);
        const auto* help = static_cast<const QHelpEvent*>(event);
        const std::string tip = events_->tip(pixelAt(help->pos()));
        if (tip.empty()) {
            QToolTip::hideText();
        } else {
            // As plain text: a name may look like markup.
            const QString text =
                qtText(tip).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
            QToolTip::showText(help->globalPos(),
                               QStringLiteral("<p style='white-space:pre'>%1</p>").arg(text), this);
        }
        return true;
    });
}

void MapArea::changeEvent(QEvent* event) {
    kMapAreaGuard(faults_, [&] {
        QWidget::changeEvent(event);
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) refresh();
    });
}

void MapArea::mousePressEvent(QMouseEvent* event) {
    kMapAreaGuard(faults_, [&] {
        const QPoint onScreen = event->globalPosition().toPoint();
        if (events_ != nullptr)
            events_->pressed(pixelAt(event->position()), buttonOf(event->button()),
                             {onScreen.x(), onScreen.y()});
    });
}

void MapArea::mouseDoubleClickEvent(QMouseEvent* event) {
    kMapAreaGuard(faults_, [&] {
        if (events_ != nullptr && event->button() == Qt::LeftButton)
            events_->levelAt(pixelAt(event->position()), true);
    });
}

void MapArea::wheelEvent(QWheelEvent* event) {
    kMapAreaGuard(faults_, [&] {
        constexpr int kNotch = 120;
        event->accept();
        wheel_ += event->angleDelta().y();
        if (std::abs(wheel_) < kNotch) return;
        const bool down = std::exchange(wheel_, 0) > 0;
        if (events_ != nullptr) events_->levelAt(pixelAt(event->position()), down);
    });
}

void MapArea::keyPressEvent(QKeyEvent* event) {
    kMapAreaGuard(faults_, [&] {
        const auto step = stepOf(event->key());
        const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
        if (!step || !plain || events_ == nullptr) return QWidget::keyPressEvent(event);
        events_->stepped(*step);
    });
}

// A right click selects first, so that the menu is that of what is under the pointer; pressed() opens it.
void MapArea::contextMenuEvent(QContextMenuEvent* event) {
    kMapAreaGuard(faults_, [&] {
        event->accept();
        if (events_ != nullptr && event->reason() == QContextMenuEvent::Keyboard) events_->menuKey();
    });
}

}  // namespace hl
