// lvwDiskinfo lists the drives of the machine in the order of mounting, and then the network shares that the
// user added by their UNC texts. The grid stores the rows; they are not sorted.
//
// A row is there at once; the drive itself tells its sizes later, or never. An answer for a row that is gone
// by then is dropped.
#pragma once

#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "app/options.h"
#include "app/texts.h"
#include "grid/grid.h"
#include "platform/drives.h"
#include "platform/window.h"
#include "scan/list_column.h"
#include "scan/scan_context.h"

namespace hl {

/// A row of the drive list. Its text is where the drive is mounted, or a UNC text with a separator at its
/// end. For a drive that has not answered, all sizes are 0 and the percents are NaN.
enum DriveCell : CellId {
    kGsize,   ///< The total.
    kFsize,   ///< The free space.
    kBsize,   ///< The used space.
    kFsizeP,  ///< The percents are whole and of the total.
    kBsizeP,
    kDriveLabel,
    kDriveFileSystem,
    kDriveType,
    kDriveCluster,
    kRsize,   ///< What is neither used nor free for this user.
    kRsizeP,  ///< With its fraction.
};
inline constexpr CellSpec kDriveCells[] = {
    {"Gsize", CellType::kSize},      {"Fsize", CellType::kSize},  {"Bsize", CellType::kSize},
    {"FsizeP", CellType::kReal},     {"BsizeP", CellType::kReal}, {"label", CellType::kText},
    {"filesystem", CellType::kText}, {"type", CellType::kText},   {"cluster", CellType::kText},
    {"Rsize", CellType::kSize},      {"RsizeP", CellType::kReal},
};
static_assert(std::size(kDriveCells) == kRsizeP + 1);

enum DriveListColumn : std::size_t {
    kDriveListRoot,
    kDriveListTotal,
    kDriveListFree,
    kDriveListFreeBar,
    kDriveListUsed,
    kDriveListUsedBar,
    kDriveListLabel,
    kDriveListFileSystem,
    kDriveListType,
    kDriveListCluster,
};
inline constexpr ListColumn kDrivesColumns[] = {
    {.title = TL(9400, "Laufwerk")},
    {.cell = kGsize, .kind = ColumnKind::kSizeWithUnit, .title = TL(9401, "Gesamt")},
    {.cell = kFsize, .kind = ColumnKind::kSizeWithUnit, .title = TL(9402, "Frei")},
    {.cell = kFsizeP, .kind = ColumnKind::kBar, .title = TL(9402, "Frei"), .barColor = 0x5B963C},
    {.cell = kBsize, .kind = ColumnKind::kSizeWithUnit, .title = TL(9403, "Belegt")},
    {.cell = kBsizeP,
     .kind = ColumnKind::kBar,
     .title = TL(9403, "Belegt"),
     .barColor = 0x0000FF,
     .barMore = kRsizeP},
    {.cell = kDriveLabel, .title = TL(9100, "Name")},
    {.cell = kDriveFileSystem, .title = TL(9404, "Dateisystem")},
    {.cell = kDriveType, .title = TL(9104, "Typ")},
    {.cell = kDriveCluster, .title = TL(9405, "Cluster")}};
inline constexpr ListTable kDrivesTable = {kDriveCells, kDrivesColumns, kNoCell,
                                           &Options::FileSizeFormatDrive,
                                           &Options::SizeFormatNachkommastellenDrive};

std::string xGetDriveTypeString(DriveType type, const Texts& texts);
/// Returns a drive's label, or "(no label)". It is an error if the labels cannot be read or the label has
/// more than 13 characters.
Result<std::string> xGetDriveLabel(const Drive& drive, const Texts& texts);
/// Returns the picture of a row (platform/icons.h).
int drivePicture(DriveType type);
/// Returns the drive that a path lies on: the one with the longest root that leads to it. Null if there is
/// none.
const Drive* driveOfPath(std::string_view path, const std::vector<Drive>& drives, const PathRules& paths);

/// What the list asks of the window around it. The calls must not throw.
class DriveListHost {
  public:
    virtual ~DriveListHost() = default;
    /// Makes the pane just high enough for the rows.
    virtual void Drives_ResizeTableHeight() = 0;
    /// Appends the sources to the queue and works through it.
    virtual void readSources(const std::vector<std::string>& sources) = 0;
    /// Puts folders on the clipboard, as files and as text.
    virtual void copyPaths(const std::vector<std::string>& paths) = 0;
    /// The menu of a drive.
    virtual void openDriveMenu(Row row, Point at) = 0;
};

/// For the thread of the logic only. It may be destroyed before its Drives are.
class DriveList final : public GridEvents {
  public:
    /// `lvwDiskinfo` was made with kDriveCells; only the list adds and removes rows. The arguments must
    /// outlive the list.
    DriveList(ScanContext& scan, Grid& lvwDiskinfo, Drives& drives, const Window& window, DriveListHost& host)
        : scan_(scan), grid_(lvwDiskinfo), drives_(drives), window_(window), host_(host) {}
    DriveList(const DriveList&) = delete;
    DriveList& operator=(const DriveList&) = delete;

    /// Builds the list anew, from the current drives and the saved shares.
    void Drives_GetAllDrives();
    /// Asks for the sizes of a row; takeAnswers delivers the answer.
    void Drives_GetDriveFreeSpace(const Drive& drive, Row row);
    /// Fills the cells of a row; a total of 0 empties them.
    void Drives_AddSizeValues(Row row, const DriveSpace& space);
    /// Adds a row for a share, and asks the user for it if `path` is empty. A path that is no UNC text adds
    /// nothing.
    void Drives_AddUNCpath(std::string path);
    void Drives_LoadSavedNetworkFolders();
    /// Saves the shares, unless not all of the saved ones were loaded: then the settings stay as they are.
    void Drives_SaveNetworkFolders();
    /// Selects the drive that a row of the report lies on. A share with a UNC text changes nothing.
    void Drives_SelectDrive(Row reportRow);
    /// Asks again for the sizes of a drive if its root is the source of a row of the report.
    void Drives_RefreshDrive(Row reportRow);
    /// Reads the first selected drive, or all of them. For a UNC text, the place where it is mounted is read.
    void Drives_ScanDrives(bool selectedOnly);
    /// Sets mask and cell of the size columns, and the buttons of the bar, by the options.
    void Drives_ChangeSizeFormat();
    void Drives_Resize_Columns(bool withRedraw);

    // --- what the user does; ignored while a scan runs
    void MouseUp(Row row, MouseButton button, bool shift, Point at) override;
    /// Reads the first selected drive.
    void DblClick() override;
    /// Return reads the first selected drive.
    void KeyUp(int key) override;
    void Shortcut(GridShortcut what) override;
    /// Removes the first selected row from the list if it is a share with a UNC text.
    void deletePressed(bool forGood) override;

    /// Delivers the answers that have arrived, and fits the columns once. To be called when
    /// Drives::answersDescriptor() is readable.
    void takeAnswers();

  private:
    GridPane& pane() { return window_.grid(GridId::kDrives); }
    void addDriveRow(std::string_view text, const Drive& drive);
    void addShareRow(std::string path);
    void answer(Row row, const DriveAnswer& space);
    Drive driveOfRow(std::string_view text);
    Row rowOf(std::string_view text, const PathRules& rules) const;

    ScanContext& scan_;
    Grid& grid_;
    Drives& drives_;
    const Window& window_;
    DriveListHost& host_;
    /// The rows that wait, with the number of the question. Answers find this through a weak pointer.
    using Waiting = std::unordered_map<Row, std::uint64_t>;
    std::shared_ptr<Waiting> waiting_ = std::make_shared<Waiting>();
    std::uint64_t lastQuestion_ = 0;
    bool sharesLoaded_ = false;  ///< All saved shares have, or had, a row.
};

}  // namespace hl
