// The files that a process and those it starts may reach from a moment on, by the system's Landlock. Where
// the system has none, nothing is confined. Names and facts of files stay to be seen, and so does what is
// open already. It also takes away the looking into processes outside, and from newer systems on TCP, sockets
// without a name on the disk, and signals to processes outside.
#pragma once

#include <string>

#include "platform/linux/process/descriptor.h"

namespace hl {

class FileConfinement {
  public:
    enum class Use { kRead, kRun, kReadAndWrite, kAll };

    /// Allows nothing yet.
    FileConfinement();
    /// The file, or all below the folder. What does not exist is left out.
    void allow(const std::string& path, Use use) const;
    /// Of the calling thread, for good. Allocates nothing. False if the system has Landlock and refuses.
    /// REQUIRES: PR_SET_NO_NEW_PRIVS.
    bool enter() const;

    /// Of the system's Landlock; 0 if it has none, or has it turned off.
    static int version();

  private:
    int version_;
    Descriptor rules_;
};

}  // namespace hl
