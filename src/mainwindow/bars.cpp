#include "mainwindow/bars.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/text.h"
#include "mainwindow/bar_rows.h"
#include "robustness/trap.h"

namespace hl {

namespace {

constexpr int kKeyF1 = 112;
constexpr int kFunctionKeys = 12;

// New, Start and Stop: what everybody looks for first.
constexpr int kLastOfTheMost = 3;

int keyCodeOf(std::string_view key) {
    if (key.empty()) return 0;
    const auto number = key.front() == 'F' ? parseInteger(key.substr(1)) : std::nullopt;
    if (number && *number >= 1 && *number <= kFunctionKeys) return kKeyF1 - 1 + static_cast<int>(*number);
    return static_cast<unsigned char>(upperCase(key).front());
}

}  // namespace

void AddControl(CommandBar& bar, const ControlSpec& spec, int parent) {
    BarEntry entry;
    entry.id = spec.id;
    entry.kind = spec.kind;
    entry.caption = spec.caption;
    entry.tooltip = spec.tooltip.empty() ? spec.caption : spec.tooltip;
    if (spec.icon != -1) entry.icon = spec.icon;
    entry.beginGroup = spec.beginGroup;
    entry.key = keyCodeOf(spec.key);
    entry.width = spec.width;
    entry.showsCaption = bar.id() == BarId::kMain && spec.id <= kLastOfTheMost;
    bar.add(std::move(entry), parent);
}

namespace bar_rows {

void addRow(CommandBar& bar, const EntryRow& row, const Texts& texts,
            std::initializer_list<SimpleValue> arguments) {
    ControlSpec spec;
    spec.kind = row.kind;
    spec.id = row.id;
    spec.caption = texts.TL(row.caption.id, row.caption.german, arguments);
    spec.icon = row.icon;
    spec.beginGroup = row.group == kGroup;
    spec.tooltip = texts.TL(row.tooltip.id, row.tooltip.german);
    spec.key = row.key;
    spec.width = row.width;
    AddControl(bar, spec, row.parent);
}

void addRows(CommandBar& bar, std::span<const EntryRow> rows, const Texts& texts) {
    for (const EntryRow& row : rows) addRow(bar, row, texts);
}

}  // namespace bar_rows

void Init_Commandbar(Bars& bars, const BarSources& sources) {
    guarded(sources.diagnostics, "Init_Commandbar", "frmMain", [&] {
        bars.cbrMain.setTitle(sources.texts.TL(9227, "Symbolleiste"));
        for (CommandBar* bar : bars.all()) {
            bar->setLargeIcons(false);
            bar->setTextBelowIcons(false);
            bar->setClips(false);
        }
    });
}

void initAllBars(Bars& bars, const BarSources& sources) {
    Init_Commandbar(bars, sources);
    Init_ToolbarMain(bars, sources);
    Init_Toolbar_Files(bars, sources);
    Init_Toolbar_Drives(bars, sources);
    Init_Toolbar_Folders(bars, sources);
    Init_Toolbar_TOP(bars, sources);
    Init_Toolbar_Hardlinks(bars, sources);
    Init_Toolbar_Junctions(bars, sources);
}

}  // namespace hl
