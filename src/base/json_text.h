// Writes texts as JSON has them. Pure functions; from any thread.
#pragma once

#include <string>
#include <string_view>

namespace hl {

/// Appends the text in double quotes. What is no UTF-8 becomes U+FFFD.
void appendJsonString(std::string& out, std::string_view text);

/// Appends `"name":` with the path behind it, and if the path is no UTF-8, a second key with "64" behind the
/// name, whose value is the path's bytes in Base64.
void appendJsonPath(std::string& out, std::string_view name, std::string_view path);

}  // namespace hl
