#include "scan/rule_text.h"

#include <algorithm>
#include <utility>

namespace hl {

namespace {

constexpr char kRuleSeparator = '/';

// A blank that a backslash precedes stays, with the backslash.
std::string_view withoutBlanksAtEnd(std::string_view line) {
    std::size_t end = 0;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == ' ') continue;
        if (line[at] == '\\') {
            if (++at == line.size()) return line;
        }
        end = at + 1;
    }
    return line.substr(0, end);
}

// These are the classes of ASCII, whatever the language of the system.
bool isOfClass(std::string_view name, int byte, bool& known) {
    const auto within = [byte](char first, char last) { return byte >= first && byte <= last; };
    const bool digit = within('0', '9'), upper = within('A', 'Z'), lower = within('a', 'z');
    const bool printed = byte >= 0x20 && byte <= 0x7e;
    const bool letter = upper || lower;
    known = true;
    if (name == "alnum") return letter || digit;
    if (name == "alpha") return letter;
    if (name == "blank") return byte == ' ' || byte == '\t';
    if (name == "cntrl") return byte < 0x20 || byte == 0x7f;
    if (name == "digit") return digit;
    if (name == "graph") return printed && byte != ' ';
    if (name == "lower") return lower;
    if (name == "print") return printed;
    if (name == "punct") return printed && byte != ' ' && !letter && !digit;
    if (name == "space") return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
    if (name == "upper") return upper;
    if (name == "xdigit") return digit || within('A', 'F') || within('a', 'f');
    return known = false;
}

/// Reads the pattern of a rule from left to right.
class PatternReader {
  public:
    explicit PatternReader(std::string_view text) : text_(text) {}

    RuleProblem read(std::vector<RulePart>& parts) {
        parts.emplace_back();
        while (at_ < text_.size() && problem_ == RuleProblem::kNone) readOne(parts);
        return problem_;
    }

  private:
    bool atEnd() const { return at_ == text_.size(); }
    char take() { return text_[at_++]; }
    unsigned char takeByte() { return static_cast<unsigned char>(take()); }
    void fail(RuleProblem problem) {
        problem_ = problem;
        at_ = text_.size();
    }

    void readOne(std::vector<RulePart>& parts) {
        const char byte = take();
        if (byte == kRuleSeparator) {
            parts.emplace_back();
        } else if (byte == '*') {
            readStars(parts);
        } else if (byte == '?') {
            parts.back().pattern.addAny();
        } else if (byte == '[') {
            readSet(parts.back().pattern);
        } else if (byte != '\\') {
            parts.back().pattern.addByte(byte);
        } else if (atEnd()) {
            fail(RuleProblem::kNothingToEscape);
        } else if (text_[at_] == kRuleSeparator) {
            ++at_;
            parts.emplace_back();
        } else {
            parts.back().pattern.addByte(take());
        }
    }

    // Two stars or more are a part of their own only between separators; else they are as one. Before a
    // separator with a backslash they stand for one folder at least.
    void readStars(std::vector<RulePart>& parts) {
        const std::size_t first = at_ - 1;
        while (!atEnd() && text_[at_] == '*') ++at_;
        const bool begins = first == 0 || text_[first - 1] == kRuleSeparator;
        const std::string_view rest = text_.substr(at_);
        const bool ends = rest.empty() || rest.starts_with(kRuleSeparator) || rest.starts_with("\\/");
        const bool anyDepth = at_ - first > 1 && begins && ends;
        parts.back().pattern.addStar();
        if (anyDepth && rest.starts_with('\\')) parts.emplace_back().pattern.addStar();
        parts.back().anyDepth = anyDepth;
    }

    // The first byte of a set belongs to it even if it is "]".
    void readSet(RulePattern& pattern) {
        const bool negated = !atEnd() && (text_[at_] == '!' || text_[at_] == '^');
        if (negated) ++at_;
        ByteSet set;
        unsigned char before = 0;  // The byte that a range may begin with; 0 if there is none.
        do {
            if (atEnd()) return fail(RuleProblem::kOpenSet);
            before = readMember(set, before);
        } while (problem_ == RuleProblem::kNone && (atEnd() || text_[at_] != ']'));
        if (problem_ != RuleProblem::kNone) return;
        ++at_;
        pattern.addSet(negated ? ~set : set);
    }

    unsigned char readMember(ByteSet& set, unsigned char before) {
        unsigned char byte = takeByte();
        if (byte == '-' && before != 0 && !atEnd() && text_[at_] != ']') return readRangeEnd(set, before);
        if (byte == '[' && !atEnd() && text_[at_] == ':' && readClass(set)) return 0;
        if (byte == '\\') {
            if (atEnd()) return fail(RuleProblem::kOpenSet), 0;
            byte = takeByte();
        }
        set.set(byte);
        return byte;
    }

    unsigned char readRangeEnd(ByteSet& set, unsigned char first) {
        unsigned char last = takeByte();
        if (last == '\\') {
            if (atEnd()) return fail(RuleProblem::kOpenSet), 0;
            last = takeByte();
        }
        for (unsigned each = first; each <= last; ++each) set.set(each);
        return 0;
    }

    // Returns false if it is no class after all: then the "[" is a byte like any other.
    bool readClass(ByteSet& set) {
        const std::size_t begin = at_ + 1;
        const std::size_t end = text_.find(']', begin);
        if (end == std::string_view::npos) return fail(RuleProblem::kOpenSet), true;
        if (end == begin || text_[end - 1] != ':') return false;
        const std::string_view name = text_.substr(begin, end - 1 - begin);
        bool known = true;
        for (int byte = 0; byte < 256; ++byte)
            if (isOfClass(name, byte, known)) set.set(static_cast<std::size_t>(byte));
        if (!known) fail(RuleProblem::kUnknownClass);
        if (known) at_ = end + 1;
        return true;
    }

    const std::string_view text_;
    std::size_t at_ = 0;
    RuleProblem problem_ = RuleProblem::kNone;
};

// "**/a" is the name "a" anywhere, and "/**" any name.
void simplify(Rule& rule) {
    auto& parts = rule.parts;
    if (rule.anywhere || parts.size() > 2 || !parts.front().anyDepth) return;
    if (parts.size() == 2 && !parts.back().anyDepth) parts.erase(parts.begin());
    if (parts.size() == 2) return;
    rule.anywhere = true;
}

/// A rule's pattern in two, of which one has to match; the second is empty for most rules.
struct BothPatterns {
    std::string first, second;
};

// Where "**" ends a part that begins with plain bytes, those are compared first, and "**" then stands at the
// beginning of what is left.
BothPatterns splitBehindPlainBytes(std::string_view pattern) {
    const std::size_t star = pattern.find_first_of("*?[\\");
    const std::size_t rest = pattern.find_first_not_of('*', star);
    const bool two = star != std::string_view::npos && pattern.substr(star).starts_with("**");
    if (!two || star == 0 || pattern[star - 1] == kRuleSeparator) return {std::string(pattern), ""};
    const std::string plain(pattern.substr(0, star));
    if (rest == std::string_view::npos) return {plain + "*", plain + "*/**"};
    const std::string_view behind = pattern.substr(rest);
    const bool escaped = behind.starts_with("\\/");
    if (!escaped && behind.front() != kRuleSeparator) return {std::string(pattern), ""};
    const std::string below(behind.substr(escaped ? 2 : 1));
    return {plain + "*/**/" + below, escaped ? "" : plain + below};
}

}  // namespace

RuleReading readRule(std::string_view line) {
    line = line.substr(0, line.find('\0'));
    if (line.ends_with('\r')) line.remove_suffix(1);
    line = withoutBlanksAtEnd(line);
    if (line.empty() || line.starts_with('#')) return {};
    Rule rule{.text = std::string(line)};
    rule.takesBack = line.starts_with('!');
    if (rule.takesBack) line.remove_prefix(1);
    rule.onlyFolders = line.ends_with(kRuleSeparator);
    if (rule.onlyFolders) line.remove_suffix(1);
    if (line.empty()) return {};
    rule.anywhere = line.find(kRuleSeparator) == std::string_view::npos;
    if (line.starts_with(kRuleSeparator)) line.remove_prefix(1);
    const BothPatterns patterns =
        rule.anywhere ? BothPatterns{std::string(line), ""} : splitBehindPlainBytes(line);
    const RuleProblem problem = PatternReader(patterns.first).read(rule.parts);
    if (problem != RuleProblem::kNone) return {.problem = problem};
    if (!patterns.second.empty()) PatternReader(patterns.second).read(rule.orParts);
    simplify(rule);
    return {.rule = std::move(rule)};
}

std::vector<std::string_view> ruleLines(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

}  // namespace hl
