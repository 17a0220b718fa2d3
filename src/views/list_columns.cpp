#include "views/list_columns.h"

#include <algorithm>

#include "app/option_table.h"
#include "base/date_format.h"
#include "grid/mask.h"
#include "grid/no_redraw.h"
#include "platform/percent_bar.h"
#include "scan/file_columns.h"
#include "views/column_masks.h"

namespace hl {

namespace {

// A column without a key in the table of options would never show.
template <std::size_t N>
constexpr bool areKept(const std::array<ListColumn, N>& columns) {
    return std::ranges::any_of(kOptionTable, [&](const OptionKey& key) {
        using Flags = ColumnFlags Options::*;
        return std::holds_alternative<Flags>(key.field) &&
               std::get<Flags>(key.field) == columns.back().shown.columns && key.columns == N - 1;
    });
}
static_assert(areKept(kFilesColumns) && areKept(kTopColumns) && areKept(kHardlinksColumns) &&
                  areKept(kFindColumns),
              "option_table.h must have the number of a list's columns but the first");

/// How sizes are shown.
struct SizeStyle {
    int mode = kModeBytes;
    bool decimals = false;
};

constexpr std::uint32_t kShareColor = 0x0000FF;
constexpr RowText kSizeAlone = TL(3623, "Größe");

// Sets what the unit and the decimals decide.
void styleSizes(GridColumn& shown, const ListColumn& column, const SizeStyle& style, const Texts& texts) {
    using enum ColumnKind;
    if (column.kind == kPercent) shown.mask = style.decimals ? kPercentMaskDecimals : kPercentMask;
    if (column.kind != kSize && column.kind != kSizeWithUnit && column.kind != kChange) return;
    const SizeUnit unit = sizeUnit(style.mode);
    const bool known = unit.caption.id != 0;  // A mode that cannot be chosen leaves the unit as it is.
    if (known) shown.unit = static_cast<SizeMode>(style.mode);
    const bool fitting = style.mode == kModeAuto;
    const bool behind = column.kind == kSizeWithUnit && known && unit.decimals;
    shown.mask = sizeMask(style.decimals && (unit.decimals || fitting), behind ? unit.name : "");
    if (column.kind == kSizeWithUnit) return;
    const RowText alone = column.titleAlone.id != 0 ? column.titleAlone : kSizeAlone;
    const RowText named = (fitting ? sizeUnit(kModeBytes) : unit).title;
    const std::string title =
        texts.TL(column.title.id, column.title.german, {texts.TL(named.id, named.german)});
    shown.savedTitle = fitting ? title : "";
    shown.title = fitting ? texts.TL(alone.id, alone.german) : title;
}

std::string maskOf(const ListColumn& column, const Options& options, const Texts& texts) {
    using enum ColumnKind;
    switch (column.kind) {
        case kCount:
            return std::string(kCountMask);
        case kDate:
            return dateMask(options.DateFormat);
        case kBar:
            return std::string(kBarMask);
        case kWords: {
            std::string mask;
            for (const RowText& word : column.words) mask += texts.TL(word.id, word.german) + ";";
            return mask;
        }
        default:
            return {};
    }
}

bool isNumber(ColumnKind kind) {
    using enum ColumnKind;
    return kind == kSize || kind == kSizeWithUnit || kind == kChange || kind == kPercent || kind == kCount ||
           kind == kBar;
}

GridColumn columnOf(const ListTable& table, const ListColumn& column, const Options& options,
                    const Texts& texts) {
    GridColumn shown = {
        .title = texts.TL(column.title.id, column.title.german),
        .key = std::string(table.keyOf(column.cell)),
        .mask = maskOf(column, options, texts),
        .alignment = isNumber(column.kind) ? Alignment::kRight : Alignment::kLeft,
        .visible = column.command == Command::kNone ? column.shownAtFirst : column.shown(options) != 0,
        .roundsUnit = column.kind != ColumnKind::kSizeWithUnit,
        .saved = column.saved};
    if (column.kind == ColumnKind::kBar) shown.barColor = column.barColor;
    if (column.barMore != kNoCell) shown.barMoreKey = table.keyOf(column.barMore);
    if (column.kind == ColumnKind::kPercent) shown.barColor = kShareColor, shown.barBehind = true;
    if (column.kind == ColumnKind::kChange)
        shown.barColor = kAboveColor, shown.barTwoSided = shown.showsSign = true;
    styleSizes(shown, column, {}, texts);
    return shown;
}

}  // namespace

void Init_List(Grid& grid, const ListTable& table, const Options& options, const Texts& texts) {
    const NoRedraw off(grid);
    grid.clear();
    std::vector<GridColumn> columns;
    for (const ListColumn& column : table.columns) columns.push_back(columnOf(table, column, options, texts));
    grid.setColumns(std::move(columns));
    grid.levelSort(0) = {
        .key = std::string(table.keyOf(table.sortedBy)), .numbers = true, .descending = true};
}

void setDateFormat(Grid& grid, const ListTable& table, const Options& options) {
    if (grid.columns().empty()) return;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (table.columns[i].kind == ColumnKind::kDate)
            grid.changeColumn(i).mask = dateMask(options.DateFormat);
}

std::string shownDate(const Options& options, std::int64_t seconds) {
    const auto mask = parseMask(dateMask(options.DateFormat));
    return mask ? maskedDate(*mask, localTime(seconds)) : std::string();
}

void showSizes(Grid& grid, const ListTable& table, const Options& options, const Texts& texts) {
    const SizeStyle style = {options.*table.sizeMode, options.*table.decimals != 0};
    const NoRedraw off(grid);
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        styleSizes(grid.changeColumn(i), table.columns[i], style, texts);
}

}  // namespace hl
