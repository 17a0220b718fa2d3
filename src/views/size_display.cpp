#include "views/size_display.h"

#include "base/size_text.h"

namespace hl {

std::string orBelowLastDigit(std::string text, int mode, SizeValue value, const NumberFormat& format) {
    if (!isBelowLastDigit(mode, value, 2)) return text;
    return belowLastDigit(2, format).append(" ").append(sizeUnit(mode).name);
}

std::string List_Files_FormatSize(const Options& options, SizeValue value, bool withUnit, bool pad,
                                  bool withBytesUnit, const NumberFormat& format) {
    return formatViewSize(options.FileSizeFormatFiles, value, withUnit, pad, withBytesUnit, format);
}

}  // namespace hl
