// What programs that look at a stranger's file are forbidden before they read the first byte of it: our own
// helpers by themselves, others between the fork and their start.
//
// Files are kept away by the system's Landlock (file_confinement.h), which a system may lack.
#pragma once

#include <cstdint>
#include <string>

#include "platform/linux/preview/call_filter.h"
#include "platform/linux/preview/file_confinement.h"

namespace hl {

/// Only what decoding takes is allowed: memory, threads, the open file, and to read the system's libraries
/// and fonts. All else fails with EPERM, or ENOSYS if it is newer. abort() works. Memory is limited to
/// `bytes` of address space, but with a sanitizer in the program, which also needs some calls more. Of the
/// whole process, for good; descriptors that were open for writing stay so. Ends the process if the system
/// refuses.
void confineHelper(std::uint64_t bytes);

/// Of a program that is not ours. Made before the fork.
class ForeignConfinement {
  public:
    /// With no `home` it gets what a helper of ours gets, and may start. With one it may also start
    /// processes, and write below that folder; what traces other processes, signals them by kill(), shares
    /// memory with them, or reaches the network or the depths of the system fails with EPERM. It may signal
    /// their threads by tgkill() where Landlock does not keep it from that.
    ForeignConfinement(const std::string& program, const std::string& home);
    // In the child, one after the other. They allocate nothing, and are false if the system refuses.
    bool enterFiles() const;
    /// As the last thing before it starts the program.
    bool enterCalls() const;

  private:
    CallFilter calls_;
    FileConfinement files_;
};

/// `seconds` more of the processor, counted from now; the process ends when they are used up.
void allowSeconds(unsigned seconds);

/// The process ends when its own code has used the processor for so long from now on; time in the system
/// does not count.
void endAfter(unsigned milliseconds);

}  // namespace hl
