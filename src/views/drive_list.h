// lvwDiskinfo: the drives of the machine in the order of mounting, and behind them the network shares that
// the user added by their UNC texts. The grid is the store; there is no sort.
//
// Sizes come from the drives themselves and arrive when they like, or never: a row stands there at once, its
// sizes are filled in later, and the answer for a row that is gone by then is dropped.
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
#include "app/settings.h"
#include "app/texts.h"
#include "base/number_format.h"
#include "base/path.h"
#include "grid/grid.h"
#include "platform/command_bar.h"
#include "platform/drives.h"
#include "platform/system_facts.h"
#include "robustness/debug.h"

namespace hl {

/// A row of the drive list; its text is where the drive is mounted, or a UNC text with a separator behind it.
/// All sizes are 0, and the percents no number, for a drive that has not answered.
enum DriveCell : CellId {
    kGsize,  ///< Total, in bytes and larger units, not rounded.
    kGsizeK,
    kGsizeM,
    kGsizeG,
    kFsize,  ///< Free.
    kFsizeK,
    kFsizeM,
    kFsizeG,
    kBsize,  ///< Used: what is not free.
    kBsizeK,
    kBsizeM,
    kBsizeG,
    kFsizeP,  ///< Whole percents of the total.
    kBsizeP,
    kDriveLabel,
    kDriveFileSystem,
    kDriveType,
    kDriveCluster,
};
inline constexpr CellSpec kDriveCells[] = {
    {"Gsize", CellType::kSize},      {"GsizeK", CellType::kReal}, {"GsizeM", CellType::kReal},
    {"GsizeG", CellType::kReal},     {"Fsize", CellType::kSize},  {"FsizeK", CellType::kReal},
    {"FsizeM", CellType::kReal},     {"FsizeG", CellType::kReal}, {"Bsize", CellType::kSize},
    {"BsizeK", CellType::kReal},     {"BsizeM", CellType::kReal}, {"BsizeG", CellType::kReal},
    {"FsizeP", CellType::kReal},     {"BsizeP", CellType::kReal}, {"label", CellType::kText},
    {"filesystem", CellType::kText}, {"type", CellType::kText},   {"cluster", CellType::kText},
};
static_assert(std::size(kDriveCells) == kDriveCluster + 1);

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

/// Empties the grid and gives it its columns, sizes in bytes until Drives_ChangeSizeFormat.
void Init_DiskInfo(Grid& grid, const Texts& texts);

std::string xGetDriveTypeString(DriveType type, const Texts& texts);
/// "(no label)" for a drive without one. Empty with `errorText` set if the labels cannot be read or the label
/// has more than 13 characters.
std::string xGetDriveLabel(const Drive& drive, const Texts& texts, SystemFacts& facts,
                           std::string& errorText);
/// Picture of a row (platform/icons.h).
int drivePicture(DriveType type);
/// The drive that a path lies on: the one with the longest root that leads to it. Null if there is none.
const Drive* driveOfPath(std::string_view path, const std::vector<Drive>& drives, const PathRules& paths);

/// What the list asks of the window around it. Calls must not throw.
class DriveListHost {
  public:
    virtual ~DriveListHost() = default;
    virtual void setBusyPointer(bool busy) = 0;
    virtual void autosizeDriveColumn(std::size_t column, int margin) = 0;
    /// Makes the pane just high enough for the rows.
    virtual void Drives_ResizeTableHeight() = 0;
    /// Empty if it was cancelled.
    virtual std::string askText(const std::string& prompt, const std::string& preset) = 0;
    /// Adds the sources at the end of the queue and works through it.
    virtual void readSources(const std::vector<std::string>& sources) = 0;
};

/// All of it outlives the list.
struct DriveListServices {
    Grid& lvwDiskinfo;  ///< Made with kDriveCells; rows are added and removed by the list alone.
    const Grid& tvwPL;  ///< The folder report.
    Drives& drives;
    DriveListHost& host;
    SettingsStore& settings;
    const Options& options;
    const Texts& texts;
    SystemFacts& facts;
    Diagnostics& diagnostics;
    const PathRules& paths;
    const NumberFormat& numbers;
};

/// Thread of the logic only. May be gone before its Drives are.
class DriveList {
  public:
    explicit DriveList(const DriveListServices& services) : services_(services) {}
    DriveList(const DriveList&) = delete;
    DriveList& operator=(const DriveList&) = delete;

    /// Builds the list anew: the drives of now and the saved shares.
    void Drives_GetAllDrives();
    /// Asks for the sizes of a row. Its answer reaches it through takeAnswers.
    void Drives_GetDriveFreeSpace(const Drive& drive, Row row);
    /// Fills the cells of a row; 0 as the total empties them.
    void Drives_AddSizeValues(Row row, const DriveSpace& space);
    /// Adds a row for a share; asks the user for it if `path` is empty. What is no UNC text adds nothing.
    void Drives_AddUNCpath(std::string path);
    void Drives_LoadSavedNetworkFolders();
    /// Leaves the settings as they are where the saved ones were not all loaded.
    void Drives_SaveNetworkFolders();
    /// Selects the drive that a row of the report lies on. Nothing changes for a share by its UNC text.
    void Drives_SelectDrive(Row reportRow);
    /// Asks again for the sizes of a drive that is, as a whole, the source of a row of the report.
    void Drives_RefreshDrive(Row reportRow);
    /// Reads the first selected drive, or all of them. A UNC text stands for where it is mounted.
    void Drives_ScanDrives(bool selectedOnly);
    /// Mask and cell of the size columns, and the buttons of the bar, by the options.
    void Drives_ChangeSizeFormat();
    void Drives_Resize_Columns(bool withRedraw);
    /// Delete removes the first selected row if it is a share by its UNC text.
    void lvwDiskinfo_KeyUp(int key);

    /// Delivers answers that have arrived and fits the columns once. For whoever watches
    /// Drives::answersDescriptor().
    void takeAnswers();

  private:
    void addDriveRow(std::string_view text, const Drive& drive);
    void addShareRow(std::string path);
    void answer(Row row, const DriveAnswer& space);
    Drive driveOfRow(std::string_view text);
    Row rowOf(std::string_view text, const PathRules& rules) const;

    DriveListServices services_;
    /// Rows that wait for an answer, and for which one. Answers look here through a weak pointer.
    using Waiting = std::unordered_map<Row, std::uint64_t>;
    std::shared_ptr<Waiting> waiting_ = std::make_shared<Waiting>();
    std::uint64_t lastQuestion_ = 0;
    bool sharesLoaded_ = false;  ///< All that were saved have a row, or had one.
};

}  // namespace hl
