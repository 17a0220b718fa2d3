#include "views/selection_sum.h"

#include "base/text.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/size_display.h"

namespace hl {

namespace {

bool hasSelectedAbove(const Grid& grid, Row row) {
    for (Row above = grid.parent(row); above != kNoRow; above = grid.parent(above))
        if (grid.selected(above)) return true;
    return false;
}

// Returns the lowest row that is `a` or above it, and `b` or above that; kNoRow if there is none.
Row lowestAbove(const Grid& grid, Row a, Row b) {
    while (a != b && a != kNoRow && b != kNoRow) {
        if (grid.level(a) >= grid.level(b)) {
            a = grid.parent(a);
        } else {
            b = grid.parent(b);
        }
    }
    return a == b ? a : kNoRow;
}

struct Sum {
    double size = 0, files = 0, folders = 0;
    double share = 0;     ///< Of the size that is reckoned with.
    Row holder = kNoRow;  ///< The folder that all rows lie in; kNoRow if that is none.

    void add(const Grid& grid, Row row, CellId reckoned) {
        holder = rows_++ == 0 ? grid.parent(row) : lowestAbove(grid, holder, grid.parent(row));
        size += grid.number(row, kSize);
        share += grid.number(row, reckoned);
        files += grid.number(row, kFiles);
        folders += grid.number(row, kFolders);
    }

  private:
    std::size_t rows_ = 0;
};

double sizeOf(const Grid& grid, Row holder, CellId reckoned) {
    if (holder != kNoRow) return grid.number(holder, reckoned);
    double all = 0;
    for (Row row = grid.firstRoot(); row != kNoRow; row = grid.nextSibling(row))
        all += grid.number(row, reckoned);
    return all;
}

}  // namespace

std::string selectionSum(const Grid& tvwPL, const Options& options, const Texts& texts,
                         const NumberFormat& numbers) {
    const CellId reckoned = reckonedCell(options);
    Sum sum;
    for (const Row row : tvwPL.selectedRows())
        if (!hasSelectedAbove(tvwPL, row)) sum.add(tvwPL, row, reckoned);
    const double all = sizeOf(tvwPL, sum.holder, reckoned);
    const SizeValue bytes = SizeValue::fromBytes(static_cast<std::uint64_t>(sum.size));
    const std::string size = shownSize(options.FileSizeFormat, bytes, numbers);
    const int decimals = options.SizeFormatNachkommastellenFolders != 0 ? 2 : 0;
    const std::string share =
        formatNumber(all > 0 ? sum.share * 100 / all : 0, {.decimals = decimals}, numbers);
    const auto count = [&](double number) {
        return formatCount(static_cast<std::uint64_t>(number), numbers);
    };
    const std::string rows = count(static_cast<double>(tvwPL.selectedCount()));
    if (sum.holder == kNoRow)
        return texts.TL(9724, "%1 Zeilen ausgewählt: %2 (%3 % aller Quellen), %4 Datei(en), %5 Ordner",
                        {rows, size, share, count(sum.files), count(sum.folders)});
    return texts.TL(
        9723, "%1 Zeilen ausgewählt: %2 (%3 % von '%6'), %4 Datei(en), %5 Ordner",
        {rows, size, share, count(sum.files), count(sum.folders), visible(tvwPL.text(sum.holder))});
}

}  // namespace hl
