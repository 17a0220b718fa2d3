// Hands out node numbers from 1 on and takes them back. The free numbers are a list within one array.
#pragma once

#include <cstdint>
#include <vector>

namespace hl {

/// Returns the size that an array of `size` elements grows to: `size` times `growth`, cut to a whole number,
/// but at least `atLeast` and at most 2,147,483,647.
std::int32_t grownSize(std::int32_t size, float growth, std::int32_t atLeast);

/// One thread only.
class CNode {
  public:
    /// Makes the numbers 1 to `size` free and forgets those given out before. REQUIRES: size >= 1.
    void Init(std::int32_t size, float growth);

    /// Returns a number that is not in use; the one freed last comes first. If all are in use, the pool grows
    /// by its factor; raises kFaultOverflow above 2,147,483,647 numbers. REQUIRES: Init was called.
    std::int32_t Alloc();

    /// REQUIRES: number came from Alloc and was not freed since.
    void Free(std::int32_t number);

  private:
    std::int32_t& entry(std::int32_t number) { return next_[static_cast<std::size_t>(number)]; }
    void grow();
    void linkFree(std::int32_t first);

    std::vector<std::int32_t> next_;  ///< Holds for a free number the next free one, or 0 for the last.
                                      ///< Element 0 is unused.
    std::int32_t head_ = 0;           ///< The first free number; 0 when all are in use.
    float growth_ = 1.5F;
};

}  // namespace hl
