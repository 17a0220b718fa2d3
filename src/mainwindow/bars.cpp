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

int keyCodeOf(std::string_view key) {
    constexpr std::string_view kShift = "Shift+";
    if (key.empty()) return 0;
    if (key.starts_with(kShift)) return keyCodeOf(key.substr(kShift.size())) | kKeyWithShift;
    const auto number = key.front() == 'F' ? parseInteger(key.substr(1)) : std::nullopt;
    if (number && *number >= 1 && *number <= kFunctionKeys) return kKeyF1 - 1 + static_cast<int>(*number);
    return static_cast<unsigned char>(upperCase(key).front());
}

// New, Start and Stop show their texts, because everybody looks for them first; no drawing tells of colours.
bool showsCaption(Command command) {
    return command == Command::kNewSource || command == Command::kStart || command == Command::kStop ||
           command == Command::kMapColours;
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
    entry.rank = row.rank;
    entry.showsCaption = showsCaption(row.command);
    return entry;
}

// Sets what belongs to no option: at the start there is nothing to stop or to take back, and the report
// always shows.
void checkMain(CommandBar& bar) {
    for (const Command command : {Command::kStop, Command::kTakeBack}) bar.setEnabled(idOf(command), false);
    bar.setChecked(idOf(Command::kShowReport), true);
}

void addLanguages(CommandBar& bar, const Texts& texts) {
    for (const CommandRow& row : languageCommands(texts.languages())) {
        bar.add(entryOf(row, texts), idOf(row.parent));
        bar.setChecked(idOf(row.command), row.value == texts.languageId());
    }
}

// The entries are those of the bar once more: the first one with an id keeps what is checked.
void addColumnsMenu(CommandBar& bar, const Texts& texts) {
    BarEntry popup{.id = idOf(Command::kColumnsMenu)};
    for (const CommandRow& row : commandsOf(bar.id())) {
        if (!switchesColumn(row)) continue;
        popup.list.push_back(entryOf(row, texts));
        popup.list.back().beginGroup = false;
    }
    if (!popup.list.empty()) bar.addPopup(std::move(popup));
}

void buildBar(CommandBar& bar, const BarSources& sources) {
    guarded(sources.diagnostics, {.routine = barRows()[static_cast<std::size_t>(bar.id())].builder}, [&] {
        if (bar.id() == BarId::kMain)
            for (const Command popup : {Command::kMenuOfSelectedFolders, Command::kMenuOfStatus})
                bar.addPopup({.id = idOf(popup)});
        for (const CommandRow& row : commandsOf(bar.id()))
            if (row.command != Command::kHomepage || sources.homepage)
                bar.add(entryOf(row, sources.texts), idOf(row.parent));
        addColumnsMenu(bar, sources.texts);
        if (bar.id() == BarId::kMain) addLanguages(bar, sources.texts);
        if (bar.id() == BarId::kMain) checkMain(bar);
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

std::array<CommandBar, kBarCount> Bars::named() {
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
        return std::array<CommandBar, kBarCount>{CommandBar(static_cast<BarId>(I), barRows()[I].name)...};
    }
    (std::make_index_sequence<kBarCount>());
}

void initAllBars(Bars& bars, const BarSources& sources) {
    Init_Commandbar(bars, sources);
    for (CommandBar* bar : bars.all()) buildBar(*bar, sources);
}

}  // namespace hl
