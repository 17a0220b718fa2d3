// Measures the window from inside, and prints lines of a name and a number. bench/window.py runs it.
//
//     window_views start NANOSECONDS    milliseconds from that time of CLOCK_MONOTONIC to the first paint,
//     and
//                                       until the window is ready
//     window_views scan TREE            seconds of a run in the window, and its peak memory
//     window_views clicks TREE          the longest times in milliseconds that input waited meanwhile
//     window_views looks TREE           milliseconds from a click or a turn of the wheel until it is painted
//     window_views silent TREE          seconds of a run with no window, without its report
//     window_views rows                 work on 1,000,000 rows
//     window_views lists TREE           seconds of a run that fills the lists that a run can fill
//     window_views nolists TREE         seconds of a run that fills none of these lists
//     window_views statistics TREE      bytes of statistics a folder row, and seconds of sums
//     window_views files FOLDER         seconds until the files of one folder are listed, and of sorts
//     window_views fileclicks FOLDER    the longest times in milliseconds that input waited meanwhile
//     window_views delete FOLDER        seconds and longest waits of deleting FOLDER, alone in its folder
//     window_views menus FOLDER         milliseconds from a click until a menu is painted
//     window_views map TREE             milliseconds to lay out and paint the map, and after a change
//     window_views analyse              seconds to bring the names of each file together, among 200,000
//
// The parts are put together as in the program, and the module with the window is the program's, so this
// measures what users have. HARBORLANTERN_HOME names a folder that may be written to,
// HARBORLANTERN_MODULES the one with the module.
#include "mainwindow/silent_run.h"
#include "window_lists.h"
#include "window_map.h"
#include "window_operations.h"
#include "window_parts.h"

namespace hl {
namespace {

using namespace bench;

// --- a run

void scan(WindowForm& form, const std::string& tree) {
    form.formActivate();
    settle();
    const auto start = Clock::now();
    form.handOver('"' + tree + '"');
    settle();
    tell("scan", secondsSince(start));
    tell("peak", peakMebibytes());
    tell("rows", static_cast<double>(form.form().session.tvwPL.rowCount()));
}

void silent(Parts& parts, const std::string& tree) {
    SilentRun silentRun(parts.services());
    silentRun.load();
    silentRun.session().state.SourceQueue.push_back(tree);
    const auto start = Clock::now();
    Ordnerliste_Abarbeiten(silentRun.scan());
    tell("silent", secondsSince(start));
}

void clicks(WindowForm& form, const std::string& tree) {
    form.formActivate();
    settle();
    ClickWatch watch;
    form.handOver('"' + tree + '"');
    settle();
    watch.tellWaits();
}

void looks(WindowForm& form, const std::string& tree) {
    form.formActivate();
    settle();
    LookWatch watch(*report().viewport());
    form.handOver('"' + tree + '"');
    watch.tellWaits();
}

// --- a million rows

constexpr std::size_t kRows = 1000000;
constexpr std::uint32_t kDeepest = 6;
constexpr int kChildren = 10;

Row addFolder(Grid& grid, Row parent, Disorder& numbers) {
    char name[24];
    std::snprintf(name, sizeof name, "Folder-%08x", numbers.next());
    const Row row = grid.addRow(parent, name);
    grid.setNumber(row, kIsFolder, 1);
    grid.setNumber(row, kSize, numbers.next());
    grid.setNumber(row, kFiles, numbers.next() % 1000);
    grid.setPicture(row, kPictureFolder);
    return row;
}

void addBelow(Grid& grid, Row parent, std::uint32_t level, Disorder& numbers) {
    for (int i = 0; i < kChildren && grid.rowCount() < kRows; ++i) {
        const Row row = addFolder(grid, parent, numbers);
        if (level < kDeepest) addBelow(grid, row, level + 1, numbers);
    }
}

void fill(WindowForm& form) {
    Grid& grid = form.form().session.tvwPL;
    Disorder numbers;
    grid.setRedraw(false);
    const Row root = addFolder(grid, kNoRow, numbers);
    grid.setCurrentRow(root);
    grid.setSelected(root, true);
    addBelow(grid, root, 1, numbers);
    form.form().session.state.DeepestLevel = kDeepest;
}

void scrollPages() {
    constexpr int kPages = 200;
    QScrollBar& bar = *report().verticalScrollBar();
    std::vector<double> times;
    for (int i = 0; i < kPages; ++i) {
        const auto start = Clock::now();
        bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
        settle();
        times.push_back(secondsSince(start));
    }
    if (bar.value() == 0) std::exit(1);
    std::sort(times.begin(), times.end());
    tell("page", times[times.size() / 2]);
    tell("page_longest", times.back());
}

void search(WindowForm& form) {
    constexpr int kSearchBox = idOf(Command::kReportSearchText);
    form.parts().barEvents->editChanged(BarId::kReport, kSearchBox, "nothing has this name");
    timed("search", [&] { form.parts().barEvents->editKeyDown(BarId::kReport, kSearchBox, kKeyReturn); });
}

// Each of them ends with what the window paints then; the rows above and below stay as they are.
void changeOne(Grid& grid) {
    constexpr int kTimes = 50;
    const auto median = [](const char* name, const std::function<void()>& body) {
        std::vector<double> times;
        for (int i = 0; i < kTimes; ++i) {
            const auto start = Clock::now();
            body();
            for (int turn = 0; turn < 3; ++turn) QApplication::processEvents();
            times.push_back(secondsSince(start) * 1e3);
        }
        std::sort(times.begin(), times.end());
        tell(name, times[times.size() / 2]);
    };
    const Row top = grid.topRow(), folder = grid.parent(top);
    median("cell", [&] { grid.setNumber(top, kSize, grid.number(top, kSize) + 1); });
    median("fold", [&] { grid.setExpanded(folder, !grid.expanded(folder)); });
    median("add_remove", [&] {
        const Row last = grid.addRow(folder, "new");
        QApplication::processEvents();
        grid.removeRow(last);
    });
}

void rows(WindowForm& form) {
    constexpr std::size_t kName = 0, kSizeColumn = 1;
    form.formActivate();
    settle();
    fill(form);
    const double before = residentBytes();
    form.form().session.tvwPL.setRedraw(true);
    settle();
    timed("expand", [&] { run(form, Command::kReportUnfoldAll); });
    tell("bytes", (residentBytes() - before) / static_cast<double>(form.form().session.tvwPL.rowCount()));
    scrollPages();
    changeOne(form.form().session.tvwPL);
    timed("sort_numbers", [&] { form.form().report.view().GridColumnTitleClick(kSizeColumn); });
    timed("sort_numbers_again", [&] { form.form().report.view().GridColumnTitleClick(kSizeColumn); });
    timed("sort_texts", [&] { form.form().report.view().GridColumnTitleClick(kName); });
    timed("sort_texts_again", [&] { form.form().report.view().GridColumnTitleClick(kName); });
    search(form);
    timed("collapse", [&] { run(form, Command::kReportFoldAll); });
}

int run(const std::vector<std::string>& words) {
    const std::string mode = words.empty() ? "" : words[0];
    const std::string subject = words.size() > 1 ? words[1] : "";
    Parts parts;
    if (mode == "silent") return silent(parts, subject), 0;
    Clock::time_point painted;
    const Measurement start = [&](WindowForm&) {
        const Clock::time_point from{std::chrono::nanoseconds(std::stoll(subject))};
        tell("start", std::chrono::duration<double, std::milli>(painted - from).count());
        tell("ready", secondsSince(from) * 1e3);
    };
    if (mode == "start") return inWindow(parts, start, &painted);
    if (mode == "scan") return inWindow(parts, [&](WindowForm& form) { scan(form, subject); });
    if (mode == "clicks") return inWindow(parts, [&](WindowForm& form) { clicks(form, subject); });
    if (mode == "looks") return inWindow(parts, [&](WindowForm& form) { looks(form, subject); });
    if (mode == "rows") return inWindow(parts, rows);
    if (mode == "lists" || mode == "nolists")
        return inWindow(parts, [&](WindowForm& form) { lists(form, subject, mode == "lists"); });
    if (mode == "statistics") return inWindow(parts, [&](WindowForm& form) { statistics(form, subject); });
    if (mode == "files") return inWindow(parts, [&](WindowForm& form) { files(form, subject); });
    if (mode == "fileclicks") return inWindow(parts, [&](WindowForm& form) { fileClicks(form, subject); });
    if (mode == "delete") return inWindow(parts, [&](WindowForm& form) { deleteFolder(form, subject); });
    if (mode == "menus") return inWindow(parts, [&](WindowForm& form) { menus(form, subject); });
    if (mode == "map") return inWindow(parts, [&](WindowForm& form) { map(form, subject); });
    if (mode == "analyse") return inWindow(parts, analyse);
    std::fputs("Usage: see the top of bench/window_views.cpp\n", stderr);
    return 2;
}

}  // namespace
}  // namespace hl

int main(int argc, char** argv) {
    return hl::run(std::vector<std::string>(argv + 1, argv + argc));
}
