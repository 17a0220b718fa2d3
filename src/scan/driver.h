// Reads places on the disk and fills the views: the queue of sources, a single source, rescans.
//
// A run is one long call on the thread of the logic, which lets messages run in its pauses; whatever runs
// there must test ScanActive. No routine here raises an error to its caller.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "scan/scan_context.h"

namespace hl {

/// Selects a source in the combo box, and adds it if it is not there yet.
void AddNewSearchPath(ScanContext& scan, std::string_view path);

/// Reads the source in the combo box, in a run of its own.
void StartSearchViaToolbar(ScanContext& scan);

/// Reads all sources of SourceQueue in one run, including those queued meanwhile. A source that does not
/// exist is skipped; Stop drops those not reached.
void Ordnerliste_Abarbeiten(ScanContext& scan);

/// Makes `work` a run, as Ordnerliste_Abarbeiten does with the queue: the window is locked except for Stop
/// and hears how the work says that it ended.
void asOneRun(ScanContext& scan, const std::function<RunEnd()>& work);

/// Reads one source into a new root row, or into `row` if that is given. Returns the row.
Row QuelleEinlesen(ScanContext& scan, const std::string& source, int imageIndex, Row row);

/// Reads the folder of the current row again, corrects all rows above by the difference, and fills the three
/// lists of a scan from this folder alone.
void Report_Rescan(ScanContext& scan);

/// Reads a folder that a rule leaves out, and whatever lies below it, as Report_Rescan does. It stays so
/// until its source is read anew.
void Report_ReadAllTheSame(ScanContext& scan, Row row);

/// Reads the folder of a row again and corrects the sums above by the difference. The caller has to update
/// the shares above, the order of rows and the three lists.
void Report_ReadAgain(ScanContext& scan, Row row);

/// What was counted for the balance of the row's source is older than the source from now on.
void noteSpaceChanged(ScanContext& scan, Row row);

/// Returns how a run ends that no error breaks off. REQUIRES: CancelState is still as the run left it.
RunEnd endOf(const ScanState& state);

/// Locks the window except for Stop, and with `noStop` for Stop too, sets ScanActive, and lets messages run.
void DisableControls(ScanContext& scan, bool noStop);
/// Undoes DisableControls.
void EnableControls(ScanContext& scan);

}  // namespace hl
