// Reads and changes the text of an INI file: "[section]" lines with "key=value" lines below them.
//
// Sections and keys are found without regard to case. Of two with the same name only the first counts.
// Comments (";") and lines that make no sense are kept. A value that begins or ends with a blank or a double
// quote is written in double quotes. A value with control characters or bytes that are no UTF-8 (a folder's
// name may hold any) is written as $'...' with the escapes \n \r \\ \' and \xNN. From
// any thread, but one object from one thread at a time.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hl {

/// The longest value in bytes that can be written; when a value is read, it is cut to as many characters.
inline constexpr std::size_t kLongestIniValue = 2047;

class IniText {
  public:
    explicit IniText(std::string text = {}) : text_(std::move(text)) {}

    const std::string& text() const { return text_; }

    /// Returns the value, or nothing if there is no such key.
    std::optional<std::string> find(std::string_view section, std::string_view key) const;
    /// Returns all values of a section by their keys in lower case.
    std::map<std::string, std::string, std::less<>> section(std::string_view section) const;

    /// Changes the value where it stands, or adds it at the end of its section. Returns false and changes
    /// nothing if the value is too long, or if the section or key cannot be written: if it is empty, has
    /// blanks at its ends or control characters, or would make the line look like one of another kind.
    bool set(std::string_view section, std::string_view key, std::string_view value);
    /// Removes every section of this name, with all lines in it.
    void removeSection(std::string_view section);

  private:
    std::string text_;
};

/// These encode a value for the place behind the "=", and decode it. They never cut it.
std::string encodeIniValue(std::string_view value);
std::string decodeIniValue(std::string_view written);

}  // namespace hl
