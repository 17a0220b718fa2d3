#include "platform/linux/change/beside.h"

#include <chrono>

namespace hl {

namespace {

using Clock = std::chrono::steady_clock;
// So a click is noticed within a frame of the screen.
constexpr std::chrono::milliseconds kBetweenLooks{16};
constexpr std::chrono::seconds kSilent{1};

// Returns false if the work is abandoned.
bool watchUntilEnded(Helper& helper, OperationWatch& watch, bool mayHang) {
    auto heard = Clock::now();
    while (!helper.endsWithin(kBetweenLooks)) {
        bool isNew = false;
        const std::string path = helper.whereabouts().now(isNew);
        if (isNew) heard = Clock::now();
        const bool silent = mayHang && Clock::now() - heard >= kSilent;
        if (watch.stillAt(path, silent)) continue;
        helper.whereabouts().end();
        if (silent && helper.leave()) return false;
    }
    return true;
}

}  // namespace

bool runBeside(const Helper::Work& work, OperationWatch& watch, bool mayHang, std::shared_ptr<Helper>* left) {
    const auto helper = Helper::start(work, mayHang);
    if (!helper) {
        Whereabouts here;
        if (!mayHang) work(here);
        return !mayHang;
    }
    // Even if the watch throws, the work must not be left alone with what is on this stack.
    try {
        if (!watchUntilEnded(*helper, watch, mayHang)) {
            if (left != nullptr) *left = helper;
            return false;
        }
    } catch (...) {
        if (mayHang) {
            helper->leave();
        } else {
            helper->whereabouts().end();
            helper->join();
        }
        throw;
    }
    helper->rethrow();
    return true;
}

}  // namespace hl
