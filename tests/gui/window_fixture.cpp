#include "gui/window_fixture.h"

namespace hl::test {

namespace {

class PausingReader final : public FolderReader {
  public:
    PausingReader(std::unique_ptr<FolderReader> reader, std::function<void(int)>& before)
        : reader_(std::move(reader)), before_(before) {}
    std::unique_ptr<Listing> next() override {
        ++block_;
        if (before_) before_(block_);
        return reader_->next();
    }

  private:
    std::unique_ptr<FolderReader> reader_;
    std::function<void(int)>& before_;
    int block_ = 0;
};

}  // namespace

PausingFileSystem::PausingFileSystem(Patience& patience, std::shared_ptr<DirectoryCalls> calls)
    : disk_(std::make_shared<LinuxFileSystem>(limitsOfThisMachine(false), std::move(calls)), patience) {}

std::unique_ptr<FolderReader> PausingFileSystem::read(std::string_view source, const ReadOptions& options,
                                                      WaitCallback* wait) {
    auto reader = disk_.read(source, options, wait);
    return std::make_unique<PausingReader>(std::move(reader), options.recursive ? beforeBlock : beforeFiles);
}

Result<PathFacts> PausingFileSystem::look(std::string_view path) {
    return beforeLook(), disk_.look(path);
}

PausingOperations::PausingOperations(const LinuxFileOperations::Settings& settings, SilentDisks& disks)
    : disk_(std::make_shared<DirectoryCalls>(), settings, &disks) {}

Result<> PausingOperations::removeFile(const FilePlace& place, OperationWatch& watch) {
    if (refused(place)) return systemError(EACCES);
    return before(watch), disk_.removeFile(place, watch);
}

Removal PausingOperations::removeTree(const FilePlace& place, OperationWatch& watch) {
    if (refused(place)) return {.failures = {{systemError(EACCES, place.base), true}}, .failureCount = 1};
    return before(watch), disk_.removeTree(place, watch);
}

Result<Moved> PausingOperations::recycle(const FilePlace& place, OperationWatch& watch) {
    if (refused(place)) return recycleError(RecycleError::kAccess);
    return before(watch), disk_.recycle(place, watch);
}

Result<> PausingOperations::putBack(const Moved& what, const FilePlace& to, OperationWatch& watch) {
    if (refused(to)) return systemError(EACCES);
    return before(watch), disk_.putBack(what, to, watch);
}

Result<Moved> PausingOperations::move(const FilePlace& from, const FilePlace& to, OperationWatch& watch) {
    if (refused(from) || refused(to)) return systemError(EACCES);
    return before(watch), disk_.move(from, to, watch);
}

Result<bool> PausingOperations::wouldReplace(const FilePlace& from, const FilePlace& to,
                                             OperationWatch& watch) {
    return disk_.wouldReplace(from, to, watch);
}

Protection PausingOperations::protectionOf(const FilePlace& place, OperationWatch& watch) {
    return disk_.protectionOf(place, watch);
}

bool PausingOperations::refused(const FilePlace& place) const {
    if (!allows) return false;
    const fs::path path = place.base + (place.below.empty() ? "" : "/" + place.below);
    std::error_code error;
    const auto folder = fs::canonical(path.parent_path(), error);
    return error || !allows(folder / path.filename());
}

Answers::~Answers() {
    EXPECT_TRUE(acts_.empty()) << acts_.size() << " dialogs never opened";
}

void Answers::add(Act act) {
    acts_.push_back(std::move(act));
    if (acts_.size() == 1) wait();
}

void Answers::wait() {
    QTimer::singleShot(5, &context_, [this] {
        auto* dialog = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || dialog == last_ || !dialog->isVisible()) return wait();
        last_ = dialog;
        const Act act = std::move(acts_.front());
        acts_.pop_front();
        if (!acts_.empty()) wait();
        act(*dialog);
    });
}

void pressIn(QWidget& dialog, const char* caption) {
    for (auto* button : dialog.findChildren<QAbstractButton*>())
        if (button->text().remove(QLatin1Char('&')) == QString::fromUtf8(caption)) return button->click();
    ADD_FAILURE() << "no button " << caption;
}

void choosePath(QDialog& dialog, const std::string& path) {
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->setText(QString::fromStdString(path));
    QTest::keyClick(edit, Qt::Key_Return);
}

void clickEntry(QWidget& frame, const QString& name) {
    auto* widget = frame.findChild<QWidget*>(name);
    if (widget != nullptr && widget->isVisible())
        return QTest::mouseClick(widget, Qt::LeftButton, {}, {8, widget->height() / 2});
    const QString bar = name.section(QLatin1Char('.'), 0, 0), id = name.section(QLatin1Char('.'), 1);
    for (auto* menu : frame.findChild<QWidget*>(bar)->findChildren<QMenu*>())
        for (QAction* action : menu->actions()) {
            if (action->data().toString() != id) continue;
            menu->popup({});
            return QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        }
    ADD_FAILURE() << "no entry " << name.toStdString();
}

Logic::Logic(const std::string& home, const Addresses& addresses) : home_(home) {
    fs::create_directories(machine_.path() + "/proc/self");
    writeFile(machine_.path() + "/proc/self/mountinfo", "21 1 0:2 / / rw - overlay overlay rw\n");
    core_.errors().waitForWindow(true);
    core_.texts().Init_Sprache("", "");
    core_.texts().storeLanguage();
    WindowServices services = core_.windowServices(drives_, verb_, operations_, addresses);
    services.windowThere = [this, mail = addresses.mail](const Window* window, MessagePump* pump) {
        core_.windowThere(window, pump, mail);
        if (window != nullptr && onThere) onThere();
    };
    services.surveys = &surveys_;
    form_.emplace(core_.services(fileSystem, &diskSpace_), services);
    form_->parts().dataFolder = HARBORLANTERN_SOURCE_DIR "/data";
    form_->parts().desktop = &desktop;
    files_.setPatience(&patience);
    patience.setWait(&form_->diskWait());
    form_->parts().patience = &patience;
    form_->parts().clipboardHolder =
        fs::path(HARBORLANTERN_PROGRAM).parent_path().string() + "/harborlantern-clipboard";
}

Logic::~Logic() = default;

Session::Session(const std::string& home, const Addresses& addresses) : Logic(home, addresses) {
    auto& cellText = form().parts().cellText;
    cellText = [this, cellText](GridId grid, std::size_t column, Row row) {
        const std::string text = cellText(grid, column, row);
        if (grid == GridId::kReport && column == 0) painted.insert(text);
        return text;
    };
}

void Session::show() {
    window_ = std::make_unique<MainWindow>(form().parts(), form());
    qtPump_ = std::make_unique<QtPump>(form());
    form().formLoad(window_->window(), *qtPump_);
    window_->show();
}

void Session::start() {
    show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&frame()));
    settle();
}

Session::~Session() {
    window_.reset();
    settle();
}

void Session::settle() {
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
}

void Session::click(Command command) {
    clickEntry(frame(), entryName(command));
    settle();
}

void Session::key(QWidget& on, Qt::Key key) {
    QTest::keyClick(&on, key);
    settle();
}

void Session::type(const QString& edit, const std::string& text, Qt::Key end) {
    auto* widget = frame().findChild<QWidget*>(edit);
    ASSERT_NE(widget, nullptr);
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(widget, QString::fromStdString(text));
    key(*widget, end);
}

QPoint Session::title(GridView& view, int column) {
    const QHeaderView& header = *view.horizontalHeader();
    view.horizontalScrollBar()->setValue(header.sectionPosition(column));
    return {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, 5};
}

void Session::clickTitleOf(GridView& view, int column) {
    const QPoint at = title(view, column);
    QTest::mouseClick(view.horizontalHeader()->viewport(), Qt::LeftButton, {}, at);
    settle();
}

void Session::clickRow(const std::string& name) {
    view().sync();
    const auto index = view().rows().find(row(name));
    ASSERT_TRUE(index) << name;
    view().scrollIntoView(row(name));
    const QPoint at(view().columnViewportPosition(0) + view().columnWidth(0) / 2,
                    view().rowRect(*index).center().y());
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, at);
    settle();
}

bool Session::enabled(Command command) {
    return frame().findChild<QWidget*>(entryName(command))->isEnabled();
}

std::string Session::rows() {
    view().sync();
    std::string all;
    for (std::size_t i = 0; i < view().rows().count(); ++i)
        all += (i > 0 ? " " : "") + nameOf(view().rows().at(i));
    return all;
}

Row Session::row(const std::string& name) {
    for (std::size_t i = 0; i < grid().rowCount(); ++i)
        if (nameOf(grid().rowAt(i)) == name) return grid().rowAt(i);
    return kNoRow;
}

std::string Session::numbers(Row row) {
    const auto cell = [&](std::size_t column) { return view().cellText(column, row).toStdString(); };
    return cell(1) + "|" + cell(3) + "|" + cell(4);
}

std::vector<double> Session::widths() {
    std::vector<double> all;
    for (const GridColumn& column : grid().columns()) all.push_back(column.width);
    return all;
}

void Session::expectFitted() {
    const std::vector<double> found = widths();
    click(Command::kReportFit);
    EXPECT_EQ(found, widths());
}

std::string Session::panes() {
    std::string all;
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const GridView& grid = window().grid(static_cast<GridId>(i));
        if (grid.isVisible()) all += (all.empty() ? "" : " ") + grid.objectName().toStdString();
    }
    return all;
}

std::string Session::panel(const char* name) {
    return frame().findChild<QWidget*>(QLatin1String(name))->accessibleName().toStdString();
}

std::string Session::nameOf(Row row) {
    const std::string text(grid().text(row));
    return grid().parent(row) == kNoRow ? text.substr(text.rfind('/') + 1) : text;
}

void Session::execute(Command command) {
    form().parts().barEvents->execute(barOf(command), idOf(command));
}

WindowTest::WindowTest() {
    setSettings("");
}

void WindowTest::setSettings(const std::string& more) const {
    writeFile(ini(),
              "[Allgemein]\r\nLang=7\r\n[Form]\r\nWidth=21000\r\nHeight=13500\r\nTVW=12000\r\n" + more);
}

void WindowTest::folders(int count) const {
    for (int i = 0; i < count; ++i) {
        folder("src/f" + std::to_string(i));
        file("src/f" + std::to_string(i) + "/x", 10);
    }
}

void WindowTest::smallTree() const {
    folder("src/a/aa");
    folder("src/b");
    file("src/a/aa/x", 300);
    file("src/a/y", 100);
    file("src/b/z", 50);
    file("src/w", 7);
}

}  // namespace hl::test
