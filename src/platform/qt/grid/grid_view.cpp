// The view put together, what the window asks of it, and painting. What the toolkit reports goes to the
// parts.
#include "platform/qt/grid/grid_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QResizeEvent>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/forms/dialogs.h"
#include "platform/qt/grid/cell_editor.h"
#include "platform/qt/grid/grid_accessible.h"
#include "platform/qt/grid/grid_header.h"

namespace hl {

constexpr QtGuard kGridViewGuard{"GridView"};

namespace {

constexpr int kFrame = 2;  // In pixels; so wide, the frame of the view with the focus is seen.

}  // namespace

// --- life

GridView::GridView(Grid& grid, GridId id, bool tree, CellTextFunction cellText, WindowEvents& events,
                   QWidget* parent)
    : QTableView(parent),
      grid_(grid),
      cellText_(std::move(cellText)),
      sources_{grid, id, tree, cellText_, icon_},
      events_(events),
      hint_(*this),
      levelCaption_(QStringLiteral("Level")),
      sync_(*this, grid, id, cellText_, events),
      places_(*this, sources_, sync_.rows()),
      columns_(*this, sources_),
      actions_(*this, grid, sync_.rows()),
      mouse_(*this),
      keys_(*this) {
    setUp();
    sync_.start();
}

GridView::~GridView() {
    // The view and its editor would still be told of the focus while the view is half destroyed.
    disconnect(qApp, nullptr, this, nullptr);
    editor_.reset();
    // The model is part of a member, and would be destroyed before the base class releases it.
    setModel(nullptr);
}

void GridView::setUp() {
    setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
    setLineWidth(kFrame);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* to) {
        kGridViewGuard(events_, "focusMoved", [&] { focusMoved(to); });
    });
    installGridAccessible();
    setHorizontalHeader(columns_.makeHeader());
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setModel(&sync_.model());
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setAutoScroll(false);
    setMouseTracking(!isTree());
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    font_.name = font().family().toStdString();
    font_.points = font().pointSizeF();
    measureRows();
}

void GridView::setIconSource(IconSource icon) {
    icon_ = std::move(icon);
    viewport()->update();
}

// --- fonts

GridFont GridView::gridFont() const {
    GridFont font = font_;
    if (!(font.points > 0)) font.points = QFontInfo(this->font()).pointSizeF();
    return font;
}

void GridView::setGridFont(const GridFont& font) {
    font_ = font;
    setFont(qtFont(font));
}

void GridView::measureRows() {
    places_.measure();
    viewport()->update();
}

void GridView::changeEvent(QEvent* event) {
    kGridViewGuard(events_, [&] {
        QTableView::changeEvent(event);
        const QEvent::Type type = event->type();
        if (type == QEvent::FontChange || type == QEvent::StyleChange) measureRows();
        moveEditor();
    });
}

// --- what the window asks

void GridView::autosizeColumn(std::size_t column, int margin) {
    if (column >= grid_.columns().size()) return;
    sync();
    columns_.autosize(column, margin);
}

int GridView::widthBesideColumns() {
    sync();
    return 2 * frameWidth() + places_.scrollBarWidth();
}

int GridView::heightOfRows() {
    std::size_t count = 0;
    if (sync()) {
        count = rows().count();
    } else {
        for (Row row = grid_.firstRoot(); row != kNoRow; row = VisibleRows::following(grid_, row)) ++count;
    }
    constexpr std::size_t kMost = 1 << 24;
    const auto height = static_cast<std::size_t>(places_.rowHeight());
    const int all = static_cast<int>(std::min(count * height, kMost));
    const int bar = horizontalScrollBar()->sizeHint().height();
    return horizontalHeader()->sizeHint().height() + all + bar + 2 * frameWidth();
}

std::optional<RowRange> GridView::visibleRows() {
    if (!isVisible() || !sync() || rows().count() == 0) return std::nullopt;
    const std::size_t first = places_.topIndex();
    const std::size_t last = first + static_cast<std::size_t>(places_.rowsOnPage()) - 1;
    return RowRange{first, std::min(last, rows().count() - 1)};
}

std::size_t GridView::columnAt(Point at) {
    const int section = QTableView::columnAt(viewport()->mapFromGlobal(QPoint(at.x, at.y)).x());
    return section < 0 ? grid_.columns().size() : static_cast<std::size_t>(section);
}

void GridView::scrollIntoView(Row row) {
    if (row == kNoRow) return;
    for (Row above = grid_.parent(row); above != kNoRow; above = grid_.parent(above))
        grid_.setExpanded(above, true);
    if (!sync()) return;
    if (const auto index = rows().find(row)) sync_.ensureVisible(*index);
}

void GridView::scrollToMiddle(Row row) {
    scrollIntoView(row);
    if (row == kNoRow || !sync()) return;
    if (const auto index = rows().find(row)) sync_.showInMiddle(*index);
}

void GridView::refresh() {
    sync();
    viewport()->update();
}

void GridView::editCell(Row row) {
    if (!editor_) editor_ = std::make_unique<CellEditor>(*this);
    editor_->begin(row);
}

// --- what the parts and assistive tools ask

Row GridView::rowAt(const QPoint& point) {
    const auto index = sync() ? places_.indexAt(point) : std::nullopt;
    return index ? rows().at(*index) : kNoRow;
}

std::optional<QRect> GridView::nameRect(Row row) const {
    const auto index = upToDate() && !isColumnHidden(0) ? rows().find(row) : std::nullopt;
    return index ? std::optional(places_.nameRect(*index)) : std::nullopt;
}

QString GridView::cellText(std::size_t column, Row row) const {
    return QString::fromStdString(cellText_(sources_.id, column, row));
}

// The button comes first: it lies in the view, which would otherwise be taken for it.
void GridView::addTabStops(std::vector<QWidget*>& stops) {
    if (hint_.button() != nullptr) stops.push_back(hint_.button());
    stops.push_back(this);
}

void GridView::layOut() {
    executeDelayedItemsLayout();
    updateGeometries();
}

void GridView::moveEditor(bool newRows) {
    if (!editor_) return;
    if (newRows) editor_->cancel();
    editor_->follow();
}

// --- painting

bool GridView::event(QEvent* event) {
    return kGridViewGuard(events_, [&] {
        const bool known = QTableView::event(event);
        if (event->type() == QEvent::Paint) paintFrame();
        return known;
    });
}

// The frame of the view with the focus is wider and has the colour of selected rows.
void GridView::paintFrame() {
    QPainter painter(this);
    const auto fill = [&](const QRect& outer, const QRect& inner, const QColor& color) {
        painter.setClipRegion(QRegion(outer) - inner);
        painter.fillRect(outer, color);
    };
    const QRect line = contentsRect().adjusted(-1, -1, 1, 1);
    if (holdsFocus_) return fill(rect(), contentsRect(), palette().color(QPalette::Highlight));
    fill(rect(), line, palette().color(QPalette::Window));
    fill(line, contentsRect(), palette().color(QPalette::Mid));
}

void GridView::focusMoved(const QWidget* to) {
    const bool holds = to == this || (to != nullptr && isAncestorOf(to));
    if (std::exchange(holdsFocus_, holds) == holds) return;
    update();
    viewport()->update();
}

void GridView::paintEvent(QPaintEvent* event) {
    kGridViewGuard(events_, [&] { paintRows(event->rect()); });
}

void GridView::paintRows(const QRect& dirty) {
    QPainter painter(viewport());
    painter.fillRect(dirty, palette().color(QPalette::Base));
    if (grid_.firstRoot() == kNoRow) return hint_.paint(painter);
    hint_.rowsPainted();
    std::vector<PaintedColumn> columns = places_.paintedColumns();
    if (columns.empty()) return;
    const int right = columns.back().left + columns.back().width;
    std::erase_if(columns, [&dirty](const PaintedColumn& column) {
        return column.left > dirty.right() || column.left + column.width <= dirty.left();
    });
    const RowPainter rows(sources_, *this);
    bool whole = true;
    const int left = -horizontalScrollBar()->value();
    Row row = VisibleRows::firstPainted(grid_);
    for (int top = 0; row != kNoRow && top <= dirty.bottom(); top += places_.rowHeight()) {
        const QRect area(left, top, right - left, places_.rowHeight());
        if (area.bottom() >= dirty.top()) whole = rows.paint(painter, row, area, columns) && whole;
        row = VisibleRows::following(grid_, row);
    }
    if (!whole) widenLater();
}

// Painting changes nothing by itself.
void GridView::widenLater() {
    if (std::exchange(widening_, true)) return;
    const auto widen = [this] {
        widening_ = false;
        kGridViewGuard(events_, "widenNumbers", [&] {
            if (sync()) columns_.widenNumbers();
        });
    };
    QMetaObject::invokeMethod(this, widen, Qt::QueuedConnection);
}

QString GridView::markNote(Row row) const {
    const std::uint32_t mark = grid_.mark(row);
    return mark == 0 || !markNote_ ? QString() : markNote_(mark);
}

// Returns what there is to tell of a cell, such as a size in all units; else the full text of one that does
// not show all of it, else the note of the row. Then what the row's mark means.
QString GridView::tooltipAt(const QPoint& point) {
    const GridSync::Glance glance(sync_);
    const int section = QTableView::columnAt(point.x());
    const Row row = section >= 0 ? rowAt(point) : kNoRow;
    if (row == kNoRow) return {};
    const RowPainter painter(sources_, *this);
    const auto column = static_cast<std::size_t>(section);
    QString text = cellTip_ ? QString::fromStdString(cellTip_(sources_.id, column, row)) : QString();
    if (text.isEmpty())
        text = painter.isCut(row, column, columnWidth(section)) ? painter.fullText(row, column)
                                                                : shownName(grid_.rowNote(row));
    const QString mark = markNote(row);
    return text.isEmpty() || mark.isEmpty() ? text + mark : text + QLatin1Char('\n') + mark;
}

bool GridView::viewportEvent(QEvent* event) {
    return kGridViewGuard(events_, [&] {
        if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
        const auto* help = static_cast<QHelpEvent*>(event);
        QString text = tooltipAt(help->pos());
        // A name must never be read as rich text.
        if (!text.isEmpty()) text = QStringLiteral("<p style='white-space:pre'>") + text.toHtmlEscaped();
        QToolTip::showText(help->globalPos(), text, this);
        return true;
    });
}

// --- scrolling and size

void GridView::scrollContentsBy(int dx, int dy) {
    kGridViewGuard(events_, [&] {
        QTableView::scrollContentsBy(dx, dy);
        // Drawing starts at the grid's top row, which may differ from what was visible.
        viewport()->update();
        moveEditor();
        if (dy != 0) sync_.scrolled();
    });
}

void GridView::resizeEvent(QResizeEvent* event) {
    kGridViewGuard(events_, [&] {
        QTableView::resizeEvent(event);
        if (event->size().width() != event->oldSize().width()) columns_.nameGivesWay();
        moveEditor();
        if (event->size().height() > event->oldSize().height() && grid_.rowCount() > 0 && upToDate())
            listener_->VScroll();
    });
}

// --- the mouse and the keys

void GridView::mousePressEvent(QMouseEvent* event) {
    kGridViewGuard(events_, [&] { mouse_.press(*event); });
}

void GridView::mouseMoveEvent(QMouseEvent* event) {
    kGridViewGuard(events_, [&] { mouse_.move(*event); });
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
    kGridViewGuard(events_, [&] { mouse_.release(*event); });
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
    kGridViewGuard(events_, [&] { mouse_.doubleClick(*event); });
}

void GridView::leaveEvent(QEvent* event) {
    kGridViewGuard(events_, [&] {
        QTableView::leaveEvent(event);
        if (takesInput()) mouse_.hover(kNoRow);
    });
}

// The menu key acts like a right click on the current row. For the mouse, its release has done that already.
void GridView::contextMenuEvent(QContextMenuEvent* event) {
    kGridViewGuard(events_, [&] {
        event->accept();
        if (event->reason() == QContextMenuEvent::Keyboard && takesInput()) actions_.openMenu();
    });
}

void GridView::keyPressEvent(QKeyEvent* event) {
    kGridViewGuard(events_, [&] { keys_.press(*event); });
}

void GridView::keyReleaseEvent(QKeyEvent* event) {
    kGridViewGuard(events_, [&] { keys_.release(*event); });
}

// The toolkit's own method would choose a current row by itself.
void GridView::focusInEvent(QFocusEvent* event) {
    kGridViewGuard(events_, [&] {
        QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
    });
}

void GridView::focusOutEvent(QFocusEvent* event) {
    kGridViewGuard(events_, [&] {
        QAbstractScrollArea::focusOutEvent(event);  // NOLINT(bugprone-parent-virtual-call)
        keys_.focusLeft();
    });
}

}  // namespace hl
