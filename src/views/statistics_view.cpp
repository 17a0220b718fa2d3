// What the list follows; its rows; what the user does.
#include "views/statistics_view.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "base/row_text.h"
#include "base/text.h"
#include "grid/no_redraw.h"
#include "scan/left_out.h"
#include "scan/rollup.h"
#include "views/group_texts.h"

namespace hl {

namespace {

const ListTraits kStatisticsTraits = {
    .grid = GridId::kStatistics,
    .family = "List_Statistics_",
    .events = "lvwStatistics_",
    .mouseUp = "lvwStatistics_MouseUp",
    .fileStat = "List_Statistics_ShowFileStat",
    .searchText = Command::kStatisticsSearchText,
    .table = kStatisticsTable,
    .hasFiles = false,
};

constexpr std::uint32_t kDeepestRow = 2;  // Group, kind, ending.
// A row counts no more files than a row of the report does.
constexpr std::uint64_t kMostFiles = std::numeric_limits<std::int32_t>::max();

constexpr RowText kByKind = TL(9703, "Nach Art"), kByAge = TL(9704, "Nach Alter"),
                  kByOwner = TL(9705, "Nach Eigentümer");

double bytesOf(std::uint64_t bytes) {
    return static_cast<double>(bytes);
}

}  // namespace

StatisticsView::StatisticsView(const ListParts& parts, Grid& lvwStatistics, CommandBar& cbrStatistics)
    : ListView(kStatisticsTraits, parts, lvwStatistics, cbrStatistics) {}

// --- what the list follows

Row StatisticsView::rowOfReport() const {
    const Grid& report = parts_.scan.tvwPL;
    const Row current = report.currentRow();
    if (report.selectedCount() == 0 || (current != kNoRow && report.selected(current))) return current;
    return report.selectedRows().front();
}

void StatisticsView::follow() {
    trapped(kStatisticsTraits.family, [&] {
        const Grid& report = parts_.scan.tvwPL;
        Statistics& statistics = *parts_.scan.statistics;
        const Row row = rowOfReport();
        const std::string path =
            row == kNoRow ? "" : Report_GetFullpathOfNode(report, row, false, parts_.scan.paths);
        Shown now{statistics.version(), row, path, parts_.options.ReckonOnDisk != 0};
        if (wasFilled_ && now == shown_) return;
        shown_ = std::move(now);
        wasFilled_ = true;
        const auto sums = row == kNoRow ? std::nullopt : statistics.of(report, row);
        isNotKept_ = row != kNoRow && !sums;
        fill(sums.value_or(StatisticsSums()));
        Resize_Columns(false);
        rowsReplaced();
        pane_.refresh();
        ShowFileStat();
    });
}

std::string StatisticsView::title() const {
    if (shown_.row == kNoRow) return parts_.scan.texts.TL(9700, "Statistik");
    const std::string title = parts_.scan.texts.TL(9706, "Statistik von '%1'", {visible(shown_.path)});
    return titleWithLeftOut(parts_.scan, title, parts_.scan.tvwPL.unshown(shown_.row));
}

std::string StatisticsView::total() const {
    return parts_.scan.texts.TL(9520, "%1 Datei(en)", {formatCount(all_.files, parts_.scan.numbers)});
}

// --- its rows

void StatisticsView::fill(const StatisticsSums& sums) {
    const Texts& texts = parts_.scan.texts;
    const bool first = grid_.rowCount() == 0;
    const std::set<std::string> open = unfolded();
    const std::string current = grid_.currentRow() != kNoRow ? keyOf(grid_.currentRow()) : "";
    const NoRedraw off(grid_);
    grid_.clear();
    all_ = sums.all;
    if (all_.files == 0) return;
    const auto group = [&](const RowText& title) {
        const Row row = add(kNoRow, StatisticsRow::kGroup, texts.TL(title.id, title.german), all_, 0);
        grid_.setExpanded(row, first);
        return row;
    };
    addKinds(group(kByKind), sums);
    const Row ages = group(kByAge);
    for (std::size_t i = 0; i < kAgeClasses; ++i)
        if (sums.ages[i].files > 0)
            add(ages, StatisticsRow::kAge, texts.TL(kAgeTexts[i].id, kAgeTexts[i].german), sums.ages[i],
                static_cast<double>(i));
    const Row owners = group(kByOwner);
    for (const OwnerSums& each : sums.owners)
        add(owners, StatisticsRow::kOwner, ownerName(each.owner), each.sums, each.owner);
    sortRows();
    unfold(open, current);
}

void StatisticsView::addKinds(Row group, const StatisticsSums& sums) {
    const Texts& texts = parts_.scan.texts;
    std::array<FileSums, kFileKinds> kinds;
    for (const EndingSums& each : sums.endings) kinds[static_cast<std::size_t>(each.kind)].add(each.sums);
    std::array<Row, kFileKinds> rows{};
    for (std::size_t i = 0; i < kFileKinds; ++i)
        if (kinds[i].files > 0)
            rows[i] = add(group, StatisticsRow::kKind, texts.TL(kKindTexts[i].id, kKindTexts[i].german),
                          kinds[i], static_cast<double>(i));
    for (const EndingSums& each : sums.endings) {
        const std::string text = each.isRest           ? texts.TL(9708, "(weitere Endungen)")
                                 : each.ending.empty() ? texts.TL(9707, "(ohne Endung)")
                                                       : "." + each.ending;
        add(rows[static_cast<std::size_t>(each.kind)], StatisticsRow::kEnding, text, each.sums,
            each.isRest ? 1 : 0);
    }
}

Row StatisticsView::add(Row above, StatisticsRow what, std::string_view text, const FileSums& sums,
                        double number) {
    const bool onDisk = parts_.options.ReckonOnDisk != 0;
    const double part = bytesOf(onDisk ? sums.blocks : sums.bytes);
    const double whole = bytesOf(onDisk ? all_.blocks : all_.bytes);
    const Row row = grid_.addRow(above, text);
    grid_.setNumber(row, kStatisticsRow, static_cast<double>(what));
    grid_.setNumber(row, kStatisticsSize, bytesOf(sums.bytes));
    grid_.setNumber(row, kStatisticsFiles, static_cast<double>(std::min(sums.files, kMostFiles)));
    grid_.setNumber(row, kStatisticsPercent, whole == 0 ? 0 : roundToHundredths(part * 100 / whole));
    grid_.setNumber(row, kStatisticsDisk, bytesOf(sums.blocks * kBlockBytes));
    grid_.setNumber(row, kStatisticsNumber, number);
    return row;
}

// What names the row in the figures of another folder, too.
std::string StatisticsView::keyOf(Row row) const {
    return std::to_string(static_cast<int>(kindOf(row))).append(grid_.text(row));
}

std::set<std::string> StatisticsView::unfolded() const {
    std::set<std::string> keys;
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.tree().following(row))
        if (grid_.expanded(row)) keys.insert(keyOf(row));
    return keys;
}

void StatisticsView::unfold(const std::set<std::string>& keys, const std::string& current) {
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.tree().following(row)) {
        const std::string key = keyOf(row);
        if (keys.contains(key)) grid_.setExpanded(row, true);
        if (key != current) continue;
        grid_.setCurrentRow(row);
        grid_.setSelected(row, true);
    }
}

StatisticsRow StatisticsView::kindOf(Row row) const {
    return static_cast<StatisticsRow>(static_cast<int>(grid_.number(row, kStatisticsRow)));
}

std::string StatisticsView::ownerName(std::uint32_t owner) const {
    OwnerNames* names = parts_.scan.owners;
    return names != nullptr ? names->nameOf(owner) : "#" + std::to_string(owner);
}

// The groups keep their places, since all of them have the same sums.
void StatisticsView::sortRows() {
    for (std::uint32_t level = 1; level <= kDeepestRow; ++level) grid_.levelSort(level) = grid_.levelSort(0);
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.tree().following(row))
        if (grid_.hasChildren(row)) grid_.sortChildren(row);
}

// --- what the user does

std::string StatisticsView::filterOf(Row row) const {
    const double number = grid_.number(row, kStatisticsNumber);
    switch (kindOf(row)) {
        case StatisticsRow::kKind:
            return filterOfKind(static_cast<int>(number));
        case StatisticsRow::kEnding:
            if (number != 0) return {};
            return filterOfEnding(grid_.text(row).starts_with('.') ? grid_.text(row).substr(1) : "");
        case StatisticsRow::kAge:
            return filterOfAge(static_cast<int>(number));
        case StatisticsRow::kOwner:
            return filterOfOwner(static_cast<std::uint32_t>(number));
        case StatisticsRow::kGroup:
            break;
    }
    return {};
}

void StatisticsView::DblClick() {
    guarded(parts_.scan.diagnostics, {.routine = event("ItemDblClick").c_str()}, [&] {
        const Row row = grid_.currentRow();
        if (parts_.scan.state.ScanActive || row == kNoRow || !grid_.selected(row)) return;
        if (kindOf(row) == StatisticsRow::kGroup) return grid_.setExpanded(row, !grid_.expanded(row));
        const std::string filter = filterOf(row);
        if (!filter.empty()) parts_.host.findFiles(filter);
    });
}

void StatisticsView::KeyUp(int key) {
    if (key == kKeyReturn) return DblClick();
    ListView::KeyUp(key);
}

}  // namespace hl
