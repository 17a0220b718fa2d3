// The rows of the list of statistics: its cells, its columns, and the filter that finds the files of a row.
// For the thread of the logic.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "scan/file_columns.h"
#include "scan/list_column.h"

namespace hl {

/// What a row stands for.
enum class StatisticsRow : std::uint8_t { kGroup, kKind, kEnding, kAge, kOwner };

/// The cells of a row. Its text is the name of what it stands for.
enum StatisticsCell : CellId {
    kStatisticsRow,
    kStatisticsSize,
    kStatisticsFiles,
    kStatisticsPercent,
    kStatisticsDisk,
    kStatisticsNumber,
};
inline constexpr CellSpec kStatisticsCells[] = {
    {"row", CellType::kFlag},  // A StatisticsRow.
    {"size", CellType::kSize}, {"files", CellType::kCount}, {"percent", CellType::kPercent},
    {"disk", CellType::kSize}, {"number", CellType::kReal},  // The FileKind, the class of age, or the uid; of
                                                             // an ending 1 if it is the rest of all.
};
// What all lists do with the column of sizes finds it by this.
static_assert(kStatisticsSize == static_cast<CellId>(kFileSize));

inline constexpr ListColumn kStatisticsColumns[] = {
    {.title = TL(9702, "Art, Alter, Eigentümer")},
    {.cell = kStatisticsSize, .kind = ColumnKind::kSize, .title = TL(3519, "Größe (%1)")},
    {.cell = kStatisticsPercent, .kind = ColumnKind::kPercent, .title = TL(9101, "Prozent")},
    {.cell = kStatisticsFiles, .kind = ColumnKind::kCount, .title = TL(3624, "Dateien")},
    {.cell = kStatisticsDisk,
     .kind = ColumnKind::kSize,
     .title = kDiskColumn.title,
     .titleAlone = kDiskColumn.titleAlone},
};
inline constexpr ListTable kStatisticsTable = {kStatisticsCells, kStatisticsColumns, kStatisticsSize,
                                               &Options::FileSizeFormatStatistics,
                                               &Options::SizeFormatNachkommastellenStatistics};

/// Returns the filter (scan/find_filter.h) that takes the files of a kind, of an ending (empty for files
/// without one), of a class of age, or of a uid.
std::string filterOfKind(int kind);
std::string filterOfEnding(std::string_view ending);
std::string filterOfAge(int ageClass);
std::string filterOfOwner(std::uint32_t owner);

}  // namespace hl
