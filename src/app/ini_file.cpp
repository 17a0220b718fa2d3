#include "app/ini_file.h"

#include <algorithm>

#include "base/text.h"

namespace hl {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Line {
    enum class Kind { kOther, kSection, kKey };
    Kind kind = Kind::kOther;
    std::size_t begin = 0;
    std::size_t end = 0;  ///< The end of the line, with its line break.
    std::string_view name;
    std::string_view value;  ///< The value, still encoded.
};

// The lines of a text, one after the other.
class Lines {
  public:
    explicit Lines(std::string_view text) : text_(text) {}

    std::optional<Line> next() {
        if (at_ >= text_.size()) return std::nullopt;
        Line line;
        line.begin = at_;
        const std::size_t lineFeed = text_.find('\n', at_);
        at_ = lineFeed == std::string_view::npos ? text_.size() : lineFeed + 1;
        line.end = at_;
        read(text_.substr(line.begin, line.end - line.begin), line);
        return line;
    }

  private:
    static void read(std::string_view content, Line& line) {
        if (line.begin == 0 && content.starts_with(kByteOrderMark))
            content.remove_prefix(kByteOrderMark.size());
        content = trimWhite(content);
        if (content.starts_with(';')) return;
        const std::size_t bracket = content.find(']');
        if (content.starts_with('[') && bracket != std::string_view::npos) {
            line.kind = Line::Kind::kSection;
            line.name = trimWhite(content.substr(1, bracket - 1));
            return;
        }
        const std::size_t equals = content.find('=');
        if (equals == std::string_view::npos) return;
        line.kind = Line::Kind::kKey;
        line.name = trimWhite(content.substr(0, equals));
        line.value = trimWhite(content.substr(equals + 1));
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

bool isSection(const Line& line, std::string_view name) {
    return line.kind == Line::Kind::kSection && compareFolded(line.name, name) == 0;
}

// Calls `visit` with the lines of the first section of this name, from its heading on, until it returns
// false.
template <class Visit>
void visitSection(std::string_view text, std::string_view name, Visit visit) {
    Lines lines(text);
    auto line = lines.next();
    while (line && !isSection(*line, name)) line = lines.next();
    while (line && visit(*line)) {
        line = lines.next();
        if (line && line->kind == Line::Kind::kSection) return;
    }
}

std::optional<Line> findKey(std::string_view text, std::string_view section, std::string_view key) {
    std::optional<Line> found;
    visitSection(text, section, [&](const Line& line) {
        if (line.kind == Line::Kind::kKey && compareFolded(line.name, key) == 0) found = line;
        return !found;
    });
    return found;
}

// Returns the place behind the last line of the section that is not blank; nothing if there is no such
// section.
std::optional<std::size_t> endOfSection(std::string_view text, std::string_view section) {
    std::optional<std::size_t> end;
    visitSection(text, section, [&](const Line& line) {
        if (!trimWhite(text.substr(line.begin, line.end - line.begin)).empty()) end = line.end;
        return true;
    });
    return end;
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool isName(std::string_view name) {
    return !name.empty() && trimWhite(name) == name && std::ranges::none_of(name, isControl);
}

bool isSectionName(std::string_view name) {
    return isName(name) && name.find(']') == std::string_view::npos;
}

bool isKeyName(std::string_view name) {
    return isName(name) && name[0] != ';' && name[0] != '[' && name.find('=') == std::string_view::npos;
}

bool needsEscapes(std::string_view value) {
    return std::ranges::any_of(value, isControl) || decodable(value) != value;
}

bool needsQuotes(std::string_view value) {
    const auto edge = [](char c) { return c == ' ' || c == '"'; };
    return !value.empty() && (edge(value.front()) || edge(value.back()) || value.starts_with("$'"));
}

void appendByte(std::string& out, char byte) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto number = static_cast<unsigned char>(byte);
    out += "\\x";
    out += kDigits[number >> 4];
    out += kDigits[number & 15];
}

std::string escaped(std::string_view value) {
    std::string out = "$'";
    while (!value.empty()) {
        const CodePoint point = firstCodePoint(value);
        const char c = value[0];
        if (c == '\n' || c == '\r') {
            out += c == '\n' ? "\\n" : "\\r";
        } else if (c == '\\' || c == '\'') {
            out += {'\\', c};
        } else if (!point.value || isControl(c)) {
            appendByte(out, c);
        } else {
            out += value.substr(0, point.length);
        }
        value.remove_prefix(point.value ? point.length : 1);
    }
    return out + "'";
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// Decodes one escape at the front and removes it; a backslash that begins no escape stands for itself.
void appendUnescaped(std::string& out, std::string_view& text) {
    const char kind = text.size() > 1 ? text[1] : '\0';
    if (kind == 'x' && text.size() > 3 && hexDigit(text[2]) >= 0 && hexDigit(text[3]) >= 0) {
        out += static_cast<char>(hexDigit(text[2]) * 16 + hexDigit(text[3]));
        text.remove_prefix(4);
        return;
    }
    const bool known = kind == 'n' || kind == 'r' || kind == '\\' || kind == '\'';
    out += !known ? text[0] : kind == 'n' ? '\n' : kind == 'r' ? '\r' : kind;
    text.remove_prefix(known ? 2 : 1);
}

std::string unescaped(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t backslash = text.find('\\');
        out += text.substr(0, backslash);
        if (backslash == std::string_view::npos) break;
        text.remove_prefix(backslash);
        appendUnescaped(out, text);
    }
    return out;
}

std::string valueOf(const Line& line) {
    std::string value = decodeIniValue(line.value);
    value.resize(firstCharacters(value, kLongestIniValue).size());
    return value;
}

}  // namespace

std::string encodeIniValue(std::string_view value) {
    if (needsEscapes(value)) return escaped(value);
    return needsQuotes(value) ? '"' + std::string(value) + '"' : std::string(value);
}

std::string decodeIniValue(std::string_view written) {
    if (written.size() >= 3 && written.starts_with("$'") && written.ends_with('\''))
        return unescaped(written.substr(2, written.size() - 3));
    if (written.size() >= 2 && written.starts_with('"') && written.ends_with('"'))
        return std::string(written.substr(1, written.size() - 2));
    return std::string(written);
}

std::optional<std::string> IniText::find(std::string_view section, std::string_view key) const {
    const auto line = findKey(text_, section, key);
    return line ? std::optional(valueOf(*line)) : std::nullopt;
}

std::map<std::string, std::string, std::less<>> IniText::section(std::string_view section) const {
    std::map<std::string, std::string, std::less<>> values;
    visitSection(text_, section, [&](const Line& line) {
        if (line.kind == Line::Kind::kKey) values.emplace(lowerCase(line.name), valueOf(line));
        return true;
    });
    return values;
}

bool IniText::set(std::string_view section, std::string_view key, std::string_view value) {
    if (value.size() > kLongestIniValue || !isSectionName(section) || !isKeyName(key)) return false;
    std::string line = std::string(key).append("=").append(encodeIniValue(value)).append(kLineEnd);
    if (const auto old = findKey(text_, section, key)) {
        if (valueOf(*old) != value) text_.replace(old->begin, old->end - old->begin, line);
        return true;
    }
    std::size_t at = text_.size();
    if (const auto end = endOfSection(text_, section)) {
        at = *end;
    } else {
        line = "[" + std::string(section) + "]" + std::string(kLineEnd) + line;
    }
    if (at > 0 && text_[at - 1] != '\n') line.insert(0, kLineEnd);
    text_.insert(at, line);
    return true;
}

void IniText::removeSection(std::string_view section) {
    std::string kept;
    bool inside = false;
    Lines lines(text_);
    while (const auto line = lines.next()) {
        if (line->kind == Line::Kind::kSection) inside = isSection(*line, section);
        if (!inside) kept.append(text_, line->begin, line->end - line->begin);
    }
    text_ = std::move(kept);
}

}  // namespace hl
