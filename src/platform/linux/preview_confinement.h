// What a helper that decodes a stranger's file forbids itself before it reads the first byte of it.
#pragma once

#include <cstdint>

namespace hl {

/// No other program and no other process, no socket, no signal to others, nothing written to a file or
/// changed on a disk: such calls fail with EPERM. Threads and abort() work. Memory is limited to `bytes` of
/// address space. What the system does not allow to forbid is left, and with a sanitizer in the program all
/// but the writing. Of the whole process, for good; descriptors that were open for writing stay so.
void confineHelper(std::uint64_t bytes);
/// `seconds` more of the processor, counted from now; the process ends when they are used up.
void allowSeconds(unsigned seconds);

/// The process ends when its own code has used the processor for so long from now on; time in the system
/// does not count.
void endAfter(unsigned milliseconds);

}  // namespace hl
