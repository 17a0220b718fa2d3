#include "views/statistics_list.h"

#include "scan/file_kinds.h"
#include "scan/find_terms.h"
#include "scan/statistics.h"

namespace hl {

namespace {

// What means something in a pattern stands in a bracket of its own. A "]" alone means nothing.
std::string asPattern(std::string_view text) {
    std::string pattern;
    for (const char c : text) {
        const bool special = c == '*' || c == '?' || c == '[' || c == '|';
        pattern += special ? std::string{'[', c, ']'} : std::string(1, c);
    }
    return pattern;
}

}  // namespace

std::string filterOfKind(int kind) {
    return "kind=" + quotedValue(nameOf(static_cast<FileKind>(kind)));
}

// A name whose only "." is its first byte has no ending, nor has one that ends with too many bytes behind it.
std::string filterOfEnding(std::string_view ending) {
    if (!ending.empty()) return "name=" + quotedValue("?*." + asPattern(ending));
    std::string patterns, behind;
    for (std::size_t length = 1; length <= Ending::kLongest; ++length) {
        behind += "[!.]";
        patterns += (length > 1 ? "|?*." : "?*.") + behind;
    }
    return "!name=" + patterns;
}

std::string filterOfAge(int ageClass) {
    if (ageClass == kInTheFuture) return "age<0d";
    const auto at = static_cast<std::size_t>(ageClass);
    std::string filter = "age>=" + std::to_string(kAgeBorders[at]) + "d";
    if (at + 1 < kAgeBorders.size()) filter += " age<" + std::to_string(kAgeBorders[at + 1]) + "d";
    return filter;
}

std::string filterOfOwner(std::uint32_t owner) {
    return "owner=#" + std::to_string(owner);
}

}  // namespace hl
