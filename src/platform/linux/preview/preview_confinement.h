// Confines programs that read files from strangers, before they read the first byte: our own helpers do it
// themselves, for others it is done between fork and start.
//
// The system's Landlock (file_confinement.h), which a system may lack, restricts the files.
#pragma once

#include <cstdint>
#include <string>

#include "platform/linux/preview/call_filter.h"
#include "platform/linux/preview/file_confinement.h"

namespace hl {

/// Confines the whole process for good. It allows only what decoding needs: memory, threads, the open file,
/// and reading the system's libraries and fonts. All else fails with EPERM, or with ENOSYS if it is newer.
/// abort() works. Memory is limited to `bytes` of address space, except with a sanitizer, which also needs
/// some more calls. Descriptors that were open for writing stay so. Ends the process if the system refuses.
void confineHelper(std::uint64_t bytes);

/// The confinement of a program that is not ours. It is made before the fork.
class ForeignConfinement {
  public:
    /// Without `home` the program may do what our helpers may, and start. With `home` it may also start
    /// processes, and write below that folder. Tracing other processes, signalling them by kill(), sharing
    /// memory with them, and reaching the network or the system's internals fails with EPERM. It may signal
    /// their threads by tgkill() unless Landlock prevents that.
    ForeignConfinement(const std::string& program, const std::string& home);
    // These are called in the child, in this order. They allocate nothing, and return false if the system
    // refuses.
    bool enterFiles() const;
    /// Must be the last call before the program is started.
    bool enterCalls() const;

  private:
    CallFilter calls_;
    FileConfinement files_;
};

/// Allows `seconds` more of processor time from now on; after that the process ends.
void allowSeconds(unsigned seconds);

/// Ends the process when its own code has used that much processor time from now on; time in the system does
/// not count.
void endAfter(unsigned milliseconds);

}  // namespace hl
