#include "robustness/api_error_text.h"

#include "base/text.h"

namespace hl {

namespace {

std::string onOneLine(std::string text) {
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
    return std::string(trimBlanks(text));
}

}  // namespace

std::string ApiErrorText(bool withNumber, const Error& error) {
    const std::string number = std::to_string(error.number);
    std::string text = onOneLine(error.text);
    if (error.number == 0) return text.empty() ? "#0 - No information available" : text;
    if (text.empty()) text = "Formatmessage Error 22 (" + number + ")";
    return withNumber ? "#" + number + " - " + text : text;
}

}  // namespace hl
