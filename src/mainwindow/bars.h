// The seven command bars of the main window: which entries they have, and what these are called.
//
// The tables of the entries are in bars_main.cpp and bars_views.cpp; what their commands do is told where
// they are dispatched. An id belongs to one bar alone: in another bar the same number is another command.
// Thread of the logic only.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "app/options.h"
#include "app/texts.h"
#include "platform/command_bar.h"
#include "robustness/debug.h"

namespace hl {

/// The bars, owned by the main form.
struct Bars {
    CommandBar cbrMain{BarId::kMain, "cbrMain"};
    CommandBar cbrReport{BarId::kReport, "cbrReport"};
    CommandBar cbrDrives{BarId::kDrives, "cbrDrives"};
    CommandBar cbrFiles{BarId::kFiles, "cbrFiles"};
    CommandBar cbrTOP{BarId::kTop, "cbrTOP"};
    CommandBar cbrHardlinks{BarId::kHardlinks, "cbrHardlinks"};
    CommandBar cbrJunctions{BarId::kJunctions, "cbrJunctions"};

    /// In the order of BarId.
    std::array<CommandBar*, kBarCount> all() {
        return {&cbrMain, &cbrReport, &cbrDrives, &cbrFiles, &cbrTOP, &cbrHardlinks, &cbrJunctions};
    }
    std::array<const CommandBar*, kBarCount> all() const {
        return {&cbrMain, &cbrReport, &cbrDrives, &cbrFiles, &cbrTOP, &cbrHardlinks, &cbrJunctions};
    }
    CommandBar& of(BarId id) { return *all()[static_cast<std::size_t>(id)]; }
    const CommandBar& of(BarId id) const { return *all()[static_cast<std::size_t>(id)]; }
};

/// What the builders read. Outlives the call.
struct BarSources {
    const Texts& texts;
    const Options& options;
    Diagnostics& diagnostics;
    bool homepage = false;  ///< There is one to be opened.
};

/// One entry to be built.
struct ControlSpec {
    EntryKind kind = EntryKind::kButton;
    int id = 0;
    std::string caption = {};
    int icon = -1;  ///< -1 leaves the entry without one.
    bool beginGroup = false;
    std::string tooltip = {};   ///< Empty: the caption.
    std::string_view key = {};  ///< "F1" to "F12", or a character that goes with Ctrl; empty for none.
    int width = 0;              ///< See BarEntry.
};

/// Adds one entry at the end of the bar, or of the list below the entry or popup `parent`.
void AddControl(CommandBar& bar, const ControlSpec& spec, int parent = 0);

/// The looks of all bars before anything is in them.
void Init_Commandbar(Bars& bars, const BarSources& sources);

// The builders. Each fills one empty bar, checks what the options say, and traps its own errors.
void Init_ToolbarMain(Bars& bars, const BarSources& sources);
void Init_Toolbar_Files(Bars& bars, const BarSources& sources);
void Init_Toolbar_Drives(Bars& bars, const BarSources& sources);
void Init_Toolbar_Folders(Bars& bars, const BarSources& sources);
void Init_Toolbar_TOP(Bars& bars, const BarSources& sources);
void Init_Toolbar_Hardlinks(Bars& bars, const BarSources& sources);
void Init_Toolbar_Junctions(Bars& bars, const BarSources& sources);
/// Looks and builders, in the order of the start.
void initAllBars(Bars& bars, const BarSources& sources);

/// The entries of the menu of languages, and the languages' ids.
struct LanguageCommand {
    int id;
    int language;
};
inline constexpr std::array<LanguageCommand, 6> kLanguageCommands{
    {{35, 7}, {36, 9}, {37, 19}, {38, 16}, {39, 29}, {40, 25}}};

/// In cbrMain: the menu for several selected rows of the report.
inline constexpr int kPopupSelectedFolders = 100;

}  // namespace hl
