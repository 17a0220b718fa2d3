// The rows; what the user does.
#include "views/changes_view.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/row_text.h"
#include "base/text.h"
#include "grid/no_redraw.h"
#include "scan/rollup.h"

namespace hl {

namespace {

const ListTraits kChangesTraits = {
    .grid = GridId::kChanges,
    .family = "List_Changes_",
    .events = "lvwChanges_",
    .mouseUp = "lvwChanges_MouseUp",
    .fileStat = "List_Changes_ShowFileStat",
    .searchText = Command::kChangesSearchText,
    .table = kChangesTable,
    .hasFiles = false,
    .searched = kChangeWas,
};

// In the order of ShownChange::State.
constexpr RowText kStateTexts[] = {
    TL(9063, "gewachsen"), TL(9746, "geschrumpft"), TL(9747, "neu"), TL(9066, "weg"), TL(9067, "umbenannt"),
};

std::uint64_t amountOf(const ShownChange& change) {
    return change.now > change.before ? change.now - change.before : change.before - change.now;
}

double bytesOf(std::uint64_t bytes) {
    return static_cast<double>(bytes);
}

void keepLargest(std::vector<ShownChange>& changes, std::size_t most) {
    if (changes.size() <= most) return;
    const auto end = changes.begin() + static_cast<std::ptrdiff_t>(most);
    std::nth_element(changes.begin(), end, changes.end(), [](const ShownChange& a, const ShownChange& b) {
        return std::pair(amountOf(b), std::string_view(a.path)) <
               std::pair(amountOf(a), std::string_view(b.path));
    });
    changes.erase(end, changes.end());
}

/// The sources of the report, each with a slash at its end.
std::vector<std::string> sourcesOf(const Grid& report, const PathRules& paths) {
    std::vector<std::string> sources;
    for (Row row = report.firstRoot(); row != kNoRow; row = report.nextSibling(row))
        sources.push_back(Report_GetFullpathOfNode(report, row, true, paths));
    return sources;
}

// Returns the source that holds a path, the longest if several do; empty if none does, or for a source.
std::string_view sourceAbove(std::string_view path, const std::vector<std::string>& sources) {
    std::string_view longest;
    for (const std::string& source : sources)
        if (path.size() > source.size() && path.starts_with(source) && source.size() > longest.size())
            longest = source;
    return longest;
}

}  // namespace

ChangesView::ChangesView(const ListParts& parts, Grid& lvwChanges, CommandBar& cbrChanges)
    : ListView(kChangesTraits, parts, lvwChanges, cbrChanges) {}

// --- the rows

void ChangesView::show(std::vector<ShownChange> changes) {
    trapped(kChangesTraits.family, [&] {
        found_ = changes.size();
        filled_ = true;
        keepLargest(changes, kMostRows);
        fill(changes);
        rowsCame();
    });
}

void ChangesView::clear() {
    trapped(kChangesTraits.family, [&] {
        found_ = 0;
        filled_ = false;
        grid_.clear();
        rowsCame();
    });
}

void ChangesView::fill(const std::vector<ShownChange>& changes) {
    const std::vector<std::string> sources = sourcesOf(parts_.scan.tvwPL, parts_.scan.paths);
    const Texts& texts = parts_.scan.texts;
    const NoRedraw off(grid_);
    grid_.clear();
    double most = 0;
    for (const ShownChange& change : changes) {
        const std::string_view source = sourceAbove(change.path, sources);
        const RowText word = kStateTexts[static_cast<std::size_t>(change.state)];
        const std::string_view was = change.was;
        const double before = bytesOf(change.before), now = bytesOf(change.now);
        const Row row = grid_.addRow(kNoRow, std::string_view(change.path).substr(source.size()));
        grid_.setCellText(row, kChangePath, source);
        grid_.setNumber(row, kChangeState, static_cast<double>(change.state));
        grid_.setCellText(row, kChangeWord, texts.TL(word.id, word.german));
        grid_.setNumber(row, kChangeBefore, before);
        grid_.setNumber(row, kChangeNow, now);
        grid_.setNumber(row, kChangeSize, now - before);
        grid_.setNumber(row, kChangeAmount, bytesOf(amountOf(change)));
        grid_.setCellText(row, kChangeWas, was.starts_with(source) ? was.substr(source.size()) : was);
        most = std::max(most, bytesOf(amountOf(change)));
    }
    grid_.changeColumn(kChangesTable.columnOf(kChangeSize)).barMost = most;
    sortRows();
}

void ChangesView::rowsCame() {
    bar_.setCaption(idOf(Command::kChangesTitle), title());
    rowsChanged();
    pane_.refresh();
    parts_.host.listFilled(traits_.grid);
    if (parts_.host.listShows(traits_.grid)) ShowFileStat();
}

std::string ChangesView::title() const {
    const Texts& texts = parts_.scan.texts;
    if (found_ <= kMostRows) return texts.TL(9061, "Veränderungen");
    const NumberFormat& numbers = parts_.scan.numbers;
    return texts.TL(9077, "Veränderungen (die %1 größten von %2)",
                    {formatCount(kMostRows, numbers), formatCount(found_, numbers)});
}

std::string ChangesView::total() const {
    return parts_.scan.texts.TL(9079, "%1 Ordner", {formatCount(grid_.rowCount(), parts_.scan.numbers)});
}

ShownChange::State ChangesView::stateOf(Row row) const {
    return static_cast<ShownChange::State>(static_cast<int>(grid_.number(row, kChangeState)));
}

// --- what the user does

void ChangesView::goToFolder(bool opensReport) {
    const Row row = grid_.currentRow();
    if (ignoresInput() || row == kNoRow || !grid_.selected(row)) return;
    const std::string path = pathOf(row);
    if (stateOf(row) != ShownChange::State::kGone) return parts_.host.showInReport(path, opensReport);
    parts_.host.setSecondPanel(parts_.scan.texts.TL(9640, "'%1' ist nicht mehr da.", {visible(path)}));
}

void ChangesView::MouseUp(Row row, MouseButton button, bool shift, Point at) {
    ListView::MouseUp(row, button, shift, at);
    guarded(parts_.scan.diagnostics, {.routine = traits_.mouseUp}, [&] {
        if (row != kNoRow && button == MouseButton::kLeft && grid_.selectedCount() == 1) goToFolder(false);
    });
}

void ChangesView::DblClick() {
    guarded(parts_.scan.diagnostics, {.routine = event("ItemDblClick").c_str()}, [&] { goToFolder(true); });
}

void ChangesView::KeyUp(int key) {
    if (key == kKeyReturn) return DblClick();
    ListView::KeyUp(key);
}

}  // namespace hl
