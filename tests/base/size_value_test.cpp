#include "base/size_value.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

constexpr std::uint64_t kLargest = 922'337'203'685'477;

TEST(SizeValue, RaisesAFaultWhereASumOrASizeLeavesTheRange) {
    const SizeValue largest = SizeValue::fromBytes(kLargest);
    const SizeValue one = SizeValue::fromBytes(1);
    EXPECT_THROW(SizeValue::fromBytes(kLargest + 1), Fault);
    EXPECT_THROW(SizeValue::fromBytes(UINT64_MAX), Fault);
    EXPECT_THROW(largest + one, Fault);
    EXPECT_THROW(SizeValue() - largest - one, Fault);
    EXPECT_EQ(largest - one + one, largest);
    EXPECT_LT(SizeValue() - one, SizeValue());
}

TEST(AddCount, RaisesAFaultBeyondThirtyTwoBits) {
    EXPECT_EQ(addCount(INT32_MAX - 1, 1), INT32_MAX);
    EXPECT_THROW(addCount(INT32_MAX, 1), Fault);
}

}  // namespace
}  // namespace hl
