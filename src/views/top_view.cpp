#include "views/top_view.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/text.h"
#include "views/list_columns.h"
#include "views/size_display.h"

namespace hl {

namespace {

const ListTraits kTraits = {
    .grid = GridId::kTop,
    .bar = BarId::kTop,
    .family = "List_TOP_",
    .events = "lvwTOP_",
    .mouseUp = "lvwTOP_MouseUp",
    .fileStat = "List_TOP_ShowFileStat",
    .fit = 324,
    .fullView = 323,
    .save = 325,
    .print = 326,
    .preview = 318,
    .split = 319,
    .sizeColumn = kTopSize,
    .sizeMode = &Options::FileSizeFormatTop,
    .decimals = &Options::SizeFormatNachkommastellenTop,
    .setSizeFormat = List_TOP_Set_SizeFormat,
    .columns = [](Options& options) { return std::span<Flag>(options.TopColumn); },
    .showIcons = &Options::ShowIconsTop,
    .hitLoadsIcons = true,
    .keysShowStatus = true,
};

constexpr std::int32_t kLeastCount = 5;

std::int32_t countOf(const std::string& text) {
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    const auto number = parseNumber(text);
    if (!number || std::isnan(*number)) return kUsualTopCount;
    return static_cast<std::int32_t>(std::lround(std::clamp<double>(*number, kLeastCount, kMost)));
}

}  // namespace

TopView::TopView(const ListParts& parts, Grid& lvwTOP, CommandBar& cbrTOP)
    : ListView(kTraits, parts, lvwTOP, cbrTOP) {}

void TopView::Toplist_ShowSelectedFilesize() {
    trapped("Toplist_ShowSelectedFilesize", [&] { parts_.host.setSecondPanel(selectedFiles()); });
}

void TopView::MouseMove(Row row) {
    trapped("lvwTOP_MouseMove", [&] {
        // The row noted last may be gone, and then has no note; another may have its number now.
        if (grid_.rowCount() == 0 || (row == noted_ && (row == kNoRow || !grid_.rowNote(row).empty())))
            return;
        if (noted_ != kNoRow && !grid_.rowNote(noted_).empty()) grid_.setRowNote(noted_, "");
        noted_ = row;
        if (row == kNoRow) return;
        const std::string folder(grid_.cellText(row, kFilePath));
        grid_.setRowNote(row, " " + folder + " ");
    });
}

void TopView::countTyped(const std::string& text) {
    parts_.options.TOPmaxcount = countOf(text);
}

void TopView::countLeft() {
    trapped("cbrTOP_ControlNotify", [&] {
        const std::string text = bar_.textOf(kTopCountBox);
        const auto number = parseNumber(text);
        parts_.options.TOPmaxcount = countOf(text);
        if (number && *number >= kLeastCount) return;
        bar_.setText(kTopCountBox, std::to_string(parts_.options.TOPmaxcount));
        parts_.window.focusEdit(BarId::kTop, kTopCountBox);
    });
}

}  // namespace hl
