#include "robustness/api_error_text.h"

#include <cerrno>

#include "base/text.h"

namespace hl {

namespace {

std::string onOneLine(std::string text) {
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    return std::string(trimBlanks(text));
}

}  // namespace

std::string ApiErrorText(bool withNumber, int code, SystemFacts& facts) {
    if (code == kLastError) code = errno;
    if (code == 0) return "#0 - No information available";
    std::string text = onOneLine(facts.errorText(code));
    if (text.empty()) {
        text = "Formatmessage Error " + std::to_string(errno) + " (" + std::to_string(code) + ")";
    }
    return withNumber ? "#" + std::to_string(code) + " - " + text : text;
}

}  // namespace hl
