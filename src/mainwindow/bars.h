// The seven command bars of the main window.
//
// The table of commands (mainwindow/command_table.cpp) tells which entries they have and what these are
// called. An id belongs to one bar: in another bar the same number means another command. For the thread of
// the logic only.
#pragma once

#include <array>

#include "app/options.h"
#include "app/texts.h"
#include "platform/command_bar.h"
#include "robustness/debug.h"

namespace hl {

/// The bars; the main form owns them.
struct Bars {
    CommandBar cbrMain{BarId::kMain, "cbrMain"};
    CommandBar cbrReport{BarId::kReport, "cbrReport"};
    CommandBar cbrDrives{BarId::kDrives, "cbrDrives"};
    CommandBar cbrFiles{BarId::kFiles, "cbrFiles"};
    CommandBar cbrTOP{BarId::kTop, "cbrTOP"};
    CommandBar cbrHardlinks{BarId::kHardlinks, "cbrHardlinks"};
    CommandBar cbrJunctions{BarId::kJunctions, "cbrJunctions"};

    /// Returns them in the order of BarId.
    std::array<CommandBar*, kBarCount> all() {
        return {&cbrMain, &cbrReport, &cbrDrives, &cbrFiles, &cbrTOP, &cbrHardlinks, &cbrJunctions};
    }
    std::array<const CommandBar*, kBarCount> all() const {
        return {&cbrMain, &cbrReport, &cbrDrives, &cbrFiles, &cbrTOP, &cbrHardlinks, &cbrJunctions};
    }
    CommandBar& of(BarId id) { return *all()[static_cast<std::size_t>(id)]; }
    const CommandBar& of(BarId id) const { return *all()[static_cast<std::size_t>(id)]; }
};

/// What the bars are built from; it must outlive the call.
struct BarSources {
    const Texts& texts;
    Options& options;  ///< They are only read.
    Diagnostics& diagnostics;
    bool homepage = false;  ///< There is a homepage to open.
};

/// Fills the empty bars from the table of commands and checks entries by the options. Each bar traps its own
/// errors.
void initAllBars(Bars& bars, const BarSources& sources);

}  // namespace hl
