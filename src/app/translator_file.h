// Reads the translator's file, with which a translation is tried out: a list of numbered texts, separated by
// commas.
//
//     # A comment, which ends at a comma or at the end of the line.
//     3612,Speichern,Save
//     3710,"Alle Ordner","All folders, of every source"
//
// A record is the number, the German text (not used) and the translation. A field ends at a comma or at the
// end of the line; in double quotes it may hold both. A record need not be on one line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

struct TranslatorRecord {
    std::int64_t id = 0;  ///< 0 if the first field is no number.
    std::string text;
    bool operator==(const TranslatorRecord&) const = default;
};

/// Returns all complete records, in the order of the file.
std::vector<TranslatorRecord> parseTranslatorFile(std::string_view content);

}  // namespace hl
