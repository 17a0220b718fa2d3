// Writes down the options that decide what a scan finds, so that two scans can be compared. For the thread of
// the logic.
#pragma once

#include <string>
#include <string_view>

#include "scan/scan_context.h"

namespace hl {

/// Returns a JSON object: {"follow_links","links_shown","hardlinks_once","snapshots","caches_left_out",
/// "rules":[...],"rules_crc"?}. Of very many rules only the first are written; "rules_crc" stands for all
/// then.
std::string scanOptionsJson(const ScanContext& scan);

/// Returns the names of the options in which two such objects differ, with commas between them.
std::string differingOptions(std::string_view one, std::string_view other);

}  // namespace hl
