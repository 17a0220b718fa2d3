// The columns of the list of changes (views/changes_view.h). For the thread of the logic.
#pragma once

#include "app/options.h"
#include "base/row_text.h"
#include "scan/file_columns.h"
#include "scan/list_column.h"

namespace hl {

/// The cells of a row. Its text is the folder's path below its source, or the path of the source itself.
enum ChangeCell : CellId {
    kChangePath,
    kChangeNow,
    kChangeBefore,
    kChangeSize,
    kChangeAmount,
    kChangeState,
    kChangeWord,
    kChangeWas,
};
inline constexpr CellSpec kChangeCells[] = {
    {"path", CellType::kText},  // What stands in front of the text in the folder's full path.
    {"now", CellType::kSize},    {"before", CellType::kSize}, {"change", CellType::kReal},  // Signed bytes.
    {"amount", CellType::kSize},  // The change without its sign; rows are sorted by it at first.
    {"state", CellType::kFlag},   // A ShownChange::State.
    {"word", CellType::kText},    // What the state is called.
    {"was", CellType::kText},
};
// What all lists do with paths and the column of sizes finds them by these.
static_assert(kChangePath == static_cast<CellId>(kFilePath) && kChangeNow == static_cast<CellId>(kFileSize));

inline constexpr ListColumn kChangesColumns[] = {
    {.title = TL(3625, "Ordner")},
    {.cell = kChangeWord, .title = TL(9068, "Zustand")},
    {.cell = kChangeBefore,
     .kind = ColumnKind::kSize,
     .title = TL(9069, "Vorher (%1)"),
     .titleAlone = TL(9070, "Vorher")},
    {.cell = kChangeNow,
     .kind = ColumnKind::kSize,
     .title = TL(9071, "Jetzt (%1)"),
     .titleAlone = TL(9072, "Jetzt")},
    {.cell = kChangeSize,
     .kind = ColumnKind::kChange,
     .title = TL(9073, "Veränderung (%1)"),
     .titleAlone = TL(9074, "Veränderung")},
    {.cell = kChangeWas, .title = TL(9075, "Früherer Pfad")},
};
inline constexpr ListTable kChangesTable = {kChangeCells, kChangesColumns, kChangeAmount,
                                            &Options::FileSizeFormatChanges,
                                            &Options::SizeFormatNachkommastellenChanges};

}  // namespace hl
