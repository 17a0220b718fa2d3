// The command bars of the main window.
//
// The table of commands (mainwindow/command_table.cpp) tells which entries they have and what these are
// called. An id belongs to one bar: in another bar the same number means another command. For the thread of
// the logic only.
#pragma once

#include <algorithm>
#include <array>

#include "app/options.h"
#include "app/texts.h"
#include "platform/command_bar.h"
#include "robustness/debug.h"

namespace hl {

/// The bars; the main form owns them.
class Bars {
  public:
    CommandBar& of(BarId id) { return bars_[static_cast<std::size_t>(id)]; }
    const CommandBar& of(BarId id) const { return bars_[static_cast<std::size_t>(id)]; }
    /// Returns them in the order of BarId.
    std::array<CommandBar*, kBarCount> all() { return pointers<CommandBar>(bars_); }
    std::array<const CommandBar*, kBarCount> all() const { return pointers<const CommandBar>(bars_); }

  private:
    static std::array<CommandBar, kBarCount> named();
    template <class Bar, class From>
    static std::array<Bar*, kBarCount> pointers(From& bars) {
        std::array<Bar*, kBarCount> all{};
        std::ranges::transform(bars, all.begin(), [](Bar& bar) { return &bar; });
        return all;
    }

    std::array<CommandBar, kBarCount> bars_ = named();

  public:
    // Those that code names.
    CommandBar& cbrMain = of(BarId::kMain);
    CommandBar& cbrReport = of(BarId::kReport);
    CommandBar& cbrDrives = of(BarId::kDrives);
    CommandBar& cbrFiles = of(BarId::kFiles);
    CommandBar& cbrTOP = of(BarId::kTop);
    CommandBar& cbrHardlinks = of(BarId::kHardlinks);
    CommandBar& cbrJunctions = of(BarId::kJunctions);
    CommandBar& cbrFind = of(BarId::kFind);
    CommandBar& cbrStatistics = of(BarId::kStatistics);
    CommandBar& cbrChanges = of(BarId::kChanges);
    CommandBar& cbrMap = of(BarId::kMap);
};

/// What the bars are built from; it must outlive the call.
struct BarSources {
    const Texts& texts;
    const Options& options;
    Diagnostics& diagnostics;
    bool homepage = false;  ///< There is a homepage to open.
};

/// Fills the empty bars from the table of commands and checks entries by the options. Each bar traps its own
/// errors.
void initAllBars(Bars& bars, const BarSources& sources);

}  // namespace hl
