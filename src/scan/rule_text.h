// Reads one rule of what a scan leaves out, as a line of text. Pure functions.
//
//     # a comment              name               "!name" takes back in what an earlier rule left out
//     *.o  a?  [a-z0-9]        name/              folders alone
//     /name  a/b               from the source on
//     **/a  a/**  a/**/b       any number of folders
//     a/b**/c                  as a/bc and a/b*/**/c, since the bytes in front of "**" are compared first
//
// A backslash takes the meaning from the byte behind it. Blanks at the end do not count, unless there is a
// backslash in front of them. The syntax and its meaning are those of gitignore. Rules are bytes, and "?" is
// one byte; upper and lower case differ.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scan/rule_pattern.h"

namespace hl {

/// A part of a rule between separators.
struct RulePart {
    bool anyDepth = false;  ///< "**": any number of folders, none included; as the last part at least one.
    RulePattern pattern = {};
};

struct Rule {
    std::string text;  ///< As it was written, without blanks at the end.
    bool takesBack = false;
    bool onlyFolders = false;
    bool anywhere = false;  ///< A name on any level; then there is one part. Else it counts from the source.
    std::vector<RulePart> parts = {};
    std::vector<RulePart> orParts = {};  ///< Another path that matches as well; empty for most rules.
};

/// Why a rule cannot be read.
enum class RuleProblem : std::uint8_t {
    kNone,
    kOpenSet,          ///< A "[" has no "]".
    kUnknownClass,     ///< "[:name:]" within a set, with a name that means nothing.
    kNothingToEscape,  ///< A backslash is the last byte.
};

struct RuleReading {
    std::optional<Rule> rule = {};  ///< Nothing for a comment, an empty line, or a problem.
    RuleProblem problem = RuleProblem::kNone;
};

/// Reads a line; it ends before its line break or a NUL, and a carriage return at its end does not count.
RuleReading readRule(std::string_view line);

/// Returns the lines of a text, without line breaks and without a byte order mark in front of the first.
std::vector<std::string_view> ruleLines(std::string_view text);

}  // namespace hl
