#include "mainwindow/bars.h"

#include <utility>

#include "base/text.h"
#include "mainwindow/bar_options.h"
#include "mainwindow/command_table.h"
#include "robustness/trap.h"

namespace hl {

namespace {

constexpr int kKeyF1 = 112;
constexpr int kFunctionKeys = 12;

// The names of the building routines, by BarId.
constexpr const char* kBuilders[kBarCount] = {
    "Init_ToolbarMain", "Init_Toolbar_Folders",   "Init_Toolbar_Drives",   "Init_Toolbar_Files",
    "Init_Toolbar_TOP", "Init_Toolbar_Hardlinks", "Init_Toolbar_Junctions"};

int keyCodeOf(std::string_view key) {
    if (key.empty()) return 0;
    const auto number = key.front() == 'F' ? parseInteger(key.substr(1)) : std::nullopt;
    if (number && *number >= 1 && *number <= kFunctionKeys) return kKeyF1 - 1 + static_cast<int>(*number);
    return static_cast<unsigned char>(upperCase(key).front());
}

// Only New, Start and Stop show their texts, because everybody looks for them first.
bool showsCaption(Command command) {
    return command == Command::kNewSource || command == Command::kStart || command == Command::kStop;
}

BarEntry entryOf(const CommandRow& row, const Texts& texts) {
    BarEntry entry;
    entry.id = idOf(row.command);
    entry.kind = row.kind;
    entry.caption = texts.TL(row.caption.id, row.caption.german, {row.value});
    entry.tooltip = texts.TL(row.tooltip.id, row.tooltip.german);
    if (entry.tooltip.empty()) entry.tooltip = entry.caption;
    if (row.icon != -1) entry.icon = row.icon;
    entry.beginGroup = row.group == Group::kBegins;
    entry.key = keyCodeOf(row.key);
    entry.width = row.width;
    entry.showsCaption = showsCaption(row.command);
    return entry;
}

// Checks entries that belong to no option: the language in use, and the report, which always shows at the
// start.
void checkMain(CommandBar& bar, int language) {
    bar.setEnabled(idOf(Command::kStop), false);
    bar.setChecked(idOf(Command::kShowReport), true);
    for (const CommandRow& row : commandsOf(BarId::kMain))
        if (row.parent == Command::kLanguages) bar.setChecked(idOf(row.command), row.value == language);
}

void buildBar(CommandBar& bar, const BarSources& sources) {
    guarded(sources.diagnostics, {.routine = kBuilders[static_cast<std::size_t>(bar.id())]}, [&] {
        if (bar.id() == BarId::kMain) bar.addPopup({.id = idOf(Command::kMenuOfSelectedFolders)});
        for (const CommandRow& row : commandsOf(bar.id()))
            if (row.command != Command::kHomepage || sources.homepage)
                bar.add(entryOf(row, sources.texts), idOf(row.parent));
        if (bar.id() == BarId::kMain) checkMain(bar, sources.texts.languageId());
        optionsToBar(sources.options, bar);
    });
}

void Init_Commandbar(Bars& bars, const BarSources& sources) {
    guarded(sources.diagnostics, [&] {
        bars.cbrMain.setTitle(sources.texts.TL(9227, "Symbolleiste"));
        for (CommandBar* bar : bars.all()) {
            bar->setLargeIcons(false);
            bar->setTextBelowIcons(false);
            bar->setClips(false);
        }
    });
}

}  // namespace

void initAllBars(Bars& bars, const BarSources& sources) {
    Init_Commandbar(bars, sources);
    for (CommandBar* bar : bars.all()) buildBar(*bar, sources);
}

}  // namespace hl
