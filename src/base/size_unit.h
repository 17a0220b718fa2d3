// The one table of the units that sizes are shown in. The buttons in the bars, the titles of columns and all
// texts with sizes follow it.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/row_text.h"

namespace hl {

/// The numbers by which settings name the units, for code that asks for a certain one.
enum SizeMode : int {
    kModeBytes = 0,
    kModeKilobytes = 1,
    kModeMegabytes = 2,
    kModeGigabytes = 3,
    kModeDynamic = 4,
    kModeTerabytes = 5,
    kModeAuto = 6,
};

struct SizeUnit {
    std::int64_t divisor;          ///< The bytes in one unit; 0 for no unit.
    std::string_view name;         ///< Stands behind a size.
    std::string_view reportTitle;  ///< Stands behind the title of a saved report's column.
    bool decimals = true;          ///< Sizes can have decimals.
    RowText title = {};            ///< Stands in the title of a list's column.
    RowText caption = {};          ///< Of the button that chooses the unit; without one it cannot be chosen.
    RowText tooltip = {};          ///< Of the button; without one it is the caption.
};

/// By the numbers of the units; a new unit stands at the end. Saved reports in mode 4 have a title without a
/// size. Views show each size of kModeAuto in the unit that fits it (FormatSizeAuto); what is saved has
/// bytes.
inline constexpr auto kSizeUnits = std::to_array<SizeUnit>({
    {1, "Bytes", " (Bytes)", false, TL(3515, "Bytes"), TL(3515, "Bytes")},
    {1LL << 10, "KB", " (KB)", true, TL(3516, "KB"), TL(9252, "Kilobytes")},
    {1LL << 20, "MB", " (MB)", true, TL(3517, "MB"), TL(9253, "Megabytes")},
    {1LL << 30, "GB", " (GB)", true, TL(3518, "GB"), TL(9254, "Gigabytes")},
    {0, "", " (TB)"},
    {1LL << 40, "TB", ""},
    {1, "Bytes", " (Bytes)", false, {}, TL(9720, "Auto"), TL(9721, "Jede Größe in der passenden Einheit")},
});

/// Returns the unit with this number, or for any other number one that has neither divisor nor texts.
constexpr SizeUnit sizeUnit(int mode) {
    if (mode < 0 || mode >= static_cast<int>(kSizeUnits.size())) return {0, "", ""};
    return kSizeUnits[static_cast<std::size_t>(mode)];
}

}  // namespace hl
