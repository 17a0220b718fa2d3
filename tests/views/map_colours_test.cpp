#include "views/map_colours.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/always.h"

namespace hl::test {

namespace {

using Three = std::array<double, 3>;

/// How an eye without one of its three kinds of cones sees linear red, green and blue (Machado, Oliveira and
/// Fernandes, 2009); the first one misses none.
constexpr std::array<std::array<Three, 3>, 4> kEyes = {{
    {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
    {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
    {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}},
}};

double linear(std::uint32_t part) {
    const double value = part / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// Returns the colour in a space (CIELAB) in which distances are as they are seen.
Three seenBy(const std::array<Three, 3>& eye, std::uint32_t colour) {
    const Three light = {linear(colour >> 16 & 0xff), linear(colour >> 8 & 0xff), linear(colour & 0xff)};
    Three seen{};
    for (std::size_t i = 0; i < 3; ++i)
        seen[i] = std::clamp(eye[i][0] * light[0] + eye[i][1] * light[1] + eye[i][2] * light[2], 0.0, 1.0);
    const auto root = [](double value) {
        return value > 0.008856 ? std::cbrt(value) : 7.787 * value + 16.0 / 116;
    };
    const double x = root((0.4124 * seen[0] + 0.3576 * seen[1] + 0.1805 * seen[2]) / 0.9505);
    const double y = root(0.2126 * seen[0] + 0.7152 * seen[1] + 0.0722 * seen[2]);
    const double z = root((0.0193 * seen[0] + 0.1192 * seen[1] + 0.9505 * seen[2]) / 1.089);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

}  // namespace

TEST(MapColours, CanBeToldApartWithoutOneKindOfConesInLightAndDark) {
    constexpr double kEasily = 8;  // About 2 is what can be seen at all.
    for (const auto by : {MapColouring::kKind, MapColouring::kAge, MapColouring::kOwner, MapColouring::kDepth,
                          MapColouring::kChange})
        for (const bool dark : {false, true})
            for (const auto& eye : kEyes) {
                const auto all = mapPalette(by);
                for (std::size_t i = 0; i < all.size(); ++i)
                    for (std::size_t j = 0; j < i; ++j) {
                        const Three a = seenBy(eye, dark ? darkened(all[i]) : all[i]);
                        const Three b = seenBy(eye, dark ? darkened(all[j]) : all[j]);
                        EXPECT_GT(std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]), kEasily)
                            << static_cast<int>(by) << ": " << i << " and " << j;
                    }
            }
}

}  // namespace hl::test
