// A process that goes on behind the one that was started.
#pragma once

#include <functional>

namespace hl {

/// Runs `body` in a process of its own that holds nothing of this one: no terminal, no descriptors, no
/// folder. Here it returns when `body` calls `ready` (0) or ends without it (1); in the other process, with
/// what `body` returned. REQUIRES: one thread.
int goOnInBackground(const std::function<int(const std::function<void()>& ready)>& body);

}  // namespace hl
