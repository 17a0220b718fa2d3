// What rules leave out of the report: the rules for a source or a folder of it, the rows of folders that are
// left out, and the counts of folders and files.
//
// The rules are those of the options, then those of the run; behind them come those by which the user reads a
// folder all the same. Each row counts what is left out below it (Grid::unshown). For the thread of the logic
// only.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "scan/rules.h"
#include "scan/scan_context.h"

namespace hl {

/// The rules for the reading of a row.
struct RowRules {
    std::shared_ptr<const Rules> rules = nullptr;  ///< For what lies below it; null if there are none.
    std::int32_t own = LeaveOut::kNone;            ///< The rule that leaves the row's own folder out.
};
/// Returns the rules for a row of the report. A source is never left out. The cost is that of all rules.
RowRules rulesOfRow(const ScanContext& scan, Row row);

/// Returns the rules for a search in a folder of a source, or in the source itself; null if there are none.
/// Both paths end with a separator.
std::shared_ptr<const Rules> rulesOfFolder(const ScanContext& scan, const std::string& source,
                                           const std::string& folder);

/// Tells whether there are rules.
bool leavesOut(const ScanContext& scan);
/// From now on the row's folder is read, and so is all that it holds, until its source is read anew.
void readAllTheSame(ScanContext& scan, Row row);
/// The source is read anew. `source` is the text of its row.
void forgetReadAllTheSame(ScanState& state, std::string_view source);

/// Gives the row the picture of a folder that is left out, and a note that names the rule. `rule` may be
/// LeaveOut::kCacheTag.
void Report_MarkLeftOut(ScanContext& scan, Row row, const Rules& rules, std::int32_t rule);
/// If a rule leaves the row's own folder out, marks the row so, and forgets what was found there before.
bool Report_LeaveOut(ScanContext& scan, Row row, const RowRules& rules);
/// Tells whether the row is that of a folder that a rule leaves out.
bool isLeftOutByRule(const Grid& report, Row row);

/// Returns what is left out below the row, and with it the row itself.
Unshown leftOutWith(const Grid& report, Row row);
/// Returns what is left out of all sources.
Unshown leftOutOf(const Grid& report);
/// Returns how many files are left out that lie directly in the row's folder. The cost is that of its rows.
std::uint32_t ownFilesLeftOut(const Grid& report, Row row);
/// Takes `before` from the counts of a row, and adds `now`.
void changeLeftOut(Grid& report, Row row, Unshown before, Unshown now);

/// Says why a rule cannot be read.
std::string ruleProblemText(const Texts& texts, const std::string& rule, RuleProblem problem);
/// Returns "left out by rules: 3 folders, 12 files"; empty if nothing is left out.
std::string leftOutText(const Texts& texts, const NumberFormat& numbers, Unshown leftOut);
/// Returns the title with that text behind it in parentheses, if there is one.
std::string titleWithLeftOut(const Services& services, const std::string& title, Unshown leftOut);

}  // namespace hl
