#include "robustness/error_mail.h"

#include <utility>

#include "base/text.h"

namespace hl {

namespace {

// The rows are applied to the whole text from top to bottom: the percent sign comes before all rows that
// insert one, and CR LF before CR and LF alone.
constexpr std::pair<std::string_view, std::string_view> kEscapes[] = {
    {"%", "%25%25"}, {"\r\n", "%0A"}, {"\r", "%0A"}, {"\n", "%0A"}, {" ", "%20"},  {"!", "%21"}, {"#", "%23"},
    {"*", "%2A"},    {"/", "%2F"},    {"?", "%3F"},  {"Ä", "%C4"},  {"Ö", "%D6"},  {"Ü", "%DC"}, {"ß", "%DF"},
    {"ä", "%E4"},    {"ö", "%F6"},    {"ü", "%FC"},  {"&", "%26"},  {"\"", "%22"},
};

}  // namespace

std::string escapeMailBody(std::string_view text) {
    std::string out(text);
    for (const auto& [find, replacement] : kEscapes) out = replaceAll(out, find, replacement);
    return out;
}

std::string reportMailLink(std::string_view address, std::string_view appName, std::string_view version,
                           std::string_view hint) {
    const std::string body = "*** " + std::string(hint) + " ***\r\n\r\n";
    std::string link = "mailto:";
    link.append(address).append("?subject=Bugreport_").append(appName).append("_").append(version);
    return link + "&body=" + escapeMailBody(body);
}

}  // namespace hl
