#include "platform/linux/process/helper_slot.h"

#include <atomic>
#include <utility>

namespace hl {

namespace {
std::atomic<unsigned> slotsTaken{0};
}  // namespace

std::optional<HelperSlot> HelperSlot::take() {
    unsigned now = slotsTaken.load();
    do {
        if (now >= kMost) return std::nullopt;
    } while (!slotsTaken.compare_exchange_weak(now, now + 1));
    return HelperSlot();
}

unsigned HelperSlot::taken() {
    return slotsTaken.load();
}

HelperSlot::HelperSlot(HelperSlot&& other) noexcept : held_(std::exchange(other.held_, false)) {}

HelperSlot::~HelperSlot() {
    if (held_) --slotsTaken;
}

}  // namespace hl
