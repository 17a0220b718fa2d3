// The unit in which a view shows its sizes. To change it needs no scan: the size column shows another cell.
// For the thread of the logic.
#pragma once

#include <string>

#include "app/options.h"
#include "app/texts.h"
#include "base/number_format.h"
#include "base/size_value.h"
#include "grid/grid.h"

namespace hl {

/// These set mask, cell and title of the size column, by the view's mode and decimals in the options. Bytes
/// never show decimals. With a mode outside 0 to 3 the cell stays, and the title names no unit. For the
/// report, the percent column gets or loses its decimals too. REQUIRES: the grid has the columns of its view.
void Report_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts);
void List_Files_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts);
void List_TOP_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts);
void List_Hardlinks_Set_SizeFormat(Grid& grid, const Options& options, const Texts& texts);

/// Returns `text`, a size in a unit with two decimals, or "< 0.01 MB" if the size is too small for them.
std::string orBelowLastDigit(std::string text, int mode, SizeValue value, const NumberFormat& format);

/// Formats a size in the list's mode, with two decimals unless in bytes. The arguments are those of
/// formatViewSize (base/size_text.h).
std::string List_Files_FormatSize(const Options& options, SizeValue value, bool withUnit, bool pad,
                                  bool withBytesUnit, const NumberFormat& format);

}  // namespace hl
