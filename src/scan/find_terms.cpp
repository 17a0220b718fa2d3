#include "scan/find_terms.h"

namespace hl {

namespace {

constexpr std::string_view kTermBlanks = " \t\r\n";

bool isTermBlank(char c) {
    return kTermBlanks.find(c) != std::string_view::npos;
}

// Returns where the text ends, behind the quote that closes it, or npos if none does.
std::size_t readQuoted(std::string_view written, std::string& value) {
    for (std::size_t at = 1; at < written.size(); ++at) {
        if (written[at] == '"') return at + 1;
        const bool escapes = written[at] == '\\' && at + 1 < written.size() &&
                             (written[at + 1] == '"' || written[at + 1] == '\\');
        value += escapes ? written[++at] : written[at];
    }
    return std::string_view::npos;
}

}  // namespace

std::vector<std::string> filterTerms(std::string_view filter) {
    std::vector<std::string> terms;
    std::string term;
    bool quoted = false;
    for (std::size_t at = 0; at < filter.size(); ++at) {
        const char c = filter[at];
        if (!quoted && isTermBlank(c)) {
            if (!term.empty()) terms.push_back(std::move(term));
            term.clear();
            continue;
        }
        // A quote within a value is a character like others.
        const bool opens = c == '"' && (term.empty() ||
                                        std::string_view("!=<>").find(term.back()) != std::string_view::npos);
        term += c;
        if (quoted && c == '\\' && at + 1 < filter.size()) {
            term += filter[++at];
        } else if (quoted || opens) {
            quoted = c != '"' || !quoted;
        }
    }
    if (!term.empty()) terms.push_back(std::move(term));
    return terms;
}

std::string termValue(std::string_view written) {
    if (!written.starts_with('"')) return std::string(written);
    std::string value;
    readQuoted(written, value);
    return value;
}

bool quoteCloses(std::string_view written) {
    std::string value;
    return !written.starts_with('"') || readQuoted(written, value) == written.size();
}

std::string quotedValue(std::string_view value) {
    if (value.find_first_of(kTermBlanks) == std::string_view::npos && !value.starts_with('"'))
        return std::string(value);
    std::string text = "\"";
    for (const char c : value) {
        if (c == '"' || c == '\\') text += '\\';
        text += c;
    }
    return text + '"';
}

}  // namespace hl
