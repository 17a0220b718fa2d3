#include "scan/find_filter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

#include "base/size_argument.h"
#include "scan/find_terms.h"

namespace hl {

namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct FieldName {
    std::string_view name;
    FindField field;
};

constexpr std::array<FieldName, 7> kFields = {{{"size", FindField::kSize},
                                               {"disk", FindField::kDisk},
                                               {"age", FindField::kAge},
                                               {"name", FindField::kName},
                                               {"kind", FindField::kKind},
                                               {"owner", FindField::kOwner},
                                               {"type", FindField::kType}}};

struct Unit {
    char letter;
    std::int64_t factor;
};

constexpr std::array<Unit, 5> kSeconds = {
    {{'h', 3600}, {'d', 86400}, {'w', 7LL * 86400}, {'m', 30LL * 86400}, {'y', 365LL * 86400}}};

// Reads digits and a letter.
std::optional<std::int64_t> readAge(std::string_view text) {
    std::int64_t count = 0;
    const char* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, count);
    if (text.starts_with('-') || error != std::errc() || textEnd - end != 1) return std::nullopt;
    const auto unit = std::ranges::find(kSeconds, lowered(*end), &Unit::letter);
    if (unit == kSeconds.end() || count > kLargest / unit->factor) return std::nullopt;
    return count * unit->factor;
}

// Returns where the bracket that opens at `open` closes, or npos. A "]" right behind the opening is a
// character like others.
std::size_t bracketEnd(std::string_view pattern, std::size_t open) {
    std::size_t first = open + 1;
    if (first < pattern.size() && (pattern[first] == '!' || pattern[first] == '^')) ++first;
    return pattern.find(']', first + 1);
}

bool isInBracket(std::string_view inner, char c) {
    const bool others = inner.front() == '!' || inner.front() == '^';
    if (others) inner.remove_prefix(1);
    const auto byte = static_cast<unsigned char>(c);
    bool found = false;
    for (std::size_t i = 0; i < inner.size(); ++i) {
        const auto low = static_cast<unsigned char>(inner[i]);
        auto high = low;
        if (i + 2 < inner.size() && inner[i + 1] == '-') high = static_cast<unsigned char>(inner[i += 2]);
        found = found || (low <= byte && byte <= high);
    }
    return found != others;
}

// Takes one item of the pattern that matches one byte; returns how long the item is, or 0 if it does not
// match.
std::size_t matchOne(std::string_view pattern, char c) {
    if (pattern.front() == '?') return 1;
    if (pattern.front() != '[') return pattern.front() == c ? 1 : 0;
    const std::size_t end = bracketEnd(pattern, 0);
    return isInBracket(pattern.substr(1, end - 1), c) ? end + 1 : 0;
}

// What a "*" stands for grows by one byte each time that the rest does not match, so the time is at most
// the product of both lengths.
bool matchesPattern(std::string_view pattern, std::string_view name) {
    std::size_t at = 0, in = 0;
    std::optional<std::size_t> behindStar;
    std::size_t starUntil = 0;
    while (in < name.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            behindStar = ++at;
            starUntil = in;
            continue;
        }
        const std::size_t taken = at < pattern.size() ? matchOne(pattern.substr(at), lowered(name[in])) : 0;
        if (taken > 0) {
            at += taken;
            ++in;
        } else if (behindStar) {
            at = *behindStar;
            in = ++starUntil;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

}  // namespace

// --- patterns

std::optional<NamePattern> NamePattern::read(std::string_view text) {
    NamePattern pattern;
    std::string alternative;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t end = text[at] == '[' ? bracketEnd(text, at) : at;
        if (end == std::string_view::npos) return std::nullopt;
        if (text[at] == '|') {
            pattern.alternatives_.push_back(std::exchange(alternative, {}));
            continue;
        }
        for (; at < end; ++at) alternative += lowered(text[at]);
        alternative += lowered(text[at]);
    }
    pattern.alternatives_.push_back(std::move(alternative));
    return pattern;
}

bool NamePattern::matches(std::string_view name) const {
    return std::ranges::any_of(alternatives_,
                               [name](const std::string& each) { return matchesPattern(each, name); });
}

// --- reading

/// Reads one term after the other.
class FilterReading {
  public:
    explicit FilterReading(const FindFilter::OwnerNumber& ownerNumber) : ownerNumber_(ownerNumber) {}

    std::variant<FindFilter, FilterProblem> run(std::string_view text) {
        FindFilter filter;
        for (const std::string& written : filterTerms(text)) {
            rest_ = written;
            FindFilter::Term term;
            if (const auto problem = readTerm(term)) return FilterProblem{*problem, written};
            filter.terms_.push_back(std::move(term));
        }
        return filter;
    }

  private:
    using Problem = std::optional<FilterProblemKind>;

    bool take(std::string_view text) {
        if (!rest_.starts_with(text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    std::string_view takeUntil(std::string_view characters) {
        const std::string_view taken = rest_.substr(0, rest_.find_first_of(characters));
        rest_.remove_prefix(taken.size());
        return taken;
    }

    Problem readTerm(FindFilter::Term& term) {
        term.negated = take("!");
        const std::string_view start = rest_;
        const std::string_view field = takeUntil("=!<>\"");
        const auto known = std::ranges::find(kFields, field, &FieldName::name);
        const std::string_view sign = readOperator();
        if (sign.empty()) {
            rest_ = start;
            return readWord(term);
        }
        std::string value;
        if (const auto problem = readText(value)) return problem;
        if (known == kFields.end()) return FilterProblemKind::kNoField;
        term.field = known->field;
        if (const auto problem = setOperator(term, sign)) return problem;
        return setValue(term, value);
    }

    // Who writes an operator means no word; in quotes it is one.
    Problem readWord(FindFilter::Term& term) {
        if (rest_.starts_with('!') ||
            (!rest_.starts_with('"') && rest_.find_first_of("=<>") != std::string_view::npos))
            return FilterProblemKind::kNoField;
        std::string word;
        if (const auto problem = readText(word)) return problem;
        if (word.empty()) return FilterProblemKind::kNoValue;
        term.field = FindField::kName;
        term.equal = true;
        return setPattern(term, "*" + word + "*");
    }

    std::string_view readOperator() {
        for (const std::string_view sign : {"!=", ">=", "<=", "=", ">", "<"})
            if (take(sign)) return sign;
        return {};
    }

    /// Reads a value or a word, which is the rest of the term.
    Problem readText(std::string& text) const {
        text = termValue(rest_);
        return quoteCloses(rest_) ? Problem() : FilterProblemKind::kQuoteIsOpen;
    }

    static Problem setOperator(FindFilter::Term& term, std::string_view sign) {
        const bool isOrder = sign.front() == '<' || sign.front() == '>';
        const bool hasOrder =
            term.field == FindField::kSize || term.field == FindField::kDisk || term.field == FindField::kAge;
        if (isOrder && !hasOrder) return FilterProblemKind::kNoOperator;
        term.below = sign.front() == '<' || sign == "!=";
        term.above = sign.front() == '>' || sign == "!=";
        term.equal = sign.ends_with('=') && sign != "!=";
        return std::nullopt;
    }

    Problem setValue(FindFilter::Term& term, const std::string& value) {
        if (value.empty()) return FilterProblemKind::kNoValue;
        switch (term.field) {
            case FindField::kSize:
            case FindField::kDisk: {
                const auto size = sizeOfArgument(value);
                if (!size) return FilterProblemKind::kNoValue;
                term.number = static_cast<std::int64_t>(size->bytes);
                term.hasFraction = size->hasFraction;
                return std::nullopt;
            }
            case FindField::kAge: {
                const auto age = readAge(value);
                if (!age) return FilterProblemKind::kNoValue;
                term.number = *age;
                return std::nullopt;
            }
            case FindField::kName:
                return setPattern(term, value);
            case FindField::kKind: {
                const auto kind = kindNamed(value);
                if (!kind) return FilterProblemKind::kNoValue;
                term.number = static_cast<std::int64_t>(*kind);
                return std::nullopt;
            }
            case FindField::kOwner:
                return setOwner(term, value);
            case FindField::kType:
                if (value.size() != 1 || std::string_view("flo").find(value) == std::string_view::npos)
                    return FilterProblemKind::kNoValue;
                term.number = static_cast<unsigned char>(value.front());
                return std::nullopt;
        }
        return FilterProblemKind::kNoField;
    }

    static Problem setPattern(FindFilter::Term& term, std::string_view pattern) {
        term.pattern = NamePattern::read(pattern);
        return term.pattern ? Problem() : FilterProblemKind::kBracketIsOpen;
    }

    Problem setOwner(FindFilter::Term& term, const std::string& value) {
        std::optional<std::uint32_t> owner;
        if (value.front() == '#') {
            std::uint32_t number = 0;
            const char* end = value.data() + value.size();
            const auto [read, error] = std::from_chars(value.data() + 1, end, number);
            if (error != std::errc() || read != end) return FilterProblemKind::kNoValue;
            owner = number;
        } else if (ownerNumber_) {
            owner = ownerNumber_(value);
        }
        if (!owner) return FilterProblemKind::kNoSuchOwner;
        term.number = *owner;
        return std::nullopt;
    }

    std::string_view rest_;
    const FindFilter::OwnerNumber& ownerNumber_;
};

std::variant<FindFilter, FilterProblem> FindFilter::read(std::string_view text,
                                                         const OwnerNumber& ownerNumber) {
    return FilterReading(ownerNumber).run(text);
}

// --- asking

bool FindFilter::Term::holds(const FindFacts& file) const {
    const auto compare = [this](std::int64_t value) {
        if (value > number) return above;
        return value < number || hasFraction ? below : equal;
    };
    const auto size = [](std::uint64_t bytes) {
        return static_cast<std::int64_t>(std::min<std::uint64_t>(bytes, kLargest));
    };
    switch (field) {
        case FindField::kSize:
            return compare(size(file.size));
        case FindField::kDisk:
            return compare(size(file.disk));
        case FindField::kAge:
            return compare(file.age);
        case FindField::kName:
            return pattern->matches(file.name) == equal;
        case FindField::kKind:
            return compare(static_cast<std::int64_t>(kindOfEnding(Ending(file.name).text())));
        case FindField::kOwner:
            return compare(file.owner);
        case FindField::kType:
            return compare(static_cast<unsigned char>(file.type));
    }
    return false;
}

bool FindFilter::takes(const FindFacts& file) const {
    return std::ranges::all_of(terms_, [&](const Term& term) { return term.holds(file) != term.negated; });
}

bool FindFilter::mayTake(const FindFacts& file) const {
    return std::ranges::all_of(terms_, [&](const Term& term) {
        using enum FindField;
        const bool known = term.field == kName || term.field == kKind || term.field == kType;
        return !known || term.holds(file) != term.negated;
    });
}

bool FindFilter::asksFor(FindField field) const {
    return std::ranges::any_of(terms_, [field](const Term& term) { return term.field == field; });
}

}  // namespace hl
