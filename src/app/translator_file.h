// The translator's file: a list of texts with their numbers, separated by commas, to try a translation out.
//
//     # A comment, which ends at a comma or at the end of the line.
//     3612,Speichern,Save
//     3710,"Alle Ordner","All folders, of every source"
//
// A record is the number, the German text (not used) and the translation. A field ends at a comma or at the
// end of the line, and may stand in double quotes to hold either. Records need not keep to lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

struct TranslatorRecord {
    std::int64_t id = 0;  ///< 0 where the first field is no number.
    std::string text;
    bool operator==(const TranslatorRecord&) const = default;
};

/// All complete records, in the order of the file.
std::vector<TranslatorRecord> parseTranslatorFile(std::string_view content);

}  // namespace hl
