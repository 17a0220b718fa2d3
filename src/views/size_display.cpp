#include "views/size_display.h"

#include "base/size_text.h"

namespace hl {

std::string shownSize(int mode, SizeValue value, const NumberFormat& format) {
    if (isBelowLastDigit(mode, value, 2))
        return belowLastDigit(2, format).append(" ").append(sizeUnit(mode).name);
    const bool hasUnit = mode == kModeDynamic || sizeUnit(mode).divisor != 0;
    return FormatSizeForMode(hasUnit ? mode : kModeBytes, value, true, false, format);
}

std::string withSign(bool above, const std::string& amount) {
    const char* sign = above ? "+" : "-";
    if (!amount.starts_with("< ")) return sign + amount;
    return std::string(above ? "< " : "> ") + sign + amount.substr(2);
}

}  // namespace hl
