// Takes the text of a filter apart and puts its values together. scan/find_filter.h tells how it is written.
// Pure functions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// Returns the terms as they are written; a quote that is open runs to the end.
std::vector<std::string> filterTerms(std::string_view filter);
/// Returns the value that stands behind an operator, without its quotes. One whose quote is open runs to the
/// end.
std::string termValue(std::string_view written);
/// Tells whether a value that begins with a quote also ends with the one that closes it.
bool quoteCloses(std::string_view written);
/// Returns the value as it is written: in quotes if it needs them.
std::string quotedValue(std::string_view value);

}  // namespace hl
