// Holds one value for each row, in blocks that never move: a growing column copies nothing and never needs
// twice its memory. For one thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace hl {

template <class T>
class Column {
  public:
    static constexpr std::size_t kBlockBits = 8;
    static constexpr std::size_t kBlockRows = std::size_t{1} << kBlockBits;

    /// REQUIRES: ensure(row) was called for this row or a later one.
    T& operator[](std::uint32_t row) { return (*blocks_[row >> kBlockBits])[row & (kBlockRows - 1)]; }
    const T& operator[](std::uint32_t row) const {
        return (*blocks_[row >> kBlockBits])[row & (kBlockRows - 1)];
    }
    /// Returns the value, or `absent` for a row whose block was never made.
    T valueOr(std::uint32_t row, T absent) const {
        const std::size_t block = row >> kBlockBits;
        return block < blocks_.size() ? (*this)[row] : absent;
    }
    /// Makes room for `row`; new values are value-initialised.
    void ensure(std::uint32_t row) {
        while (blocks_.size() <= row >> kBlockBits) blocks_.push_back(std::make_unique<Block>());
    }
    void clear() { blocks_.clear(); }

  private:
    using Block = std::array<T, kBlockRows>;
    std::vector<std::unique_ptr<Block>> blocks_;
};

}  // namespace hl
