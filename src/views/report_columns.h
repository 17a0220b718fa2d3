// The columns of the folder report, and how its rows are sorted. For the thread of the logic.
#pragma once

#include "app/options.h"
#include "app/texts.h"
#include "grid/grid.h"
#include "platform/icons.h"
#include "scan/list_column.h"
#include "scan/records.h"

namespace hl {

enum ReportColumn : std::size_t {
    kReportRowName,
    kReportSize,
    kReportPercent,
    kReportFiles,
    kReportFolders,
    kReportDisk,
    kReportNewest,
    kReportBefore,  ///< This one and the next show while a source is compared.
    kReportChange,
};
inline constexpr ListColumn kReportColumns[] = {
    {.title = TL(9100, "Name")},
    {.cell = kSize, .kind = ColumnKind::kSize, .title = TL(3519, "Größe (%1)")},
    {.cell = kPercent,
     .kind = ColumnKind::kPercent,
     .title = TL(9101, "Prozent"),
     .button = TL(9101, "Prozent"),
     .tooltip = TL(9247, "Spalte 'Prozent' anzeigen"),
     .icon = kIconPercent,
     .command = Command::kReportPercentColumn,
     .shown = {&Options::ColPercentVisible}},
    {.cell = kFiles,
     .kind = ColumnKind::kCount,
     .title = TL(3624, "Dateien"),
     .button = TL(3624, "Dateien"),
     .tooltip = TL(9248, "Spalte 'Dateianzahl' anzeigen"),
     .icon = kIconFiles,
     .command = Command::kReportFilesColumn,
     .shown = {&Options::ColFileVisible}},
    {.cell = kFolders,
     .kind = ColumnKind::kCount,
     .title = TL(3625, "Ordner"),
     .button = TL(3625, "Ordner"),
     .tooltip = TL(9249, "Spalte 'Ordneranzahl' anzeigen"),
     .icon = kIconFolder,
     .command = Command::kReportFoldersColumn,
     .shown = {&Options::ColFolderVisible}},
    {.cell = kDisk,
     .kind = ColumnKind::kSize,
     .title = TL(9820, "Auf Datenträger (%1)"),
     .titleAlone = TL(9821, "Auf Datenträger"),
     .button = TL(9821, "Auf Datenträger"),
     .tooltip = TL(9823, "Spalte 'Auf Datenträger' anzeigen"),
     .icon = kIconOnDisk,
     .command = Command::kReportDiskColumn,
     .shown = {&Options::ColDiskVisible}},
    {.cell = kNewest,
     .kind = ColumnKind::kDate,
     .title = TL(9824, "Neueste Änderung"),
     .button = TL(9824, "Neueste Änderung"),
     .tooltip = TL(9825, "Spalte 'Neueste Änderung' anzeigen"),
     .icon = kIconNewest,
     .command = Command::kReportNewestColumn,
     .shown = {&Options::ColNewestVisible}},
    {.cell = kBefore,
     .kind = ColumnKind::kSize,
     .title = TL(9069, "Vorher (%1)"),
     .titleAlone = TL(9070, "Vorher"),
     .shownAtFirst = false},
    {.cell = kChange,
     .kind = ColumnKind::kChange,
     .title = TL(9073, "Veränderung (%1)"),
     .titleAlone = TL(9074, "Veränderung"),
     .shownAtFirst = false}};
inline constexpr ListTable kReportTable = {kFolderCells, kReportColumns, kSize, &Options::FileSizeFormat,
                                           &Options::SizeFormatNachkommastellenFolders};

/// Empties the grid and gives it its columns, with sizes in bytes until showSizes is called. Each level is
/// sorted by the size that is reckoned with, the largest first.
void Init_Tree(Grid& grid, const Options& options, const Texts& texts);

}  // namespace hl
