#include "views/cell_tip.h"

#include <cmath>

#include "base/size_text.h"
#include "scan/file_columns.h"
#include "scan/records.h"
#include "scan/rollup.h"
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

std::string differenceTip(double bytes, const NumberFormat& numbers) {
    if (bytes == 0 || !std::isfinite(bytes)) return {};
    const auto amount = SizeValue::fromBytes(static_cast<std::uint64_t>(std::abs(bytes)));
    std::string lines;
    for (const SizeMode mode : kUnits)
        lines.append(lines.empty() ? "" : "\n").append(withSign(bytes > 0, shownSize(mode, amount, numbers)));
    return lines;
}

// Rows of the report and of the lists of files have that cell, by the same key.
bool isBeforeCompression(const Grid& grid, CellId cell, Row row, const Services& services) {
    if (cell != grid.cell(kFolderCells[kDisk].key)) return false;
    const CellId folder = grid.cell(kFileCells[kFilePath].key);
    return services.fileSystem.countsBeforeCompression(
        folder == kNoCell ? Report_GetFullpathOfNode(grid, row, false, services.paths)
                          : std::string(grid.cellText(row, folder)));
}

std::string sizeTip(const Grid& grid, CellId cell, Row row, const Services& services, bool onDisk) {
    if (!(grid.number(row, cell) > 0)) return {};
    std::string tip = inAllUnits(sizeIn(grid, row, cell), services.numbers);
    if (onDisk && isBeforeCompression(grid, cell, row, services))
        tip += "\n" + services.texts.TL(9907, "vor Komprimierung");
    return tip;
}

}  // namespace

std::string cellTip(const Grid& grid, std::size_t column, Row row, const Services& services, bool onDisk) {
    const GridColumn& of = grid.columns()[column];
    const CellId cell = grid.cell(of.key);
    if (of.showsSign && cell != kNoCell) return differenceTip(grid.number(row, cell), services.numbers);
    const bool isSize = cell != kNoCell && grid.cells().isSize(cell);
    if (!isSize && (!of.barColor || of.barBehind)) return {};
    std::string tip = isSize ? sizeTip(grid, cell, row, services, onDisk) : "";
    const CellId reserved = grid.cell(kDriveCells[kRsize].key);
    if (reserved == kNoCell || !(grid.number(row, reserved) > 0)) return tip;
    if (!tip.empty()) tip += "\n";
    const SizeValue size = sizeIn(grid, row, reserved);
    return tip + services.texts.TL(9722, "Reserviert: %1", {FormatSizeAuto(size, true, services.numbers)});
}

}  // namespace hl
