#include "platform/linux/scan/read_ahead_pace.h"

#include <algorithm>

namespace hl {

namespace {

constexpr std::uint64_t kBlocksBeforeHelpers = 4;
// Each block that waited counts as much as eight others, so that every ninth is enough, but a single one is
// not.
constexpr int kSlowWeight = 8;
constexpr int kSlow = 2 * kSlowWeight;
constexpr int kSlownessPerHelper = 4;

}  // namespace

ReadAheadPace::ReadAheadPace(const ReadAheadLimits& limits) : limits_(limits), wanted_(limits.helpersWarm) {}

bool ReadAheadPace::judge(bool waited) {
    if (!judges()) return false;
    const int more = static_cast<int>(limits_.helpersCold - limits_.helpersWarm);
    const int most = kSlow + more * kSlownessPerHelper;
    slowness_ = std::clamp(slowness_ + (waited ? kSlowWeight : -1), 0, most);
    const int wantedMore = std::min(isSlow() ? 1 + (slowness_ - kSlow) / kSlownessPerHelper : 0, more);
    const unsigned before = wanted_;
    wanted_ = limits_.helpersWarm + static_cast<unsigned>(wantedMore);
    return wanted_ > before;
}

bool ReadAheadPace::isSlow() const {
    return slowness_ >= kSlow;
}

bool ReadAheadPace::isWorthHelpers() const {
    return blocksRead_ >= kBlocksBeforeHelpers || someCanHang_;
}

// The walk reads nothing that can hang, so one more helper is wanted there.
unsigned ReadAheadPace::wanted() const {
    return std::max(wanted_, someCanHang_ ? limits_.helpersWarm + 1 : 0) + abandoned_;
}

unsigned ReadAheadPace::startable() const {
    return std::min(wanted(), mostHelpers_);
}

void ReadAheadPace::wantAll() {
    wanted_ = std::max(limits_.helpersCold, 1U);
}

}  // namespace hl
