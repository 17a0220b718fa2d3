// Makes the link that opens the user's mail program for an error report.
#pragma once

#include <string>
#include <string_view>

namespace hl {

/// Escapes `text` for the body of a mail link. Only the characters of a fixed table are replaced, umlauts by
/// their Latin-1 numbers; a percent sign becomes two escaped ones.
std::string escapeMailBody(std::string_view text);

/// Returns "mailto:ADDRESS?subject=Bugreport_NAME_VERSION&body=BODY". The body asks, with `hint`, to paste
/// the report from the clipboard, because a link is too short to hold the report itself.
std::string reportMailLink(std::string_view address, std::string_view appName, std::string_view version,
                           std::string_view hint);

}  // namespace hl
