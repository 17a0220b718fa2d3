#include "views/cell_tip.h"

#include "base/size_text.h"
#include "views/drive_list.h"
#include "views/size_display.h"

namespace hl {

namespace {

constexpr SizeMode kUnits[] = {kModeBytes, kModeKilobytes, kModeMegabytes, kModeGigabytes};

SizeValue sizeIn(const Grid& grid, Row row, CellId cell) {
    return SizeValue::fromBytes(static_cast<std::uint64_t>(grid.number(row, cell)));
}

std::string inAllUnits(SizeValue size, const NumberFormat& numbers) {
    std::string lines;
    for (const SizeMode mode : kUnits)
        lines.append(lines.empty() ? "" : "\n").append(shownSize(mode, size, numbers));
    return lines;
}

}  // namespace

std::string cellTip(const Grid& grid, std::size_t column, Row row, const Texts& texts,
                    const NumberFormat& numbers) {
    const GridColumn& of = grid.columns()[column];
    const CellId cell = grid.cell(of.key);
    const bool isSize = cell != kNoCell && grid.cells().isSize(cell);
    if (!isSize && (!of.barColor || of.barBehind)) return {};
    std::string tip =
        isSize && grid.number(row, cell) > 0 ? inAllUnits(sizeIn(grid, row, cell), numbers) : "";
    const CellId reserved = grid.cell(kDriveCells[kRsize].key);
    if (reserved == kNoCell || !(grid.number(row, reserved) > 0)) return tip;
    if (!tip.empty()) tip += "\n";
    return tip +
           texts.TL(9722, "Reserviert: %1", {FormatSizeAuto(sizeIn(grid, row, reserved), true, numbers)});
}

}  // namespace hl
