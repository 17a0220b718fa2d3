// Writes the report as JSON lines for programs: the same in every language. Keys are never renamed. For the
// thread of the logic; messages run meanwhile.
//
// A source is a line of kind "s", its folders ("f") in the report's order, what could not be read ("e"), and
// its end ("t"). A file without the last one is a part.
#pragma once

#include "output/report_order.h"
#include "platform/files.h"
#include "scan/scan_context.h"

namespace hl {

/// Writes all sources of the report, down to the level `levels`. REQUIRES: the report's facts are kept
/// (ScanContext).
ReportOutcome writeJsonLines(ScanContext& scan, std::int32_t levels, ReplacingFile& target);

}  // namespace hl
