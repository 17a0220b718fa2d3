#include "platform/percent_bar.h"

#include <gtest/gtest.h>

#include <cmath>

namespace hl {
namespace {

TEST(PercentBar, TintsLeaveAColourOrTurnItWhite) {
    const std::tuple<std::uint32_t, int, std::uint32_t> cases[] = {
        {0x123456, 0, 0x123456},   {0x123456, 255, 0xFFFFFF}, {0x0000FF, 140, 0x8C8CFF},
        {0x0000FF, 200, 0xC8C8FF}, {0x5B963C, 140, 0xB5CFA7},  // 150 * 115 / 255 is 67.6; cut.
        {0xFFFFFF, 77, 0xFFFFFF}};
    for (const auto& [color, amount, tinted] : cases)
        EXPECT_EQ(tint(color, amount), tinted) << color << " " << amount;
    // Each channel of a bar goes its own way between the ends.
    EXPECT_EQ(barColorAt({0x00FF10, 0xFF0010}, 1, 3), 0x808010U);
}

TEST(PercentBar, IsFilledFromOneLineToAllBetweenItsInsets) {
    const std::tuple<double, int, int> cases[] = {
        {0, 100, 1},   {100, 100, 96}, {50, 105, 51},  {50, 106, 51},    {50, 108, 53},
        {0.4, 105, 1}, {-7, 100, 1},   {101, 100, 96}, {100, 5, 1},      {100, 4, 0},
        {100, 0, 0},   {100, -3, 0},   {NAN, 100, 0},  {INFINITY, 10, 6}};
    for (const auto& [percent, width, length] : cases)
        EXPECT_EQ(filledLength(percent, width), length) << percent << " of " << width;
}

}  // namespace
}  // namespace hl
