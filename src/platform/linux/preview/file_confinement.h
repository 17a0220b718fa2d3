// Limits, by the system's Landlock, which files a process and those it starts can reach. If the system has no
// Landlock, nothing is confined. Names and facts of files stay visible, and open files stay usable. It also
// forbids looking into processes outside, and on newer systems TCP, sockets without a name on the disk, and
// signals to processes outside. For one thread.
#pragma once

#include <string>

#include "platform/linux/process/descriptor.h"

namespace hl {

class FileConfinement {
  public:
    enum class Use { kRead, kRun, kReadAndWrite, kAll };

    /// Allows nothing yet.
    FileConfinement();
    /// Allows the file, or everything below the folder. A path that does not exist is ignored.
    void allow(const std::string& path, Use use) const;
    /// Confines the calling thread for good and allocates nothing. Returns false if the system has Landlock
    /// and refuses. REQUIRES: PR_SET_NO_NEW_PRIVS is set.
    bool enter() const;

    /// Returns the version of the system's Landlock; 0 if it has none, or it is turned off.
    static int version();

  private:
    int version_;
    Descriptor rules_;
};

}  // namespace hl
