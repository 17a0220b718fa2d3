// Stores the texts of a grid one after another and finds them by a 32-bit reference. For one thread.
//
// A text is never changed in place; a replaced or removed one stays as waste until the grid packs the store
// or is cleared. A text costs its bytes and one to five more; a text that many rows share (a folder, a type)
// can be stored once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace hl {

/// The reference 0 stands for the empty text.
using TextRef = std::uint32_t;

class TextStore {
  public:
    /// Adds a text; raises kFaultOverflow when the store holds 4 GiB.
    TextRef add(std::string_view text);
    /// Adds a text, or returns the reference of the same one if it was added recently.
    TextRef addShared(std::string_view text);
    /// The text stays valid until clear().
    std::string_view get(TextRef ref) const;
    void clear();
    /// The bytes that texts take, waste included.
    std::size_t bytesUsed() const { return used_; }

  private:
    static constexpr std::size_t kBlockBits = 16;
    static constexpr std::size_t kBlockBytes = std::size_t{1} << kBlockBits;

    static constexpr std::size_t kRecent = 1024;

    char* reserve(std::size_t bytes);

    // A text that does not fit a block gets several at once; blockStart_ then points into them.
    std::vector<std::unique_ptr<char[]>> owned_;
    std::vector<char*> blockStart_;
    std::size_t fill_ = kBlockBytes;  ///< Bytes used in the last block.
    std::size_t used_ = 0;
    std::vector<TextRef> recent_;  ///< Texts added lately, placed by their hashes; empty until addShared is
                                   ///< called.
};

}  // namespace hl
