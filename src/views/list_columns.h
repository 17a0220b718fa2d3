// Gives a grid the columns of its table (scan/list_column.h), and changes them when options change. The table
// of the junctions is here. For the thread of the logic.
#pragma once

#include "app/options.h"
#include "app/texts.h"
#include "grid/grid.h"
#include "scan/list_column.h"
#include "scan/records.h"

namespace hl {

inline constexpr RowText kJunctionWords[] = {TL(9113, "Abzweigungspunkt"), TL(9114, "Verknüpfung"),
                                             TL(9115, "Symbolischer Link")};
inline constexpr ListColumn kJunctionsColumns[] = {{.title = TL(9111, "Junction")},
                                                   {.cell = kJunctionTarget, .title = TL(9112, "Zielordner")},
                                                   {.cell = kJunctionType,
                                                    .kind = ColumnKind::kWords,
                                                    .title = TL(9104, "Typ"),
                                                    .saved = false,
                                                    .words = kJunctionWords}};
/// Like every list it is sorted by number, the largest first; a path begins with none, so the bytes of the
/// paths decide.
inline constexpr ListTable kJunctionsTable = {kJunctionCells, kJunctionsColumns};

/// Empties the grid and gives it the columns of the table, with sizes in bytes, and the order of its rows.
/// The options tell which columns are visible, and how dates are written.
void Init_List(Grid& grid, const ListTable& table, const Options& options, const Texts& texts);

/// Gives the date columns the format of the options. Nothing happens if the list has no columns yet.
void setDateFormat(Grid& grid, const ListTable& table, const Options& options);

/// Gives the columns of sizes and shares the unit and the decimals of the options. Bytes never show decimals.
/// With a mode that cannot be chosen the unit stays, and none is named. REQUIRES: the grid has the table's
/// columns.
void showSizes(Grid& grid, const ListTable& table, const Options& options, const Texts& texts);

/// Returns a time as the lists show it; empty if the options have no picture for it. `seconds` count from
/// 1970.
std::string shownDate(const Options& options, std::int64_t seconds);

}  // namespace hl
