// Hands out node numbers, from 1 up, and takes them back: a list of free numbers inside one array.
#pragma once

#include <cstdint>
#include <vector>

namespace hl {

/// The size that an array of `size` elements grows to: `size` times `growth`, cut to a whole number, but at
/// least `atLeast` and at most 2,147,483,647.
std::int32_t grownSize(std::int32_t size, float growth, std::int32_t atLeast);

/// One thread only.
class CNode {
  public:
    /// Numbers 1 to `size` are free; those given out before are forgotten. REQUIRES: size >= 1.
    void Init(std::int32_t size, float growth);

    /// A number that is not in use; the one freed last comes first. Grows the pool by its factor when it is
    /// used up; raises kFaultOverflow above 2,147,483,647 numbers. REQUIRES: Init was called.
    std::int32_t Alloc();

    /// REQUIRES: number came from Alloc and was not freed since.
    void Free(std::int32_t number);

  private:
    std::int32_t& entry(std::int32_t number) { return next_[static_cast<std::size_t>(number)]; }
    void grow();
    void linkFree(std::int32_t first);

    std::vector<std::int32_t>
        next_;               ///< For a free number the next free one, 0 at the last. Element 0 is not used.
    std::int32_t head_ = 0;  ///< First free number, 0 when all are in use.
    float growth_ = 1.5F;
};

}  // namespace hl
