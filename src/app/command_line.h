// The command line as one text: sources in double quotes, switches bare.
//
//     "/home/a" "/srv/b"                 two sources
//     -s3-d1 --format=txt "/r.csv" "/home/a" "/srv/b"
//                                        a report without a window: levels, delimiter, format, file, sources
//
// The system hands over arguments instead, with the shell's quotes taken off; joinArguments makes the one
// text of them, which is also what one instance hands over to another. A double quote within a name travels
// as a NUL byte, which no name can hold, and the parsers turn it back. All are pure functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/path.h"

namespace hl {

enum class LineProblem {
    kNone,
    kUnknownSwitch,  ///< An argument begins with "-" and is none of ours.
    kEmptyArgument,
    kNoCurrentFolder,   ///< A relative path, and there is no current folder (any more).
    kUnknownFormat,     ///< An argument begins with "--format" and names none of ours.
    kNotForWindow,      ///< A format, and no "-s" in front.
    kIncompleteReport,  ///< A silent line without a file or without a source.
};

struct JoinedLine {
    std::string text;
    bool asksForHelp = false;
    bool asksForVersion = false;
    LineProblem problem = LineProblem::kNone;
    std::string badArgument;  ///< The first one that is a problem.
};

/// The switches are "-s" and all that begins with it and has no double quote, "-d" and a digit,
/// "--format=txt", "--format=csv", "-RESTART", "-TLMODUS", "--help", "-h" and "--version"; behind "--" there
/// are none. Everything else is a path, which is made absolute by `cwd`; that of a source is resolved by its
/// text (base/absolute_path.h). "-" as the file of a silent line, in front of "--" or behind it, is standard
/// output and stays as it is; a file of that name is "./-".
///
/// The delimiter switch of a silent line moves right behind "-s", and "-d0" is put there where there is none,
/// so that a "-d" in a path is never taken for it. REQUIRES: cwd is absolute, or empty where there is none.
JoinedLine joinArguments(const std::vector<std::string>& arguments, std::string_view cwd,
                         const PathRules& rules);

/// Whether the line asks for a report without a window.
bool isSilentLine(std::string_view line);

/// The sources of a line: what stands between double quotes, in order, or the whole line where there is no
/// double quote. A source that is not closed is dropped, and switches alone name none.
std::vector<std::string> GetFoldersFromCommand(std::string_view line);

/// The layout of a report; by its file's name where nobody chose one.
enum class ReportLayout { kByName, kTxt, kCsv };

/// What a silent line asks for.
struct SilentOrder {
    std::string outputFile;   ///< kStandardOutput (platform/files.h) or a path.
    std::int32_t levels = 0;  ///< 0 where none are given.
    /// 0 comma, 1 semicolon, 2 tab, 3 blank; 4 to 9, also possible, leave the choice to the report.
    std::int32_t delimiterIndex = 0;
    ReportLayout format = ReportLayout::kByName;
    /// Empty, and nothing to be done, without a file and at least one source.
    std::vector<std::string> sources;
};

/// Larger numbers of levels are cut to this.
inline constexpr std::int32_t kMostLevels = 999'999'999;

/// Takes a silent line apart (KZ is "command line"): the digits right behind "-s" are the levels, the digit
/// behind the first "-d" is the delimiter, a format stands outside of double quotes, the first text in double
/// quotes is the file, and the others are the sources. What is missing keeps its default. REQUIRES:
/// isSilentLine(line), blanks in front of it aside.
SilentOrder KZGetFoldersFromCommand(std::string_view line);

}  // namespace hl
