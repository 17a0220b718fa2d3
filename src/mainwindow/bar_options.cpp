#include "mainwindow/bar_options.h"

#include <string>

#include "mainwindow/command_table.h"
#include "robustness/trap.h"

namespace hl {

namespace {

using Use = KeptOption::Use;

bool isOn(const CommandRow& row, Flag value) {
    if (row.kept.use == Use::kChooses) return value == row.value;
    return row.kept.use == Use::kDecimals ? value == 1 : value != 0;
}

bool savesOption(const CommandRow& row) {
    return row.kept.use != Use::kNone && row.kept.use != Use::kChooses;
}

}  // namespace

void optionsToBar(const Options& options, CommandBar& bar) {
    for (const CommandRow& row : commandsOf(bar.id()))
        if (row.kept.use != Use::kNone) bar.setChecked(idOf(row.command), isOn(row, row.kept.field(options)));
    if (bar.id() == BarId::kTop) bar.setText(idOf(Command::kTopCount), std::to_string(options.TOPmaxcount));
}

void barsToOptions(const Bars& bars, Options& options) {
    for (const CommandBar* bar : bars.all())
        for (const CommandRow& row : commandsOf(bar->id()))
            if (savesOption(row)) row.kept.field(options) = bar->isChecked(idOf(row.command)) ? 1 : 0;
    options.TOPmaxcount = topCountOf(bars.cbrTOP.textOf(idOf(Command::kTopCount)));
}

void Change_ToolbarIconSize(Bars& bars, Diagnostics& diagnostics) {
    guarded(diagnostics, [&] {
        const bool large = bars.cbrMain.isChecked(idOf(Command::kLargeIcons));
        for (CommandBar* bar : bars.all()) bar->setLargeIcons(large);
    });
}

void Change_Toolbar_IconText(Bars& bars, Diagnostics& diagnostics) {
    guarded(diagnostics, [&] {
        const bool text = bars.cbrMain.isChecked(idOf(Command::kIconText));
        for (CommandBar* bar : bars.all()) bar->setTextBelowIcons(text);
    });
}

}  // namespace hl
