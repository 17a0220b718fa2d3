#include "mainwindow/bar_control.h"

#include <optional>

#include "mainwindow/command_table.h"
#include "mainwindow/main_form.h"
#include "robustness/trap.h"
#include "scan/on_disk.h"

namespace hl {

namespace {

std::optional<CommandRow> rowOf(Command command, const Texts& texts) {
    if (const CommandRow* row = commandRow(command)) return *row;
    for (const CommandRow& row : languageCommands(texts.languages()))
        if (row.command == command) return row;
    return std::nullopt;
}

}  // namespace

void BarControl::execute(BarId id, int command) {
    form_.sources.duringCommand([&] {
        if (id != BarId::kMain && !form_.session.state.ScanActive) followGrid(gridOf(id));
        const CommandBar& bar = form_.bar(id);
        guarded(form_.services().diagnostics, {.routine = (bar.name() + "_Execute").c_str()}, [&] {
            const BarEntry* entry = bar.find(command);
            const auto row = rowOf(commandOf(id, command), form_.services().texts);
            if (entry == nullptr || !row || !entry->enabled || form_.closed) return;
            keep(*row);
            if (row->run != nullptr) row->run(form_, *row);
        });
    });
}

// Changes the option of the clicked entry.
void BarControl::keep(const CommandRow& row) {
    using Use = KeptOption::Use;
    Options& options = form_.session.options;
    CommandBar& bar = form_.bar(barOf(row.command));
    if (row.kept.use == Use::kToggles || row.kept.use == Use::kDecimals) {
        bar.toggle(idOf(row.command));
        row.kept.field(options) = bar.isChecked(idOf(row.command)) ? 1 : 0;
    }
    if (row.kept.use != Use::kChooses) return;
    row.kept.field(options) = static_cast<Flag>(row.value);
    for (const CommandRow& other : commandsOf(bar.id()))
        if (other.kept.field == row.kept.field)
            bar.setChecked(idOf(other.command), other.command == row.command);
}

void BarControl::returnIn(Command command) {
    const CommandRow* row = commandRow(command);
    if (row != nullptr && row->run != nullptr && !form_.session.state.ScanActive) row->run(form_, *row);
}

void BarControl::openColumnsMenu(BarId bar, Point at) {
    form_.sources.duringCommand([&] { form_.window->bar(bar).showPopup(idOf(Command::kColumnsMenu), at); });
}

bool BarControl::isThere(Needs needs, const Grid& grid) const {
    if (needs == Needs::kOnDisk)
        return grid.currentRow() == kNoRow ? grid.rowCount() > 0 : isOnDisk(form_.scan, grid.currentRow());
    return (needs == Needs::kRows ? grid.rowCount() : grid.selectedCount()) > 0;
}

void BarControl::followGrid(GridId id) {
    const Grid& grid = form_.session.grid(id);
    for (CommandBar* bar : form_.bars.all()) {
        if (bar->id() == BarId::kMain || gridOf(bar->id()) != id) continue;
        for (const CommandRow& row : commandsOf(bar->id())) {
            if (row.needs == Needs::kNothing) continue;
            bar->setEnabled(idOf(row.command), isThere(row.needs, grid));
        }
    }
}

void BarControl::followAllGrids() {
    for (std::size_t i = 0; i < kGridCount; ++i) followGrid(static_cast<GridId>(i));
}

void BarControl::editChanged(BarId id, int entry, const std::string& text) {
    guarded(form_.services().diagnostics, [&] {
        form_.bar(id).setText(entry, text);
        if (commandOf(id, entry) == Command::kTopCount) form_.lists.top().countTyped(text);
    });
}

void BarControl::editKeyDown(BarId id, int entry, int key) {
    if (key == kKeyReturn) returnIn(commandOf(id, entry));
}

void BarControl::editLeft(BarId id, int entry) {
    if (commandOf(id, entry) == Command::kTopCount && !form_.closed) form_.lists.top().countLeft();
}

void BarControl::barResized(BarId id) {
    if (form_.closed) return;
    guarded(form_.services().diagnostics, {.routine = "cbr_Resize"},
            [&] { form_.looks.panes().cbrResize(id); });
}

}  // namespace hl
