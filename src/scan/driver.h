// From the user's wish to have places read, to filled views: the queue of sources, a source as a whole,
// rescans.
//
// A run is one long call on the thread of the logic, which lets messages run in its pauses; whatever runs
// there tests ScanActive. No routine here raises an error to its caller.
#pragma once

#include <optional>
#include <string>

#include "scan/scan_context.h"

namespace hl {

/// Adds a source to the combo, if it is not known yet, and selects it.
void AddNewSearchPath(ScanContext& scan, std::string_view path);

/// Reads what the combo shows, in a run of its own.
void StartSearchViaToolbar(ScanContext& scan);

/// Works through SourceQueue as one run. Sources that are queued meanwhile are read as well; a source that
/// does not exist is passed over; Stop drops those not reached.
void Ordnerliste_Abarbeiten(ScanContext& scan);

/// Reads one source into a new root row, or into the existing `row`. Returns the row.
Row QuelleEinlesen(ScanContext& scan, const std::string& source, int imageIndex, Row row);

/// Reads the folder of the current row again and corrects all rows above by the difference.
void Report_Rescan(ScanContext& scan);

/// Reads the folder of a row again and corrects the sums above by the difference. Their shares, the order of
/// rows and the three lists are left to the caller.
void Report_ReadAgain(ScanContext& scan, Row row);

void DisableControls(ScanContext& scan, bool noStop);
void EnableControls(ScanContext& scan);

}  // namespace hl
