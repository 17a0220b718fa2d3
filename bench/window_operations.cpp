#include "window_operations.h"

#include <QAbstractButton>
#include <QMenu>
#include <QMessageBox>

#include "base/path.h"
#include "window_parts.h"

namespace hl::bench {

namespace {

constexpr int kMenusOfAKind = 7;

Grid& gridOf(WindowForm& form, GridId id) {
    return *form.parts().grids[static_cast<std::size_t>(id)];
}

/// Answers every question with yes, as soon as it is asked.
class YesSayer final : public QTimer {
  public:
    YesSayer() {
        callOnTimeout([] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->buttons().front()->click();
        });
        start(1);
    }
};

/// Notes when a menu has been painted, and closes it.
class MenuWatch final : public QObject {
  public:
    MenuWatch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override {
        auto* menu = qobject_cast<QMenu*>(object);
        if (menu == nullptr || event->type() != QEvent::Paint || painted_) return false;
        painted_ = true;
        // This runs after the painting that is just going on.
        QTimer::singleShot(0, menu, [this, menu] {
            times_.push_back(secondsSince(clicked_) * 1e3);
            menu->close();
        });
        return false;
    }
    void click(GridEvents& grid, Row row) {
        painted_ = false;
        clicked_ = Clock::now();
        grid.MouseUp(row, MouseButton::kRight, false, {100, 100});
        if (!painted_) std::exit(1);
    }
    void tellMedian(const char* name) {
        tell((name + std::string("_first")).c_str(), times_.front());
        std::sort(times_.begin(), times_.end());
        tell(name, times_[times_.size() / 2]);
        times_.clear();
    }

  private:
    Clock::time_point clicked_;
    bool painted_ = false;
    std::vector<double> times_;
};

void read(WindowForm& form, const std::string& source) {
    form.formActivate();
    settle();
    form.handOver('"' + source + '"');
    settle();
}

}  // namespace

void deleteFolder(WindowForm& form, const std::string& folder) {
    read(form, folder.substr(0, folder.rfind('/')));
    Grid& grid = form.form().session.tvwPL;
    grid.selectNone();
    const Row row = grid.firstChild(grid.firstChild(kNoRow));
    grid.setSelected(row, true);
    grid.setCurrentRow(row);
    settle();
    const YesSayer yes;
    ClickWatch watch;
    const double before = peakMebibytes();
    timed("delete", [&] { run(form, Command::kDeleteFolders); });
    watch.tellWaits();
    tell("grown", peakMebibytes() - before);
}

void menus(WindowForm& form, const std::string& folder) {
    read(form, folder);
    MenuWatch watch;
    MainForm& parts = form.form();
    const std::tuple<const char*, GridId, GridEvents*> menus[] = {
        {"report", GridId::kReport, &parts.report.view()},
        {"drives", GridId::kDrives, &parts.drives.list()},
        {"files", GridId::kFiles, parts.lists.of(GridId::kFiles)}};
    for (const auto& [name, id, events] : menus) {
        Grid& grid = gridOf(form, id);
        if (grid.rowCount() == 0) continue;
        const Row row = grid.rowAt(0);
        grid.selectNone();
        grid.setSelected(row, true);
        grid.setCurrentRow(row);
        for (int i = 0; i < kMenusOfAKind; ++i) watch.click(*events, row);
        watch.tellMedian(name);
    }
}

}  // namespace hl::bench
