// The filter of a search: terms such as "size>1G age>1y name=*.iso", which must all hold. The window's form
// and the command line write and read the same text. Reading and asking have no side effects and use no
// system calls, so a filter may be asked from any thread.
//
//     filter = term (blank term)*        term = ["!"] (field operator value | word)
//
// A field is size, disk, age, name, kind, owner or type; an operator is = != > >= < or <=. A word alone
// means name=*word*. A value or a word that holds blanks stands in double quotes, with \" and \\ within.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "scan/file_kinds.h"

namespace hl {

enum class FindField : std::uint8_t { kSize, kDisk, kAge, kName, kKind, kOwner, kType };

/// What the filter is asked about.
struct FindFacts {
    std::string_view name;    ///< Its last name, in bytes.
    std::uint64_t size = 0;   ///< In bytes.
    std::uint64_t disk = 0;   ///< What it takes on the disk, in bytes.
    std::int64_t age = 0;     ///< In whole seconds; below 0 if it was written after the search began.
    std::uint32_t owner = 0;  ///< The uid.
    char type = 'f';          ///< 'f' is a file, 'l' a link, 'o' any other thing that is no folder.
};

enum class FilterProblemKind : std::uint8_t {
    kNoField,       ///< No field is called so.
    kNoOperator,    ///< The operator is none of this field.
    kNoValue,       ///< There is no value, or it is none of this field: no number, no kind, no type.
    kNoSuchOwner,   ///< No user is called so.
    kQuoteIsOpen,   ///< A double quote is not closed, or text follows it without a blank.
    kBracketIsOpen  ///< A "[" of a pattern is not closed.
};

struct FilterProblem {
    FilterProblemKind kind;
    std::string term;  ///< As it was written.
};

/// A pattern of a file's name: "*" is any bytes, "?" one byte, "[a-z]" one of these and "[!a-z]" one of the
/// others. ASCII case is ignored, and alternatives stand between "|".
class NamePattern {
  public:
    /// Returns nothing if a bracket is not closed.
    static std::optional<NamePattern> read(std::string_view text);
    bool matches(std::string_view name) const;

  private:
    std::vector<std::string> alternatives_;  ///< In lower case.
};

class FindFilter {
  public:
    /// Returns the number of the user with that name, or nothing.
    using OwnerNumber = std::function<std::optional<std::uint32_t>(const std::string&)>;

    /// A text of blanks alone is a filter that takes every file.
    static std::variant<FindFilter, FilterProblem> read(std::string_view text,
                                                        const OwnerNumber& ownerNumber);

    bool takes(const FindFacts& file) const;
    /// Tells whether what is asked of name, kind and type holds; no other fact is needed.
    bool mayTake(const FindFacts& file) const;
    /// Tells whether a term asks for this; what no term asks for need not be given to takes().
    bool asksFor(FindField field) const;

  private:
    friend class FilterReading;
    /// A value with a fraction of a byte lies between `number` and the next.
    struct Term {
        FindField field = FindField::kName;
        bool negated = false;
        bool below = false, equal = false, above = false;  ///< Where a file's value may lie.
        bool hasFraction = false;
        std::int64_t number = 0;  ///< Bytes, seconds, a uid, or a FileKind; the character of a type.
        std::optional<NamePattern> pattern;

        bool holds(const FindFacts& file) const;
    };

    std::vector<Term> terms_;
};

}  // namespace hl
