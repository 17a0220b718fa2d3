// The command line as one text: sources are in double quotes, switches are not.
//
//     "/home/a" "/srv/b"                 two sources
//     -s3-d1 --format=txt "/r.csv" "/home/a" "/srv/b"
//                                        a report without a window: levels, delimiter, format, file, sources
//
// The system hands over arguments instead, with the shell's quotes removed. joinArguments makes one text of
// them, which one instance can also hand over to another. A double quote within a name becomes a NUL byte,
// which no name can hold, and the parsers turn it back. All functions are pure.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/line_options.h"
#include "base/path.h"

namespace hl {

enum class LineProblem {
    kNone,
    kUnknownSwitch,  ///< An argument begins with "-" but is no known switch.
    kEmptyArgument,
    kNoCurrentFolder,   ///< A path is relative, but there is no current folder (any more).
    kUnknownFormat,     ///< An argument begins with "--format" but names no known format.
    kFormatOfFind,      ///< There is a format of files that are found, but no --find.
    kFormatOfBalance,   ///< There is a format of a balance, but no --balance.
    kNotForWindow,      ///< There is an option of reports without a "-s" in front of it.
    kIncompleteReport,  ///< A silent line has no file or no source.
    kNoFilter,          ///< Nothing stands behind --find.
    kNotWithFind,       ///< An option is given twice, or a search has no use for it.
    kNoValue,           ///< What an option of rules needs is missing.
    kNotTogether,       ///< An option is given twice, or a balance has no use for it.
    kBalanceFormat,     ///< A balance is wanted in a format that it has not.
    kShape,             ///< JoinedLine::shape says what.
    kBalanceEnding,     ///< No format is given, and the name of a balance's file ends like that of a report.
    kFindEnding,        ///< The same for the file of a search.
};

struct JoinedLine {
    std::string text;
    bool asksForHelp = false;
    bool asksForVersion = false;
    LineProblem problem = LineProblem::kNone;
    ShapeProblem shape = ShapeProblem::kNone;
    std::string badArgument;  ///< The first argument that is a problem.
};

/// The names of the formats of reports: "csv" for "--format=csv".
using FormatNames = std::span<const std::string_view>;
/// Those of a balance.
inline constexpr std::string_view kBalanceFormats[] = {"txt", "json"};
/// Those of files that are found; without one it is the first.
inline constexpr std::string_view kFindFormats[] = {"csv", "nul"};

/// Joins the arguments. Switches are "-s" and whatever begins with it and has no double quote, "-d" and a
/// digit, "--format=" (or "--format" and an argument) and one of `formats`, "--balance", "--find=" and, as
/// often as wanted, "--exclude=" and "--exclude-from=" (or without "=", and an argument) and any text,
/// "--exclude-caches", those of app/line_options.h, "-RESTART", "-TLMODUS", "--help", "-h" and "--version";
/// behind "--" nothing is a switch. Everything else is a path, which `cwd` makes absolute; a source's path is
/// also resolved by its text (base/absolute_path.h). "-" as the file of a silent line, even behind "--",
/// means standard output and stays as it is; "./-" is a file of that name.
///
/// The text of those that have one stands in the line with each byte that could be taken for something else
/// as "%" and two hexadecimal digits; the path of a file of rules is absolute.
///
/// The delimiter switch of a silent line is moved right behind "-s", or "-d0" is put there if there is none,
/// so that a "-d" in a path is never taken for it. REQUIRES: cwd is absolute, or empty if there is none.
JoinedLine joinArguments(const std::vector<std::string>& arguments, std::string_view cwd,
                         const PathRules& rules, FormatNames formats);

/// Tells whether the line asks for a report without a window.
bool isSilentLine(std::string_view line);

/// Returns the file that the line wants to be opened; empty if there is none.
std::string openedByCommand(std::string_view line);

/// Returns the sources of a line: the texts between double quotes, or the whole line if it has no double
/// quote. A source whose closing quote is missing is dropped; switches alone are no source.
std::vector<std::string> GetFoldersFromCommand(std::string_view line);

/// What a silent line asks for.
struct SilentOrder {
    std::string outputFile;   ///< kStandardOutput (platform/files.h) or a path.
    std::int32_t levels = 0;  ///< 0 if the line gives none.
    /// 0 comma, 1 semicolon, 2 tab, 3 blank; with 4 to 9, which are possible, the report chooses.
    std::int32_t delimiterIndex = 0;
    std::string format;                    ///< The name of one; empty if the name of the file decides.
    bool balance = false;                  ///< The balance of each source is wanted instead of the report.
    std::optional<std::string> find = {};  ///< A filter: the files that it takes are wanted instead.
    // What is left out; each in the order of the line.
    std::vector<std::string> exclude;      ///< Rules.
    std::vector<std::string> excludeFrom;  ///< Files of rules.
    bool excludeCaches = false;
    bool noNames = false;      ///< A saved scan tells neither the host nor the names of owners.
    std::string open = {};     ///< A saved scan, or a listing, to open instead of reading sources.
    std::string compare = {};  ///< A saved scan: what has grown since is wanted instead of the report.
    std::optional<std::uint64_t> grown = {};  ///< In bytes: the run says so if anything grew more.
    bool jsonProgress = false;                ///< The progress goes to standard error in lines of JSON.
    /// Empty if the line lacks the file or a source: then nothing is to be done.
    std::vector<std::string> sources;
};

/// Larger numbers of levels are reduced to this.
inline constexpr std::int32_t kMostLevels = 999'999'999;

/// Parses a silent line ("KZ" is short for command line): the digits right behind "-s" are the levels, the
/// digit behind the first "-d" is the delimiter, a format is outside of double quotes, the first text in
/// double quotes is the file, and the others are the sources. What is missing keeps its default. REQUIRES:
/// isSilentLine(line), but for blanks in front of it.
SilentOrder KZGetFoldersFromCommand(std::string_view line, FormatNames formats);

}  // namespace hl
