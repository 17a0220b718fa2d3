// The session's bus, and the file manager behind it.
//
// Thread of the logic only. To be included before any header of Qt, as gio_owned.h.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop/gio_owned.h"

namespace hl {

/// Held while something is done with it: a bus that goes away meanwhile does not end the program.
class SessionBus {
  public:
    /// Waits for it for a second at most. None is started where there is none.
    SessionBus();
    /// Null if there is none.
    GDBusConnection* connection() const { return connection_.get(); }
    /// It is there and says nothing. Whoever asks it, in whatever library, waits for long.
    bool silent() const { return silent_; }

  private:
    Owned<GDBusConnection> connection_;
    bool silent_ = false;
};

enum class Ask {
    kShowItems,           ///< A window with these files selected.
    kShowItemProperties,  ///< Its window with their properties.
};

/// False if there is no file manager that does it. One that has not answered within a second is still
/// starting, and counts as one that does. REQUIRES: absolute paths.
bool askFileManager(const SessionBus& bus, Ask what, const std::vector<std::string>& paths);

}  // namespace hl
