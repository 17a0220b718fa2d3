#include "app/translator_file.h"

#include <algorithm>
#include <optional>

#include "base/text.h"

namespace hl {

namespace {

// Reads fields from the front of a text. Blanks in front of a field, and anything between a closing quote and
// the end of the field, are dropped.
class FieldReader {
  public:
    explicit FieldReader(std::string_view text) : rest_(text) {
        if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
    }

    std::optional<std::string_view> next() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        if (rest_.empty()) return std::nullopt;
        if (rest_[0] != '"') return trimWhite(takeTo(",\n"));
        rest_.remove_prefix(1);
        const std::string_view field = takeTo("\"");
        takeTo(",\n");
        return field;
    }

  private:
    // Returns the text up to one of the marks and removes both.
    std::string_view takeTo(std::string_view marks) {
        const std::size_t end = rest_.find_first_of(marks);
        const std::string_view taken = rest_.substr(0, end);
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        return taken;
    }

    std::string_view rest_;
};

}  // namespace

std::vector<TranslatorRecord> parseTranslatorFile(std::string_view content) {
    std::vector<TranslatorRecord> records;
    FieldReader fields(content);
    while (const auto id = fields.next()) {
        if (id->empty() || id->starts_with('#')) continue;
        const auto german = fields.next();
        const auto text = fields.next();
        if (!german || !text) break;
        records.push_back({parseInteger(*id).value_or(0), std::string(*text)});
    }
    return records;
}

}  // namespace hl
