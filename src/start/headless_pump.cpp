#include "start/headless_pump.h"

#include <chrono>

namespace hl {

std::uint64_t HeadlessPump::GetTickCount() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

}  // namespace hl
