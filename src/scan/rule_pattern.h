// A pattern for one name, without the separator: bytes, "?", "*" and sets of bytes. Nothing in it changes
// once it is made, so any thread may ask.
//
// Between two stars stands a piece of fixed length. The first piece must be at the name's beginning and the
// last one at its end; each other one is looked for from left to right, and the first place where it fits
// will do. So no pattern takes longer than its length times that of the name.
#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

using ByteSet = std::bitset<256>;

class RulePattern {
  public:
    // These add to the end of the pattern.
    void addByte(char byte);
    void addAny();
    void addSet(const ByteSet& set);
    void addStar();

    /// Returns the only name that matches, or null if there are wildcards.
    const std::string* literal() const { return stars_ == 0 && plain_ ? &pieces_.front().bytes : nullptr; }
    /// Returns what a name must end with to match, if nothing else is asked of it; else null.
    const std::string* ending() const;
    bool matches(std::string_view name) const;

  private:
    // What stands at a place of a piece: the byte itself if there is no set.
    struct Piece {
        std::string bytes;
        std::vector<std::shared_ptr<const ByteSet>> sets;  ///< Empty, or one for each byte; null is the byte.
        bool fits(const char* at) const;
        /// Returns the place behind the first place where it fits; null if there is none.
        const char* findIn(const char* at, const char* end) const;
    };

    void addOne(char byte, std::shared_ptr<const ByteSet> set);

    std::vector<Piece> pieces_ = std::vector<Piece>(1);
    // The bytes that a name must begin and end with; -1 if any will do. They turn most names away.
    int first_ = -1, last_ = -1;
    std::size_t stars_ = 0;
    std::size_t length_ = 0;  ///< Of all pieces together.
    bool plain_ = true;       ///< No piece has a set.
};

}  // namespace hl
