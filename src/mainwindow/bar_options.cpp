#include "mainwindow/bar_options.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "robustness/trap.h"

namespace hl {

namespace {

constexpr int kIconSize = 27;
constexpr int kIconText = 34;
constexpr int kFirstColumn = 310;

constexpr CheckedOption kCheckedOptions[] = {
    {BarId::kMain, 60, &Options::CreateListTOP},
    {BarId::kMain, 61, &Options::CreateListHardlink},
    {BarId::kMain, 62, &Options::CreateListJunction},
    {BarId::kMain, 65, &Options::AddHardlinksOnlyOnce},
    {BarId::kMain, 63, &Options::NoHardlinks},
    {BarId::kMain, 68, &Options::ScanHardlinks},
    {BarId::kMain, 64, &Options::FolderColorFade},
    {BarId::kMain, 66, &Options::FolderShowPercentBar},
    {BarId::kMain, 21, &Options::DiskinfoVisible},
    {BarId::kMain, 306, &Options::FilelistVisible},
    {BarId::kMain, 307, &Options::ToplistVisible},
    {BarId::kMain, 308, &Options::HardlinksVisible},
    {BarId::kMain, 309, &Options::JunctionsVisible},
    {BarId::kMain, kIconSize, &Options::BigIcons},
    {BarId::kMain, kIconText, &Options::SymbolText},
    {BarId::kReport, 22, &Options::ColFileVisible},
    {BarId::kReport, 23, &Options::ColFolderVisible},
    {BarId::kReport, 35, &Options::ColPercentVisible},
    {BarId::kFiles, 305, &Options::ShowIcons},
    {BarId::kFiles, 318, &Options::FilePreview},
    {BarId::kFiles, 319, &Options::FilelistTile},
    {BarId::kTop, 305, &Options::ShowIconsTop},
    {BarId::kTop, 318, &Options::FilePreviewTOP},
    {BarId::kTop, 319, &Options::FilelistTileTOP},
    {BarId::kHardlinks, 305, &Options::ShowIconsHardlinks},
    {BarId::kHardlinks, 322, &Options::HardlinkPreview},
    {BarId::kHardlinks, 323, &Options::HardlinksTile},
};

struct SizeButtons {
    BarId bar;
    int first;  ///< The button of bytes; those of the larger units follow it.
    int decimals;
    std::uint8_t Options::*mode;
    Flag Options::*decimalsField;
};

constexpr int kSizeModes = 4;
constexpr SizeButtons kSizeButtons[] = {
    {BarId::kReport, 10, 33, &Options::FileSizeFormat, &Options::SizeFormatNachkommastellenFolders},
    {BarId::kDrives, 201, 205, &Options::FileSizeFormatDrive, &Options::SizeFormatNachkommastellenDrive},
    {BarId::kFiles, 301, 309, &Options::FileSizeFormatFiles, &Options::SizeFormatNachkommastellenFiles},
    {BarId::kTop, 301, 309, &Options::FileSizeFormatTop, &Options::SizeFormatNachkommastellenTop},
    {BarId::kHardlinks, 301, 309, &Options::FileSizeFormatHardlinks,
     &Options::SizeFormatNachkommastellenHardlinks},
};

const SizeButtons* sizeButtonsOf(BarId bar) {
    const auto* found = std::find_if(std::begin(kSizeButtons), std::end(kSizeButtons),
                                     [bar](const SizeButtons& buttons) { return buttons.bar == bar; });
    return found != std::end(kSizeButtons) ? found : nullptr;
}

template <std::size_t N>
void columnsToBar(const std::array<Flag, N>& columns, CommandBar& bar) {
    for (std::size_t i = 0; i < N; ++i) bar.setChecked(kFirstColumn + static_cast<int>(i), columns[i] != 0);
}

template <std::size_t N>
void barToColumns(const CommandBar& bar, std::array<Flag, N>& columns) {
    for (std::size_t i = 0; i < N; ++i)
        columns[i] = bar.isChecked(kFirstColumn + static_cast<int>(i)) ? 1 : 0;
}

}  // namespace

std::span<const CheckedOption> checkedOptions() {
    return kCheckedOptions;
}

void showSizeMode(CommandBar& bar, std::uint8_t mode, Flag decimals) {
    const SizeButtons* buttons = sizeButtonsOf(bar.id());
    if (buttons == nullptr) return;
    for (int i = 0; i < kSizeModes; ++i) bar.setChecked(buttons->first + i, i == mode);
    if (decimals == 1) bar.setChecked(buttons->decimals, true);
}

void optionsToBar(const Options& options, CommandBar& bar) {
    for (const CheckedOption& option : kCheckedOptions)
        if (option.bar == bar.id()) bar.setChecked(option.id, options.*option.field != 0);
    if (const SizeButtons* buttons = sizeButtonsOf(bar.id()))
        showSizeMode(bar, options.*buttons->mode, options.*buttons->decimalsField);
    if (bar.id() == BarId::kFiles) columnsToBar(options.FileColumn, bar);
    if (bar.id() == BarId::kTop) columnsToBar(options.TopColumn, bar);
    if (bar.id() == BarId::kHardlinks) columnsToBar(options.HardlinkColumn, bar);
    if (bar.id() == BarId::kTop) bar.setText(kTopCountBox, std::to_string(options.TOPmaxcount));
}

void barsToOptions(const Bars& bars, Options& options) {
    for (const CheckedOption& option : kCheckedOptions)
        options.*option.field = bars.of(option.bar).isChecked(option.id) ? 1 : 0;
    for (const SizeButtons& buttons : kSizeButtons)
        options.*buttons.decimalsField = bars.of(buttons.bar).isChecked(buttons.decimals) ? 1 : 0;
    barToColumns(bars.cbrFiles, options.FileColumn);
    barToColumns(bars.cbrTOP, options.TopColumn);
    barToColumns(bars.cbrHardlinks, options.HardlinkColumn);
    options.TOPmaxcount = topCountOf(bars.cbrTOP.textOf(kTopCountBox));
}

void Change_ToolbarIconSize(Bars& bars, Diagnostics& diagnostics) {
    guarded(diagnostics, "Change_ToolbarIconSize", "frmMain", [&] {
        const bool large = bars.cbrMain.isChecked(kIconSize);
        for (CommandBar* bar : bars.all()) bar->setLargeIcons(large);
    });
}

void Change_Toolbar_IconText(Bars& bars, Diagnostics& diagnostics) {
    guarded(diagnostics, "Change_Toolbar_IconText", "frmMain", [&] {
        const bool text = bars.cbrMain.isChecked(kIconText);
        for (CommandBar* bar : bars.all()) bar->setTextBelowIcons(text);
    });
}

}  // namespace hl
