// Runs a process that goes on after the one that was started has ended.
#pragma once

#include <functional>

namespace hl {

/// Runs `body` in a process of its own that keeps nothing of this one: no terminal, no descriptors, no
/// folder. In this process it returns when `body` calls `ready` (0) or ends without that (1); in the other
/// process it returns what `body` returned. REQUIRES: the process has one thread.
int goOnInBackground(const std::function<int(const std::function<void()>& ready)>& body);

}  // namespace hl
