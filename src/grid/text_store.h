// The texts of a grid: bytes behind one another, found by a 32-bit reference.
//
// A text is never changed in place; a replaced or removed one stays as waste until the grid packs the store
// or is cleared. A text costs its bytes and one to five more; what many rows have in common (a folder, a
// type) can be stored once for them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace hl {

/// 0 is the empty text.
using TextRef = std::uint32_t;

class TextStore {
  public:
    /// Raises kFaultOverflow when the store holds 4 GiB.
    TextRef add(std::string_view text);
    /// The same, but a text that was added so not long ago is not stored again.
    TextRef addShared(std::string_view text);
    /// Valid until clear().
    std::string_view get(TextRef ref) const;
    void clear();
    /// Bytes handed out by add, waste included.
    std::size_t bytesUsed() const { return used_; }

  private:
    static constexpr std::size_t kBlockBits = 16;
    static constexpr std::size_t kBlockBytes = std::size_t{1} << kBlockBits;

    static constexpr std::size_t kRecent = 1024;

    char* reserve(std::size_t bytes);

    // A text longer than a block lies in an allocation of several; blockStart_ then points into it.
    std::vector<std::unique_ptr<char[]>> owned_;
    std::vector<char*> blockStart_;
    std::size_t fill_ = kBlockBytes;  ///< Bytes used of the last block.
    std::size_t used_ = 0;
    std::vector<TextRef> recent_;  ///< By the texts' hashes; none until the first text that may be shared.
};

}  // namespace hl
