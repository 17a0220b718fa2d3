// The session bus, and the file manager behind it.
//
// For the thread of the logic only. Must be included before any header of Qt, like gio_owned.h.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop/gio_owned.h"

namespace hl {

/// Must be held while the bus is used: then the program survives if the bus goes away.
class SessionBus {
  public:
    /// Waits for the bus a second at most. If there is none, none is started.
    SessionBus();
    /// Returns null if there is no bus.
    GDBusConnection* connection() const { return connection_.get(); }
    /// Tells that the bus exists but does not answer. Whoever uses it, in whatever library, waits for long.
    bool silent() const { return silent_; }

  private:
    Owned<GDBusConnection> connection_;
    bool silent_ = false;
};

enum class Ask {
    kShowItems,           ///< Opens a window with these files selected.
    kShowItemProperties,  ///< Opens the window with their properties.
};

/// Returns false if no file manager can do it. One that has not answered within a second is still starting,
/// and counts as able. REQUIRES: absolute paths.
bool askFileManager(const SessionBus& bus, Ask what, const std::vector<std::string>& paths);

}  // namespace hl
