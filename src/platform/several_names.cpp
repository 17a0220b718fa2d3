#include "platform/several_names.h"

#include <algorithm>
#include <utility>

namespace hl {

namespace {

constexpr std::uint64_t kEndless = 65'535;
constexpr std::uint64_t kMostSectors = (std::uint64_t{1} << 39U) - 1;
constexpr std::size_t kMostDevices = 256;
constexpr std::size_t kFewSlots = 64;

/// Spreads numbers that follow one another over the whole table.
std::uint64_t spread(std::uint64_t inode, std::uint64_t device) {
    std::uint64_t mixed = (inode ^ device << 56U) * 0x9e3779b97f4a7c15U;
    mixed ^= mixed >> 32U;
    return mixed * 0xd6e8feb86659fd93U;
}

}  // namespace

SeveralNames::Met SeveralNames::meet(const FolderId& id, std::uint64_t links, std::uint64_t sectors) {
    const std::size_t device = deviceIndex(id.device);
    // Five sixths at most are full, and two thirds at least after it grew.
    if ((size_ + 1) * 6 > slots_.size() * 5) grow();
    Slot& slot = slotOf(id.inode, device);
    Met met{.first = slot.used == 0};
    if (met.first) {
        ++size_;
        slot.inode = id.inode;
        slot.used = 1;
        slot.device = device & 0xffU;
        slot.sectors = std::min(sectors, kMostSectors) & kMostSectors;
        const bool endless = links >= kEndless || device >= kMostDevices - 1;
        slot.left = (endless ? kEndless : std::max<std::uint64_t>(links, 1)) & 0xffffU;
    }
    met.sectors = slot.sectors;
    if (slot.left == kEndless || slot.left == 0) return met;
    slot.left = (slot.left - 1U) & 0xffffU;
    met.last = slot.left == 0;
    return met;
}

// The last index stands for all further devices.
std::size_t SeveralNames::deviceIndex(std::uint64_t device) {
    const auto found = std::find(devices_.begin(), devices_.end(), device);
    const auto index = static_cast<std::size_t>(found - devices_.begin());
    if (found == devices_.end() && devices_.size() < kMostDevices - 1) devices_.push_back(device);
    return std::min(index, kMostDevices - 1);
}

SeveralNames::Slot& SeveralNames::slotOf(std::uint64_t inode, std::uint64_t device) {
    constexpr unsigned kHalf = 32;
    std::size_t at = (spread(inode, device) >> kHalf) * slots_.size() >> kHalf;
    while (slots_[at].used != 0 && (slots_[at].inode != inode || slots_[at].device != device))
        at = at + 1 == slots_.size() ? 0 : at + 1;
    return slots_[at];
}

void SeveralNames::grow() {
    std::vector<Slot> before(std::max(kFewSlots, slots_.size() + slots_.size() / 4));
    std::swap(before, slots_);
    for (const Slot& slot : before)
        if (slot.used != 0) slotOf(slot.inode, slot.device) = slot;
}

}  // namespace hl
