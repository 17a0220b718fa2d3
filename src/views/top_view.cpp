#include "views/top_view.h"

#include "base/text.h"

namespace hl {

namespace {

const ListTraits kTopTraits = {
    .grid = GridId::kTop,
    .family = "List_TOP_",
    .events = "lvwTOP_",
    .mouseUp = "lvwTOP_MouseUp",
    .fileStat = "List_TOP_ShowFileStat",
    .searchText = Command::kTopSearchText,
    .table = kTopTable,
    .showIcons = &Options::ShowIconsTop,
    .hitLoadsIcons = true,
    .keysShowPreview = true,
};

}  // namespace

TopView::TopView(const ListParts& parts, Grid& lvwTOP, CommandBar& cbrTOP)
    : ListView(kTopTraits, parts, lvwTOP, cbrTOP) {}

void TopView::Toplist_ShowSelectedFilesize() {
    guarded(parts_.scan.diagnostics, [&] { parts_.host.setSecondPanel(selectedFiles()); });
}

void TopView::MouseMove(Row row) {
    guarded(parts_.scan.diagnostics, {.routine = "lvwTOP_MouseMove"}, [&] {
        // If the noted row is gone, it has no note; another row may have its number now.
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
    parts_.options.TOPmaxcount = topCountOf(text);
}

void TopView::countLeft() {
    guarded(parts_.scan.diagnostics, {.routine = "cbrTOP_ControlNotify"}, [&] {
        const auto typed = parseNumber(bar_.textOf(idOf(Command::kTopCount)));
        countTyped(bar_.textOf(idOf(Command::kTopCount)));
        bar_.setText(idOf(Command::kTopCount), std::to_string(parts_.options.TOPmaxcount));
        const bool usable = typed && *typed >= kLeastTopCount;  // False for NaN, too.
        if (!usable) parts_.window.bar(BarId::kTop).focusEdit(idOf(Command::kTopCount));
    });
}

}  // namespace hl
