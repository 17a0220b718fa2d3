// The program's entry in the desktop's task bar: docks that know the signal com.canonical.Unity.LauncherEntry
// show a bar in it.
//
// For the thread of the logic only, which never waits here: the bus is connected to beside it, and GIO's own
// thread sends. Must be included before any header of Qt, like gio_owned.h.
#pragma once

#include <memory>
#include <optional>

namespace hl {

class LauncherEntry {
  public:
    LauncherEntry();
    ~LauncherEntry();
    LauncherEntry(const LauncherEntry&) = delete;
    LauncherEntry& operator=(const LauncherEntry&) = delete;

    /// Shows a bar of so many percent, or none. Until the session bus has answered, it does nothing, and for
    /// good if there is no bus: call it again with the next percent. REQUIRES: at most one call a second with
    /// a percent.
    void show(std::optional<int> percent);

  private:
    struct Bus;
    void send(std::optional<int> percent) const;

    std::unique_ptr<Bus> bus_;  ///< Null until the first percent.
    std::optional<int> shown_;
};

}  // namespace hl
