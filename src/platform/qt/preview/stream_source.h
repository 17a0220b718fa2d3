// Lets the player's library read a file whose disk may not answer: an element of its own takes the bytes from
// a FileStream. For the player's thread.
#pragma once

#include <memory>

#include "platform/preview_tools.h"

namespace hl {

/// The address under which the player finds what was offered last.
constexpr const char* kStreamAddress = "harborlantern:stream";

/// Makes the element known to the library. REQUIRES: the library has started, and whatever opens places has
/// been removed from it.
bool addStreamSource();
/// The next player that is given the address reads this; null for nothing.
void offerStream(std::shared_ptr<FileStream> stream);

}  // namespace hl
