// What a helper that decodes a stranger's file forbids itself before it reads the first byte of it.
#pragma once

#include <cstdint>

namespace hl {

/// No other program, no socket, no signal to others, nothing written to a file or changed on a disk. Memory
/// is limited to `bytes` of address space. What the system does not allow to forbid is left. Of the whole
/// process, for good.
void confineHelper(std::uint64_t bytes);
/// `seconds` more of the processor, counted from now; the process ends when they are used up.
void allowSeconds(unsigned seconds);

/// The process ends when it has used the processor for so long from now on.
void endAfter(unsigned milliseconds);

}  // namespace hl
