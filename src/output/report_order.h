// A report order says what of the folder report is to be written, where, and in which format; a command line
// or a dialog makes one. Orders are carried out on the thread of the logic; messages run meanwhile.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/command_line.h"
#include "output/folder_choice.h"
#include "output/report_formats.h"
#include "platform/files.h"
#include "robustness/debug.h"
#include "scan/scan_context.h"

namespace hl {

class ReportFile;

struct ReportOrder {
    std::string path = {};
    const ReportFormat* format = nullptr;  ///< Null leaves it to the end of the file's name.
    int scope = -1;                        ///< A FolderScope.
    std::int32_t levels = -1;              ///< The last level that is written; 0 writes what is unfolded.
    char delimiter = ',';
    bool withSpace = false;  ///< Adds the space on the disk and the newest change.
};

/// Makes the order of a command line: the whole report, all levels if the line has no number, and a tab where
/// it names no known delimiter.
ReportOrder orderOf(const SilentOrder& line);

struct ReportOutcome {
    bool written = false;
    /// Why the file could not be written. If there is no reason, an error of the program lost rows: then
    /// nothing is written, because an older report is worth more.
    std::optional<Error> error = {};
    std::string leftBehind = {};  ///< The path of an unfinished file that could not be removed.
};

/// Puts a file in place whose content is complete. `target` is what it writes to.
ReportOutcome commitReport(ReportFile& file, const ReplacingFile& target);

/// Carries out one order. Errors of the program are thrown.
class ReportRun {
  public:
    explicit ReportRun(ScanContext& scan, ReportOrder wanted = {}) : order(std::move(wanted)), scan_(scan) {}

    /// Finds the first row. Throws a Fault if there is none.
    void findStart();
    /// Opens the order's file and writes it.
    ReportOutcome write(Files& files);
    /// The same, with a file that is open already.
    ReportOutcome write(ReplacingFile& target);

    /// What an error report tells of the run.
    DebugValues values() const;

    ReportOrder order;  ///< A dialog fills it in step by step.

  private:
    void takeLayout();
    ReportTable table(bool forTerminal) const;
    ReportOutcome writeRows(ReplacingFile& target);

    ScanContext& scan_;
    Row start_ = kNoRow;
    int sizeMode_ = 0;
    int decimals_ = 0;
    std::uint64_t rows_ = 0;
    bool written_ = false;
};

/// Carries out an order without a dialog. An error of the program is reported; what kept the file from being
/// written is told by the outcome.
ReportOutcome SPEICHERN(ScanContext& scan, const ReportOrder& order, ReplacingFile& target);

}  // namespace hl
