// Reads JSON piece by piece, from a text in memory. It builds nothing, needs no stack for the depth, and
// takes strings in any bytes, as other programs write names. For one thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

class JsonReader {
  public:
    enum class Piece : std::uint8_t {
        kFault,  ///< This is no JSON; nothing comes behind it.
        kEnd,    ///< The one value was read, and only blanks stand behind it.
        kObject,
        kObjectEnd,
        kArray,
        kArrayEnd,
        kKey,
        kString,
        kNumber,
        kTrue,
        kFalse,
        kNull,
    };

    /// The text must outlive the reader.
    explicit JsonReader(std::string_view text) : text_(text) {}

    Piece next();
    /// Of a key or a string: its bytes. Holds until the next call.
    const std::string& string() const { return string_; }
    /// Of a number: the number, if it is a whole one that fits.
    std::optional<std::int64_t> whole() const;
    /// The same, without a sign.
    std::optional<std::uint64_t> unsignedWhole() const;
    /// Reads the value that comes next, whatever it is, and returns its text; nothing if it is no JSON.
    std::optional<std::string_view> rawValue();
    /// Passes over the rest of a value whose first piece was just read. Returns false if it is no JSON.
    bool skipRestOf(Piece first);

    /// How many arrays and objects are open.
    std::size_t depth() const { return open_.size(); }
    /// The place behind the last piece.
    std::size_t position() const { return at_; }

  private:
    enum class Want : std::uint8_t { kValue, kFirstOrEnd, kKey, kCommaOrEnd, kNothing };

    Piece fault();
    Piece begin(bool isObject);
    Piece end(char closing);
    Piece value(char first);
    Piece key();
    Piece word(std::string_view expected, Piece piece);
    Piece number();
    bool readString();
    bool readEscape();
    std::optional<char32_t> fourDigits();
    void afterValue();
    void skipBlanks();

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<bool> open_;  ///< True for an object.
    Want want_ = Want::kValue;
    std::string string_;
    std::string_view number_;
    bool failed_ = false;
};

}  // namespace hl
