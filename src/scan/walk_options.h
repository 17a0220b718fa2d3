// What a walk asks of the reader of folders because of the options of a scan. For the thread of the logic.
#pragma once

#include "scan/scan_context.h"

namespace hl {

/// `levelsAbove` is how many levels the folder lies below its source.
inline ReadOptions optionsOfWalk(const ScanContext& scan, std::uint32_t levelsAbove) {
    ReadOptions options;
    options.followLinks = scan.options.ScanHardlinks == 1;
    options.levelsAbove = levelsAbove;
    options.wantLinks = scan.state.links.needCount;
    options.wantSpace = scan.state.NeedSpace;
    if (scan.state.balance.current != nullptr) scan.state.balance.current->choose(options, levelsAbove == 0);
    options.wantTimes = options.wantFileNames = !scan.state.SilentRun;
    return options;
}

}  // namespace hl
