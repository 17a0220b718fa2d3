// How the user has arranged the bars, kept in the file Toolbar.dat in the program's folder.
//
// The file is UTF-8 text with a section for each bar: its place, whether it shows, and the ids of its hidden
// entries. Captions, order and states of the entries are not kept: what is built counts. The last line says
// the format, so that a file cut short is no such file. Thread of the logic only.
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
    std::vector<int> hidden;  ///< Ids of entries.
};

class ToolbarStore {
  public:
    /// Whether the states come from a file; ExchangeState then gives them to the bars.
    bool isLoaded() const { return loaded_; }

    /// False, and the store as it was, if the file is missing, unreadable, broken or not ours.
    bool load(Files& files, const std::string& path);
    /// Replaces the file in one step; an error leaves the old one. System error code, 0 for success.
    int save(Files& files, const std::string& path) const;

    BarState& of(BarId bar) { return states_[static_cast<std::size_t>(bar)]; }
    const BarState& of(BarId bar) const { return states_[static_cast<std::size_t>(bar)]; }

  private:
    std::array<BarState, kBarCount> states_{};
    bool loaded_ = false;
};

/// Out of a store that was loaded, the bar takes its place and hides entries; ids that it does not have are
/// passed over, and no entry that was built hidden is shown. A store that was not loaded takes the state of
/// the bar.
void ExchangeState(ToolbarStore& store, CommandBar& bar);

}  // namespace hl
