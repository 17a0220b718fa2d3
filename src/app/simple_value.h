// Takes a value of any simple type and turns it into text at once: arguments of texts, defaults of settings,
// details of log entries.
#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>
#include <utility>

namespace hl {

class SimpleValue {
  public:
    SimpleValue(std::string text) : text_(std::move(text)) {}
    SimpleValue(std::string_view text) : text_(text) {}
    SimpleValue(const char* text) : text_(text) {}
    /// Truth values become "1" and "0".
    SimpleValue(std::same_as<bool> auto value) : text_(value ? "1" : "0") {}
    template <std::integral Number>
    requires(!std::same_as<Number, bool> && !std::same_as<Number, char>) SimpleValue(Number value)
        : text_(std::to_string(value)) {}
    /// Writes a decimal point, whatever the locale, and as many digits as needed: 9 and 8.25.
    SimpleValue(std::floating_point auto value) {
        char digits[400];  // The largest double has 309 digits.
        text_.assign(digits,
                     std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed).ptr);
    }

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

}  // namespace hl
