// Keeps how the user arranged the bars, in the file Toolbar.dat in the program's folder.
//
// The file is UTF-8 text with a section for each bar: its place, whether it is visible, and the ids of its
// hidden entries. Captions, order and states of the entries are not kept. The last line names the format, so
// that a truncated file is recognised. For the thread of the logic only.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/command_bar.h"
#include "platform/files.h"

namespace hl {

inline constexpr std::string_view kToolbarStateName = "Toolbar.dat";

struct BarState {
    BarPlace place;
    std::vector<int> hidden;  ///< The ids of hidden entries.
};

class ToolbarStore {
  public:
    /// Tells whether the bar's state comes from a file; only then ExchangeState changes the bar.
    bool isLoaded(BarId bar) const { return loaded_[static_cast<std::size_t>(bar)]; }

    /// Returns false and changes nothing if the file is missing, unreadable, damaged or of another kind. Bars
    /// that came after the first version may be missing in it.
    bool load(Files& files, const std::string& path);
    /// Replaces the file in one step; after an error the old file is still there.
    Result<> save(Files& files, const std::string& path) const;

    BarState& of(BarId bar) { return states_[static_cast<std::size_t>(bar)]; }
    const BarState& of(BarId bar) const { return states_[static_cast<std::size_t>(bar)]; }

  private:
    std::array<BarState, kBarCount> states_{};
    std::array<bool, kBarCount> loaded_{};
};

/// If the store was loaded, the bar takes its place from it and hides entries; unknown ids are ignored, and
/// an entry that was built hidden stays hidden. If the store was not loaded, it takes the state of the bar.
void ExchangeState(ToolbarStore& store, CommandBar& bar);

}  // namespace hl
