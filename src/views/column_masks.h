// The masks of the views' columns; see grid/mask.h.
#pragma once

#include <string>
#include <string_view>

namespace hl {

inline constexpr std::string_view kSizeMask = "*###,###,##0*;;;";
inline constexpr std::string_view kSizeMaskDecimals = "*###,###,##0.00*;;;";
inline constexpr std::string_view kPercentMask = "*##0*%";
inline constexpr std::string_view kPercentMaskDecimals = "*##0.00*%";
inline constexpr std::string_view kCountMask = "*###,##0*;;;";

/// `picture` is one for formatDate.
inline std::string dateMask(std::string_view picture) {
    return "*" + std::string(picture) + " *;;;";
}

}  // namespace hl
