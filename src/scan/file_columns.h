// The four lists of files (those of a folder, the largest, the hardlinks, those found): the cells of their
// rows, how a file fills these, and the columns of each list.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/path.h"
#include "base/size_text.h"
#include "base/text.h"
#include "platform/folder_reader.h"
#include "scan/list_column.h"

namespace hl {

/// The cells of a row; only hardlinks fill links, id and device.
enum FileCell : CellId {
    kFilePath,
    kFileSize,
    kFileDate,
    kFileDateCreated,
    kFileDateAccessed,
    kFileType,
    kFileExt,
    kFileAttr,
    kFileLinks,
    kFileId,
    kFileDevice,
    kFileDisk,
    kFileOwner,
};
inline constexpr CellSpec kFileCells[] = {
    {"path", CellType::kText},  // The folder of the file, with a trailing separator.
    {"size", CellType::kSize},
    {"date", CellType::kDate},
    {"dateE", CellType::kDate},
    {"dateZ", CellType::kDate},
    {"type", CellType::kText},
    {"ext", CellType::kText},
    {"attr", CellType::kText},
    {"links", CellType::kCount},
    {"id", CellType::kText},
    {"device", CellType::kCount},  // Shown in no column; the same id means the same file only on the same
                                   // device.
    {"disk", CellType::kSize},
    {"owner", CellType::kText},
};

/// A file that gets a row.
struct FoundFile {
    const Entry& entry;
    const EntryDetails& details;
    std::string_view name;
    std::string_view folder;      ///< With a trailing separator.
    std::int32_t links = 0;       ///< 0 for a file with one name.
    std::string_view type = {};   ///< What the desktop calls files of its type; empty if it has no name.
    std::string_view owner = {};  ///< The name of its owner.
};

/// Returns "low word - high word" of an inode, both as signed decimals.
std::string fileId(std::uint64_t inode);
/// Fills the cells of the list's columns, as far as a file fills them.
void fillRow(const ListTable& table, Grid& list, Row row, const FoundFile& file);

// --- the columns

inline constexpr ListColumn kNameColumn = {.title = TL(9102, "Dateiname")};
inline constexpr ListColumn kSizeColumn = {
    .cell = kFileSize,
    .kind = ColumnKind::kSize,
    .title = TL(3519, "Größe (%1)"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(static_cast<double>(file.entry.size)); },
    .button = TL(3623, "Größe"),
    .tooltip = TL(9283, "Spalte 'Größe'")};
inline constexpr ListColumn kPathColumn = {
    .cell = kFilePath,
    .title = TL(3626, "Pfad"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(file.folder); },
    .button = TL(3626, "Pfad"),
    .tooltip = TL(9296, "Spalte 'Pfad'")};
inline constexpr ListColumn kFolderColumn = {.cell = kFilePath,
                                             .title = kPathColumn.title,
                                             .fill = kPathColumn.fill,
                                             .button = TL(3625, "Ordner"),
                                             .tooltip = TL(9304, "Spalte 'Ordner'")};
inline constexpr ListColumn kIdColumn = {
    .cell = kFileId,
    .title = TL(9109, "ID"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(fileId(file.entry.inode)); },
    .button = TL(9109, "ID"),
    .tooltip = TL(9302, "Spalte 'ID'")};
inline constexpr ListColumn kLinksColumn = {
    .cell = kFileLinks,
    .kind = ColumnKind::kCount,
    .title = TL(3740, "Hardlinks"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(file.links); },
    .button = TL(3740, "Hardlinks"),
    .tooltip = TL(9303, "Spalte 'Hardlinks'")};
inline constexpr ListColumn kExtensionColumn = {
    .cell = kFileExt,
    .title = TL(9103, "Endung"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(upperCase(xGetExtension(file.name))); },
    .button = TL(9103, "Endung"),
    .tooltip = TL(9284, "Spalte 'Endung'")};
inline constexpr ListColumn kTypeColumn = {
    .cell = kFileType,
    .title = TL(9104, "Typ"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(file.type); },
    .button = TL(9104, "Typ"),
    .tooltip = TL(9285, "Spalte 'Typ'")};
inline constexpr ListColumn kAttributesColumn = {
    .cell = kFileAttr,
    .title = TL(9105, "Attribute"),
    .fill = [](const CellPlace& to,
               const FoundFile& file) { to.set(xFormatFileAttribute(file.entry.attributes, false, "")); },
    .button = TL(9105, "Attribute"),
    .tooltip = TL(9286, "Spalte 'Attribute'")};
inline constexpr ListColumn kModifiedColumn = {
    .cell = kFileDate,
    .kind = ColumnKind::kDate,
    .title = TL(9106, "Änderungsdatum"),
    .fill = [](const CellPlace& to,
               const FoundFile& file) { to.set(static_cast<double>(file.details.written)); },
    .button = TL(9287, "Änderung"),
    .tooltip = TL(9288, "Spalte 'Änderungsdatum'")};
inline constexpr ListColumn kCreatedColumn = {
    .cell = kFileDateCreated,
    .kind = ColumnKind::kDate,
    .title = TL(9107, "Erstellungsdatum"),
    .fill = [](const CellPlace& to,
               const FoundFile& file) { to.set(static_cast<double>(file.details.created)); },
    .button = TL(9289, "Erstellt"),
    .tooltip = TL(9290, "Spalte 'Erstellungsdatum'")};
inline constexpr ListColumn kAccessedColumn = {
    .cell = kFileDateAccessed,
    .kind = ColumnKind::kDate,
    .title = TL(9108, "Zugriffsdatum"),
    .fill = [](const CellPlace& to,
               const FoundFile& file) { to.set(static_cast<double>(file.details.accessed)); },
    .saved = false,
    .button = TL(9291, "Zugriff"),
    .tooltip = TL(9292, "Spalte 'Zugriffsdatum'")};

inline constexpr ListColumn kDiskColumn = {
    .cell = kFileDisk,
    .kind = ColumnKind::kSize,
    .title = TL(9820, "Auf Datenträger (%1)"),
    .titleAlone = TL(9821, "Auf Datenträger"),
    .fill = [](const CellPlace& to,
               const FoundFile& file) { to.set(static_cast<double>(file.details.blocks * kBlockBytes)); },
    .button = TL(9821, "Auf Datenträger"),
    .tooltip = TL(9822, "Spalte 'Auf Datenträger'")};

inline constexpr ListColumn kOwnerColumn = {
    .cell = kFileOwner,
    .title = TL(9763, "Eigentümer"),
    .fill = [](const CellPlace& to, const FoundFile& file) { to.set(file.owner); },
    .button = TL(9763, "Eigentümer"),
    .tooltip = TL(9968, "Spalte 'Eigentümer'")};

// --- the lists

/// Completes the columns of a list: each but the first has a place in `flags`, and, unless it names another,
/// the command that follows that of the column before it.
template <std::size_t N>
constexpr std::array<ListColumn, N> shownBy(ColumnFlags Options::*flags, Command first,
                                            std::array<ListColumn, N> columns) {
    for (std::size_t i = 1; i < N; ++i) {
        columns[i].shown = {.columns = flags, .column = i - 1};
        if (columns[i].command == Command::kNone) columns[i].command = first + static_cast<int>(i - 1);
    }
    return columns;
}
/// Returns the column with a command of its own, for one whose command does not follow that of the column
/// before it.
constexpr ListColumn with(Command command, ListColumn column) {
    column.command = command;
    return column;
}

// The options know a column by its place, so a new one stands at the end.
inline constexpr auto kFilesColumns =
    shownBy(&Options::FileColumn, Command::kFilesSizeColumn,
            std::to_array({kNameColumn, kSizeColumn, kExtensionColumn, kTypeColumn, kAttributesColumn,
                           kModifiedColumn, kCreatedColumn, kAccessedColumn,
                           with(Command::kFilesDiskColumn, kDiskColumn)}));
inline constexpr auto kTopColumns =
    shownBy(&Options::TopColumn, Command::kTopSizeColumn,
            std::to_array({kNameColumn, kSizeColumn, kPathColumn, kExtensionColumn, kTypeColumn,
                           kAttributesColumn, kModifiedColumn, kCreatedColumn, kAccessedColumn,
                           with(Command::kTopDiskColumn, kDiskColumn)}));
inline constexpr auto kHardlinksColumns =
    shownBy(&Options::HardlinkColumn, Command::kHardlinksIdColumn,
            std::to_array({kNameColumn, kIdColumn, kLinksColumn, kFolderColumn, kSizeColumn, kExtensionColumn,
                           kTypeColumn, kAttributesColumn, kModifiedColumn, kCreatedColumn, kAccessedColumn,
                           with(Command::kHardlinksDiskColumn, kDiskColumn)}));

inline constexpr auto kFindColumns =
    shownBy(&Options::FindColumn, Command::kFindSizeColumn,
            std::to_array({kNameColumn, kSizeColumn, kPathColumn, kExtensionColumn, kTypeColumn,
                           kAttributesColumn, kModifiedColumn, kCreatedColumn, kAccessedColumn,
                           with(Command::kFindDiskColumn, kDiskColumn),
                           with(Command::kFindOwnerColumn, kOwnerColumn)}));

inline constexpr ListTable kFilesTable = {kFileCells, kFilesColumns, kFileSize, &Options::FileSizeFormatFiles,
                                          &Options::SizeFormatNachkommastellenFiles};
inline constexpr ListTable kTopTable = {kFileCells, kTopColumns, kFileSize, &Options::FileSizeFormatTop,
                                        &Options::SizeFormatNachkommastellenTop};
inline constexpr ListTable kFindTable = {kFileCells, kFindColumns, kFileSize, &Options::FileSizeFormatFind,
                                         &Options::SizeFormatNachkommastellenFind};
inline constexpr ListTable kHardlinksTable = {kFileCells, kHardlinksColumns, kFileSize,
                                              &Options::FileSizeFormatHardlinks,
                                              &Options::SizeFormatNachkommastellenHardlinks};

}  // namespace hl
