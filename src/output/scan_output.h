// Writes a source of the report as a saved scan. For the thread of the logic; messages run meanwhile.
#pragma once

#include "output/report_order.h"
#include "platform/files.h"
#include "scan/scan_context.h"

namespace hl {

enum class ScanNames : std::uint8_t {
    kAll,
    kNone,  ///< Neither the host nor the names of owners are told.
};

/// Writes the source of this row. The file is for the user alone, since it tells names, owners and the host.
/// A source that was opened from a saved scan is written as it was. REQUIRES: the report's facts are kept
/// (ScanContext).
ReportOutcome writeScan(ScanContext& scan, Row source, ScanNames names, ReplacingFile& target);

/// Tells whether all of a source was read, and what is known of it.
bool isWhole(const ScanContext& scan, Row source);

}  // namespace hl
