// The text of an INI file: "[section]" lines with "key=value" lines below them.
//
// Sections and keys are found without regard to case, and the first of equals counts: a second section of the
// same name is not looked into. Comments (";") and lines that make no sense are kept as they are. A value
// that would not come back as it is, since it begins or ends with a blank or a double quote, stands in double
// quotes; one with control characters or bytes that are no UTF-8 (the name of a folder may hold any) is
// written as
// $'...' with the escapes \n \r \\ \' and \xNN.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hl {

/// A value of more bytes is not written; one of more characters is cut when it is read.
inline constexpr std::size_t kLongestIniValue = 2047;

class IniText {
  public:
    explicit IniText(std::string text = {}) : text_(std::move(text)) {}

    const std::string& text() const { return text_; }

    /// The value, or nothing if there is no such key.
    std::optional<std::string> find(std::string_view section, std::string_view key) const;
    /// All values of a section by their keys in lower case.
    std::map<std::string, std::string, std::less<>> section(std::string_view section) const;

    /// Changes the value in its place, or adds it at the end of its section. False, and nothing changed, if
    /// the value is too long, or section or key cannot stand in such a file: empty, blanks at the ends,
    /// control characters, or a mark that makes another kind of line of it.
    bool set(std::string_view section, std::string_view key, std::string_view value);
    /// Removes every section of this name, with all lines in it.
    void removeSection(std::string_view section);

  private:
    std::string text_;
};

/// A value as it is written behind the "=", and back. Never cut.
std::string encodeIniValue(std::string_view value);
std::string decodeIniValue(std::string_view written);

}  // namespace hl
