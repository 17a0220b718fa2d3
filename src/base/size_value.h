// The arithmetic type of every size: a signed 64-bit fixed-point number with four decimal places.
//
// The largest value is 922,337,203,685,477 whole bytes. A sum that leaves the range raises a fault; it never
// wraps. Since that limit lies below 2^53, every whole number of bytes survives being stored in a grid cell
// (a double).
#pragma once

#include <compare>
#include <cstdint>

#include "base/fault.h"

namespace hl {

class SizeValue {
  public:
    static constexpr std::int64_t kScale = 10000;
    static constexpr std::int64_t kMaxBytes = INT64_MAX / kScale;

    constexpr SizeValue() = default;

    /// Raises kFaultOverflow above kMaxBytes.
    static constexpr SizeValue fromBytes(std::uint64_t bytes) {
        if (bytes > static_cast<std::uint64_t>(kMaxBytes)) raiseOverflow("SizeValue");
        return SizeValue(static_cast<std::int64_t>(bytes) * kScale);
    }

    SizeValue& operator+=(SizeValue other) {
        std::int64_t result = 0;  // The value stays as it was if the result does not fit.
        if (__builtin_add_overflow(raw_, other.raw_, &result)) raiseOverflow("SizeValue");
        raw_ = result;
        return *this;
    }
    SizeValue& operator-=(SizeValue other) {
        std::int64_t result = 0;  // The value stays as it was if the result does not fit.
        if (__builtin_sub_overflow(raw_, other.raw_, &result)) raiseOverflow("SizeValue");
        raw_ = result;
        return *this;
    }
    friend SizeValue operator+(SizeValue a, SizeValue b) { return a += b; }
    friend SizeValue operator-(SizeValue a, SizeValue b) { return a -= b; }
    friend constexpr auto operator<=>(SizeValue, SizeValue) = default;  // NOLINT(modernize-use-nullptr)

    /// Returns the whole bytes; the fraction is cut off.
    constexpr std::int64_t bytes() const { return raw_ / kScale; }
    /// Returns the value as a grid cell holds it.
    constexpr double asDouble() const {
        return static_cast<double>(bytes()) + static_cast<double>(raw_ % kScale) / double{kScale};
    }

  private:
    constexpr explicit SizeValue(std::int64_t raw) : raw_(raw) {}
    std::int64_t raw_ = 0;  ///< Ten-thousandths of a byte.
};

/// Returns a + b for counts of files, folders and errors; raises kFaultOverflow above 2,147,483,647.
inline std::int32_t addCount(std::int32_t a, std::int32_t b) {
    std::int32_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) raiseOverflow("addCount");
    return sum;
}

}  // namespace hl
