#include "platform/percent_bar.h"

namespace hl {
namespace {

TEST(PercentBar, IsFilledFromOneLineToAllBetweenItsInsets) {
    const std::tuple<double, int, int> cases[] = {
        {0, 100, 1},   {100, 100, 96}, {50, 105, 51},  {50, 106, 51},    {50, 108, 53},
        {0.4, 105, 1}, {-7, 100, 1},   {101, 100, 96}, {100, 5, 1},      {100, 4, 0},
        {100, 0, 0},   {100, -3, 0},   {NAN, 100, 0},  {INFINITY, 10, 6}};
    for (const auto& [percent, width, length] : cases)
        EXPECT_EQ(filledLength(percent, width), length) << percent << " of " << width;
    EXPECT_EQ(barColorAt({0x00FF10, 0xFF0010}, 1, 3), 0x808010U) << "each channel goes its own way";
}

}  // namespace
}  // namespace hl
