#include "app/catalogue.h"

#include "base/text.h"

namespace hl {

namespace {

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

// Returns the number of a heading such as "[3612]", or 0 if it is no number that a text can have.
int headingNumber(std::string_view line) {
    const std::string_view heading = trimWhite(line);
    if (!heading.ends_with(']')) return 0;
    const auto number = parseInteger(heading.substr(1, heading.size() - 2));
    return number && *number > 0 && *number <= Catalogue::kHighestId ? static_cast<int>(*number) : 0;
}

}  // namespace

Catalogue::Catalogue(std::string_view text, std::string_view code) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    int id = 0;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with('#')) continue;
        if (line.starts_with('[')) {
            id = headingNumber(line);
            continue;
        }
        const std::size_t equals = line.find('=');
        if (id == 0 || equals == std::string_view::npos || trimWhite(line.substr(0, equals)) != code)
            continue;
        texts_[id] = line.substr(equals + 1);
    }
}

std::string_view Catalogue::text(int id) const {
    const auto found = texts_.find(id);
    return found == texts_.end() ? std::string_view() : found->second;
}

}  // namespace hl
