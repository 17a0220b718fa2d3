#include "views/size_display.h"

#include <array>

#include "base/scope_exit.h"
#include "base/size_text.h"
#include "grid/no_redraw.h"
#include "views/column_masks.h"
#include "views/list_columns.h"
#include "views/report_columns.h"

namespace hl {

namespace {

std::string unitText(int mode, const Texts& texts) {
    switch (mode) {
        case kModeBytes:
            return texts.TL(3515, "Bytes");
        case kModeKilobytes:
            return texts.TL(3516, "KB");
        case kModeMegabytes:
            return texts.TL(3517, "MB");
        case kModeGigabytes:
            return texts.TL(3518, "GB");
        default:
            return {};
    }
}

void showSizes(Grid& grid, std::size_t index, int mode, bool decimals, const Texts& texts) {
    constexpr std::array<std::string_view, 4> kKeys = {"size", "sizeK", "sizeM", "sizeG"};
    GridColumn& column = grid.changeColumn(index);
    column.mask = decimals && mode != kModeBytes ? kSizeMaskDecimals : kSizeMask;
    if (mode >= kModeBytes && mode <= kModeGigabytes) column.key = kKeys[static_cast<std::size_t>(mode)];
    column.title = texts.TL(3519, "Größe (%1)", {unitText(mode, texts)});
}

void showSizesOfList(Grid& grid, std::size_t index, int mode, bool decimals, const Texts& texts) {
    grid.setEnabled(false);
    const ScopeExit usable([&grid] { grid.setEnabled(true); });
    const NoRedraw off(grid);
    showSizes(grid, index, mode, decimals, texts);
}

}  // namespace

void Report_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts) {
    const bool decimals = options.SizeFormatNachkommastellenFolders != 0;
    const NoRedraw off(grid);
    grid.changeColumn(kReportPercent).mask = decimals ? kPercentMaskDecimals : kPercentMask;
    showSizes(grid, kReportSize, options.FileSizeFormat, decimals, texts);
}

void List_Files_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts) {
    showSizesOfList(grid, kFileListSize, options.FileSizeFormatFiles,
                    options.SizeFormatNachkommastellenFiles != 0, texts);
}

void List_TOP_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts) {
    showSizesOfList(grid, kTopSize, options.FileSizeFormatTop, options.SizeFormatNachkommastellenTop != 0,
                    texts);
}

void List_Hardlinks_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts) {
    showSizesOfList(grid, kHardlinksSize, options.FileSizeFormatHardlinks,
                    options.SizeFormatNachkommastellenHardlinks != 0, texts);
}

std::string orBelowLastDigit(std::string text, int mode, SizeValue value, const NumberFormat& format) {
    if (!isBelowLastDigit(mode, value, 2)) return text;
    return belowLastDigit(2, format).append(" ").append(unitOf(mode));
}

std::string List_Files_FormatSize(const Options& options, SizeValue value, bool withUnit, bool pad,
                                  bool withBytesUnit, const NumberFormat& format) {
    return formatViewSize(options.FileSizeFormatFiles, value, withUnit, pad, withBytesUnit, format);
}

}  // namespace hl
