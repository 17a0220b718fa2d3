#include "platform/qt/window/main_window.h"

#include <QApplication>
#include <QDesktopServices>
#include <QGridLayout>
#include <QLineEdit>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"

namespace hl {

namespace {

constexpr auto kRoot = static_cast<std::size_t>(SplitterId::kMain);
constexpr int kFirstWidth = 1024, kFirstHeight = 700;

Rect rectOf(const QRect& rect) {
    return {rect.left(), rect.top(), rect.width(), rect.height()};
}

}  // namespace

// --- building

MainWindow::MainWindow(WindowParts& parts, WindowEvents& events)
    : parts_(parts),
      events_(events),
      desktop_(parts.patience),
      icons_(parts.dataFolder, parts.fileIcon),
      frame_(new Frame(events)),
      dialogs_(parts, events, *frame_),
      clipboard_(parts.clipboardHolder) {
    frame_->setObjectName(QStringLiteral("frmMain"));
    frame_->setWindowTitle(qtText(parts.name));
    frame_->tabStops = [this] { return tabStops(); };
    frame_->setWindowIcon(icons_.programIcon());
    makePanes();
    auto* center = new QWidget;
    rows_ = new QVBoxLayout(center);
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    rows_->addWidget(bars_[0]);
    rows_->addWidget(splitters_[kRoot], 1);
    frame_->setCentralWidget(center);
    status_ = new StatusPanelBar(events_, *parts_.barEvents);
    frame_->setStatusBar(status_);
    frame_->resize(kFirstWidth, kFirstHeight);
    frame_->looksChanged = [this] { renewLooks(); };
    frame_->dropped = [this](const std::vector<DroppedPlace>& places) {
        parts_.sourceEvents->dropped(places);
    };
    makeWindow();
    frame_->pressAccelerator = [this](int key, bool control) { return pressAccelerator(key, control); };
}

MainWindow::~MainWindow() {
    setBusyPointer(false);
    frame_->looksChanged = nullptr;
}

/// Every pane is first a hidden child of the frame, until a splitter takes it.
void MainWindow::makePanes() {
    sources_ = new SourceComboBox(icons_, events_, *parts_.sourceEvents);
    for (std::size_t i = 0; i < kBarCount; ++i) {
        bars_[i] =
            new ToolBar(*parts_.bars[i], icons_, events_, *parts_.barEvents, i == 0 ? sources_ : nullptr);
        bars_[i]->setParent(frame_.get());
        bars_[i]->setNames(qtText(parts_.more), qtText(parts_.clear));
        // The main bar gets the name of its CommandBar later; the others have that of their grid or the map.
        if (i > 0)
            bars_[i]->setAccessibleName(qtText(i > kGridCount ? parts_.map : parts_.gridTitles[i - 1]));
        if (i > 0) bars_[i]->hide();
    }
    for (std::size_t i = 0; i < kGridCount; ++i) makeGrid(i);
    makeStartPage();
    preview_ = new PreviewArea(parts_.preview, events_, frame_.get());
    preview_->hide();
    map_ = new MapArea(events_, frame_.get());
    map_->setAccessibleName(qtText(parts_.map));
    map_->setLevelCaption(qtText(parts_.level));
    map_->hide();
    for (std::size_t i = 0; i < kSplitterCount; ++i) {
        const auto factory = [this](const PaneRef& ref) { return pane(ref); };
        splitters_[i] = new SplitterWidget(*parts_.splitters[i], factory, events_);
        splitters_[i]->setParent(frame_.get());
        if (i != kRoot) splitters_[i]->hide();
    }
}

void MainWindow::makeGrid(std::size_t number) {
    auto* view =
        new GridView(*parts_.grids[number], static_cast<GridId>(number),
                     hasHierarchy(static_cast<GridId>(number)), parts_.cellText, events_, frame_.get());
    view->setObjectName(QLatin1String(parts_.gridNames[number]));
    view->setAccessibleName(qtText(parts_.gridTitles[number]));
    view->setLevelCaption(qtText(parts_.level));
    view->setIconSource([this](int picture) { return icons_.icon(picture); });
    view->setCellTip(parts_.cellTip);
    const auto id = static_cast<GridId>(number);
    view->hint().text = [this, id] { return parts_.emptyHint ? qtText(parts_.emptyHint(id)) : QString(); };
    view->hint().buttonCaption = [this, id] {
        return parts_.emptyButton ? qtText(parts_.emptyButton(id)) : QString();
    };
    view->setMarkNote(
        [this](std::uint32_t mark) { return parts_.markNote ? qtText(parts_.markNote(mark)) : QString(); });
    view->hide();
    grids_[number] = view;
}

void MainWindow::makeStartPage() {
    reportPane_ = new QWidget(frame_.get());
    start_ = new StartView(icons_, events_, *parts_.sourceEvents, grid(GridId::kReport));
    auto* both = new QGridLayout(reportPane_);
    both->setContentsMargins(0, 0, 0, 0);
    GridView& report = grid(GridId::kReport);
    for (QWidget* each : {static_cast<QWidget*>(&report), static_cast<QWidget*>(start_)})
        both->addWidget(each, 0, 0);
    report.show();
    reportPane_->hide();
}

void MainWindow::makeWindow() {
    std::array<GridPane*, kGridCount> grids{};
    std::array<BarPane*, kBarCount> bars{};
    std::ranges::copy(grids_, grids.begin());
    std::ranges::copy(bars_, bars.begin());
    Desktop& desktop = parts_.desktop != nullptr ? *parts_.desktop : desktop_;
    window_ = std::make_unique<Window>(
        Window{*this, grids, bars, dialogs_, clipboard_, fileTypes_, desktop, preview_, map_, this});
}

QWidget* MainWindow::pane(const PaneRef& ref) {
    const auto number = static_cast<std::size_t>(ref.number);
    switch (ref.kind) {
        case PaneRef::Kind::kSplitter:
            return splitters_[number];
        case PaneRef::Kind::kBar:
            return bars_[number];
        case PaneRef::Kind::kGrid:
            if (number == static_cast<std::size_t>(GridId::kReport)) return reportPane_;
            return grids_[number];
        case PaneRef::Kind::kPreview:
            return preview_;
        case PaneRef::Kind::kMap:
            return map_;
        case PaneRef::Kind::kNone:
            break;
    }
    return nullptr;
}

void MainWindow::placeMainBar() {
    const BarPlace& place = parts_.bars[0]->place();
    const bool below = place.edge == BarEdge::kBottom;
    rows_->removeWidget(bars_[0]);
    rows_->insertWidget(below ? 1 : 0, bars_[0]);
    bars_[0]->setVisible(place.visible);
}

void MainWindow::renewLooks() {
    icons_.clear();
    dialogs_.renewIcons();
    for (ToolBar* bar : bars_) bar->rebuild();
    for (GridView* grid : grids_) grid->viewport()->update();
    sources_->renewIcons();
}

// --- the start page

bool MainWindow::startPageShows() const {
    return !start_->isHidden();
}

// The keyboard stays in the pane: on the page while that can be used, else on the report.
void MainWindow::setStartPage(const StartPage& page) {
    const QWidget* focus = frame_->focusWidget();
    GridView& report = grid(GridId::kReport);
    const bool usable = !page.groups.empty() && page.enabled;
    if (!usable && focus != nullptr && start_->isAncestorOf(focus)) report.setFocus(Qt::OtherFocusReason);
    start_->setPage(page);
    start_->raise();
    if (usable && focus == &report) start_->focusFirst();
}

void MainWindow::focusBox() {
    sources_->setFocus(Qt::OtherFocusReason);
    sources_->lineEdit()->selectAll();
}

// --- accelerators

std::optional<BarId> MainWindow::barOfFocus() const {
    for (QWidget* at = QApplication::focusWidget(); at != nullptr; at = at->parentWidget()) {
        if (at == reportPane_) return BarId::kReport;
        if (at == map_) return BarId::kMap;
        const auto bar = std::find(bars_.begin(), bars_.end(), at);
        if (bar != bars_.end()) return static_cast<BarId>(bar - bars_.begin());
        // The bars of the grids follow the main one in the order of the grids.
        const auto grid = std::find(grids_.begin(), grids_.end(), at);
        if (grid != grids_.end()) return static_cast<BarId>(grid - grids_.begin() + 1);
    }
    return std::nullopt;
}

/// Bars of several panes may have the same key: the pane with the focus comes first, then the main bar, then
/// the other visible ones.
bool MainWindow::pressAccelerator(int key, bool control) {
    constexpr int kF1 = 112, kF6 = 117, kF24 = 135;
    const bool functionKey = key >= kF1 && key <= kF24;
    const bool shiftedFunctionKey = key >= (kF1 | kKeyWithShift) && key <= (kF24 | kKeyWithShift);
    if (functionKey == control || shiftedFunctionKey) return false;
    const auto focused = barOfFocus();
    if (key == kF6) return focusNextPane(focused);
    if (focused && pressIn(*focused, key)) return true;
    if (pressIn(BarId::kMain, key)) return true;
    for (std::size_t i = 1; i < kBarCount; ++i)
        if (bars_[i]->isVisible() && pressIn(static_cast<BarId>(i), key)) return true;
    return false;
}

/// Moves the focus from the main bar, which has the sources, to the visible grids in turn, the map, and
/// around.
bool MainWindow::focusNextPane(std::optional<BarId> focused) {
    const std::size_t from = focused ? static_cast<std::size_t>(*focused) : 0;
    for (std::size_t step = 1; step <= kBarCount; ++step) {
        const std::size_t next = (from + step) % kBarCount;
        QWidget* pane = next == 0           ? static_cast<QWidget*>(sources_)
                        : next > kGridCount ? static_cast<QWidget*>(map_)
                                            : grids_[next - 1];
        if (!pane->isVisible() || !pane->isEnabled()) continue;
        const bool onPage = pane == grids_[static_cast<std::size_t>(GridId::kReport)] && startPageShows();
        if (onPage) {
            start_->focusFirst();
        } else {
            pane->setFocus(Qt::TabFocusReason);
        }
        return true;
    }
    return false;
}

bool MainWindow::pressIn(BarId id, int key) {
    const auto& entries = parts_.bars[static_cast<std::size_t>(id)]->entries();
    const auto fits = [key](const BarEntry& entry) {
        return entry.key == key && entry.id != 0 && entry.visible && entry.enabled;
    };
    const auto found = std::find_if(entries.begin(), entries.end(), fits);
    if (found == entries.end()) return false;
    // The button behind an edit box starts its search; without a text the key leads to the box.
    const bool afterBox = found != entries.begin() && std::prev(found)->kind == EntryKind::kEdit;
    if (afterBox && std::prev(found)->text.empty()) {
        bar(id).focusEdit(std::prev(found)->id);
    } else {
        bar(id).press(found->id);
    }
    return true;
}

// --- the frame

void MainWindow::setTitle(const std::string& title) {
    frame_->setWindowTitle(shownName(title));
}

void MainWindow::setBusyPointer(bool busy) {
    if (busy == std::exchange(busy_, busy)) return;
    // This pointer has an arrow, too, because Stop and the panes can be clicked during a run.
    if (busy) {
        frame_->setCursor(Qt::BusyCursor);
    } else {
        frame_->unsetCursor();
    }
}

Rect MainWindow::screen() {
    return rectOf(frame_->screen()->availableGeometry());
}

// What Qt calls the depth are the bits of the colour: 24 of the 32 in each pixel.
ScreenFacts MainWindow::screenFacts() {
    const QScreen& screen = *frame_->screen();
    const QSizeF pixels = QSizeF(screen.size()) * screen.devicePixelRatio();
    const int depth = screen.depth() > 16 ? 32 : screen.depth();
    return {qRound(pixels.width()), qRound(pixels.height()), depth};
}

Rect MainWindow::normalGeometry() {
    const bool normal = state() == WindowState::kNormal || !frame_->normalGeometry().isValid();
    return rectOf(normal ? frame_->geometry() : frame_->normalGeometry());
}

// Title and frame stay on the screens; a window that is too large for them begins at their edge.
void MainWindow::setGeometry(const Rect& rect) {
    const int side = frame_->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int title = frame_->style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QRect most =
        frame_->screen()->availableVirtualGeometry().adjusted(side, title + side, -side, -side);
    const QSize size = QSize(rect.width, rect.height).boundedTo(most.size());
    const int left = size.width() < rect.width ? most.left() : std::max(rect.left, most.left());
    const int top = size.height() < rect.height ? most.top() : std::max(rect.top, most.top());
    frame_->setGeometry({QPoint(left, top), size});
}

WindowState MainWindow::state() {
    if (frame_->isMinimized()) return WindowState::kMinimized;
    return frame_->isMaximized() ? WindowState::kMaximized : WindowState::kNormal;
}

void MainWindow::setState(WindowState state) {
    const auto flags = state == WindowState::kMinimized   ? Qt::WindowMinimized
                       : state == WindowState::kMaximized ? Qt::WindowMaximized
                                                          : Qt::WindowNoState;
    frame_->setWindowState(flags);
}

// The Tab key goes from a bar to its grid, and from there to the next bar.
std::vector<QWidget*> MainWindow::tabStops() const {
    std::vector<QWidget*> stops;
    bars_[0]->addTabStops(stops);
    for (std::size_t i = 0; i < kGridCount; ++i) {
        bars_[i + 1]->addTabStops(stops);
        if (i == static_cast<std::size_t>(GridId::kReport) && startPageShows()) {
            start_->addTabStops(stops);
        } else {
            grids_[i]->addTabStops(stops);
        }
        if (i != static_cast<std::size_t>(GridId::kReport)) continue;
        bars_[static_cast<std::size_t>(BarId::kMap)]->addTabStops(stops);
        stops.push_back(map_);
    }
    preview_->addTabStops(stops);
    return stops;
}

void MainWindow::show() {
    placeMainBar();
    frame_->show();
}

void MainWindow::close() {
    frame_->close();
}

void MainWindow::bringToFront() {
    frame_->setWindowState(frame_->windowState() & ~Qt::WindowMinimized);
    frame_->show();
    frame_->raise();
    // While there is a dialog, it has the keyboard.
    QWidget* asker = dialogs_.asker();
    asker->raise();
    asker->activateWindow();
}

void MainWindow::setStatus(const StatusPanels& panels) {
    status_->setPanels(panels);
}

void MainWindow::setSources(const std::vector<ComboItem>& items, const std::string& text, int selected) {
    sources_->setSources(items, text, selected);
}

Rect MainWindow::clientArea() {
    return rectOf(frame_->rect());
}

bool MainWindow::openUrl(const std::string& url) {
    return QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
}

}  // namespace hl
