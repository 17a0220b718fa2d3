// Waits for what another process does.
#pragma once

namespace hl::test {

/// Tells whether it happened within half a minute.
inline bool comes(const std::function<bool()>& happened) {
    for (int i = 0; i < 3000 && !happened(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return happened();
}

}  // namespace hl::test
