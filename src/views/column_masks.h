// The masks of the views' columns; see grid/mask.h.
#pragma once

#include <string>
#include <string_view>

namespace hl {

inline constexpr std::string_view kPercentMask = "*##0*%";
inline constexpr std::string_view kPercentMaskDecimals = "*##0.00*%";
inline constexpr std::string_view kCountMask = "*###,##0*;;;";
/// A full drive shows 0 % free and a bar. A drive that does not answer has NaN for its percents and shows no
/// bar.
inline constexpr std::string_view kBarMask = "*##0*%;";

/// `unit` stands behind the size; it may be empty.
inline std::string sizeMask(bool decimals, std::string_view unit) {
    std::string mask = decimals ? "*###,###,##0.00*" : "*###,###,##0*";
    if (!unit.empty()) mask.append(" ").append(unit);
    return mask + ";;;";
}
/// `picture` is one for formatDate.
inline std::string dateMask(std::string_view picture) {
    return "*" + std::string(picture) + " *;;;";
}

}  // namespace hl
