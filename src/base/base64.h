// Bytes as Base64, with the usual digits and "=" at the end. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hl {

std::string base64(std::string_view bytes);
/// Returns nothing if the text is no Base64.
std::optional<std::string> base64Bytes(std::string_view text);

}  // namespace hl
