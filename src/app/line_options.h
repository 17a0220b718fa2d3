// The options of a command line that have a text behind them, and which options go together with what is to
// be written. Pure functions.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// Stands in a line as "--name=text", or as two arguments.
struct TextOption {
    std::string_view name;
    bool isPath = false;      ///< The text is the path of a file, made absolute.
    bool mayBeInput = false;  ///< "-" instead of the path means standard input.
    bool repeats = false;     ///< It may be given several times.
};
/// Those with texts that may hold anything.
std::span<const TextOption> textOptions();
/// Returns the one that the argument is, or begins with in front of "="; null if it is none.
const TextOption* textOptionOf(std::string_view argument);

inline constexpr std::string_view kNoNames = "--no-names";
inline constexpr std::string_view kOpenOption = "--open";
inline constexpr std::string_view kCompareOption = "--compare";
inline constexpr std::string_view kGrownOption = "--grown";
inline constexpr std::string_view kProgressOption = "--progress";

/// Formats that the program writes while it reads, or for other programs; none of them is a table.
enum class ProgramFormat : std::uint8_t { kNone, kJsonLines, kNcdu, kScan };
/// Their names on the command line.
inline constexpr std::string_view kProgramFormats[] = {"jsonl", "ncdu", "scan"};
/// Returns the format with this name, or if the name is empty, the one that the end of the file's name tells.
ProgramFormat programFormatOf(std::string_view format, std::string_view file);
/// The formats of what has grown.
inline constexpr std::string_view kCompareFormats[] = {"csv", "txt", "jsonl"};

/// A command line, as far as these options matter.
struct LineShape {
    std::vector<std::string> switches = {};  ///< With "=" and the text behind those that have one.
    std::string format = {};                 ///< Empty if none is given.
    std::string file = {};                   ///< What is to be written.
    bool isSilent = false;
    bool hasOtherTask = false;  ///< A balance, or a search.
    std::size_t folders = 0;
};

enum class ShapeProblem : std::uint8_t {
    kNone,
    kNotForWindow,  ///< There has to be a "-s" in front of the option.
    kNotTogether,   ///< It is given twice, or is of no use for what is written.
    kOneSource,     ///< The format has room for one source alone.
    kCompareFormat,
    kNoSize,      ///< What stands behind --grown is no size.
    kNoProgress,  ///< What stands behind --progress is no format.
};
struct ShapeFault {
    ShapeProblem problem = ShapeProblem::kNone;
    std::string option = {};  ///< The one that is a problem.
};
ShapeFault faultOf(const LineShape& line);

}  // namespace hl
