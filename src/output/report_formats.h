// The formats in which a report or a list can be saved. Pure functions.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/texts.h"
#include "output/report_writer.h"

namespace hl {

/// The delimiters that the dialogs offer, by their index in the box.
inline constexpr std::string_view kDelimiters = ",;\t ";
enum SaveDelimiter : int { kDelimiterComma, kDelimiterSemicolon, kDelimiterTab, kDelimiterBlank };

/// The places of two formats in the table, and in the box of a dialog.
enum SaveFormat : int { kFormatTxt, kFormatCsv };

struct ReportFormat {
    std::string_view name;     ///< "csv" on the command line and at the end of a file's name.
    std::string_view caption;  ///< "CSV" in a dialog.
    SaveDelimiter delimiter;   ///< The one that a dialog chooses with the format.
    bool hasFormulas;          ///< An office program may take a text of it for a formula.
    std::unique_ptr<ReportWriter> (*writer)(ReportTable table, const NumberFormat& numbers);
};

std::span<const ReportFormat> reportFormats();
/// Returns the names of all formats.
std::vector<std::string_view> formatNames();
/// Returns null if there is no such format.
const ReportFormat* formatNamed(std::string_view name);
/// Returns the format by the end of the file's name, whatever its letters' case; CSV for any other end.
const ReportFormat& formatOfFile(std::string_view path);

// What the command line's help and errors say of the formats; a new format has to be named in each.
std::string formatHelp(const Texts& texts);
std::string formatByNameHelp(const Texts& texts);
/// `argument` is the one that names no format, as it is shown.
std::string unknownFormatText(const Texts& texts, const std::string& argument);

}  // namespace hl
