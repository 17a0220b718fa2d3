#include "views/drive_list.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "app/setting_keys.h"
#include "base/scope_exit.h"
#include "base/size_text.h"
#include "base/size_value.h"
#include "base/text.h"
#include "grid/no_redraw.h"
#include "platform/icons.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "views/list_columns.h"

namespace hl {

namespace {

constexpr std::size_t kLongestLabel = 13;  // Characters.
constexpr int kSizeColumnMargin = 32;

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// Returns the UNC text with a separator of its own kind at its end.
std::string asShare(std::string path) {
    if (!isSeparator(path.back())) path += path.front();
    return path;
}

Row firstSelected(const Grid& grid) {
    const std::vector<Row> rows = grid.selectedRows();
    return rows.empty() ? kNoRow : rows.front();
}

// Tells whether a drive's root leads to a path; both are in the form by which paths are compared.
bool leadsTo(const std::string& root, const std::string& path, const PathRules& paths) {
    const std::string folder = AddTrailingSlash(root, paths);
    return path == root || path.starts_with(folder);
}

}  // namespace

// --- what is known of a drive

std::string xGetDriveTypeString(DriveType type, const Texts& texts) {
    switch (type) {
        case DriveType::kRemovable:
            return texts.TL(9406, "Wechseldatenträger");
        case DriveType::kFixed:
            return texts.TL(9407, "Lokaler Datenträger");
        case DriveType::kRemote:
            return texts.TL(9408, "Netzlaufwerk");
        case DriveType::kDisc:
            return "CD/DVD";
        case DriveType::kRam:
            return texts.TL(9409, "RAM-Disk");
        default:
            return "?";
    }
}

Result<std::string> xGetDriveLabel(const Drive& drive, const Texts& texts) {
    if (!drive.label) return drive.label;
    if (characterCount(*drive.label) > kLongestLabel) return Error{.text = "Too long", .name = *drive.label};
    return drive.label->empty() ? texts.TL(9410, "(no label)") : *drive.label;
}

int drivePicture(DriveType type) {
    switch (type) {
        case DriveType::kRemovable:
            return kIconDriveRemovable;
        case DriveType::kFixed:
            return kIconDriveFixed;
        case DriveType::kRemote:
            return kIconDriveNetwork;
        case DriveType::kDisc:
            return kIconDriveDisc;
        default:
            return kIconDriveOther;
    }
}

const Drive* driveOfPath(std::string_view path, const std::vector<Drive>& drives, const PathRules& paths) {
    const std::string key = identityKey(path, paths);
    const Drive* best = nullptr;
    for (const Drive& drive : drives) {
        if (!leadsTo(identityKey(drive.root, paths), key, paths)) continue;
        if (best == nullptr || drive.root.size() > best->root.size()) best = &drive;
    }
    return best;
}

// --- building

// Nothing here waits for a drive, so no messages need to run meanwhile.
void DriveList::Drives_GetAllDrives() {
    guarded(scan_.diagnostics, [&] {
        const BusyPointer busy(scan_.controls);
        sharesLoaded_ = false;
        {
            const NoRedraw off(grid_);
            waiting_->clear();
            grid_.clear();
            for (const Drive& drive : drives_.drives()) addDriveRow(drive.root, drive);
        }
        host_.Drives_ResizeTableHeight();
        Drives_LoadSavedNetworkFolders();
        host_.Drives_ResizeTableHeight();
        Drives_Resize_Columns(false);
    });
}

void DriveList::addDriveRow(std::string_view text, const Drive& drive) {
    const Row row = grid_.addRow(kNoRow, text);
    if (drive.type != DriveType::kNoRoot)
        grid_.setCellText(row, kDriveLabel, xGetDriveLabel(drive, scan_.texts).valueOr(""));
    grid_.setCellText(row, kDriveFileSystem, drive.fileSystem);
    grid_.setCellText(row, kDriveType, xGetDriveTypeString(drive.type, scan_.texts));
    grid_.setPicture(row, drivePicture(drive.type));
    Drives_AddSizeValues(row, {});
    Drives_GetDriveFreeSpace(drive, row);
}

// A share that is not mounted has a row, too, which says so.
void DriveList::addShareRow(std::string path) {
    path = asShare(std::move(path));
    addDriveRow(path, driveOfRow(path));
}

void DriveList::Drives_AddUNCpath(std::string path) {
    guarded(scan_.diagnostics, [&] {
        if (path.empty()) {
            path = window_.dialogs.askText(
                scan_.texts.TL(9411, "UNC-Pfad einer Laufwerksfreigabe im Netzwerk:"), "\\\\");
        }
        if (!isNetworkPath(path) || path.size() == 2) return;
        addShareRow(std::move(path));
        host_.Drives_ResizeTableHeight();
        Drives_Resize_Columns(false);
    });
}

void DriveList::Drives_LoadSavedNetworkFolders() {
    guarded(scan_.diagnostics, [&] {
        // An empty value is skipped, since it would ask the user.
        for (std::string& path :
             readNumberedList(scan_.settings.read(), kSectionDriveFolders, kDriveFolderSuffix))
            if (!path.empty()) Drives_AddUNCpath(std::move(path));
        sharesLoaded_ = true;
    });
}

void DriveList::Drives_SaveNetworkFolders() {
    if (!sharesLoaded_) return;
    guarded(scan_.diagnostics, [&] {
        std::vector<std::string> shares;
        for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
            if (isNetworkPath(grid_.text(row))) shares.emplace_back(grid_.text(row));
        scan_.settings.change(
            [&](IniText& ini) { writeNumberedList(ini, kSectionDriveFolders, kDriveFolderSuffix, shares); });
    });
}

// --- sizes

void DriveList::Drives_GetDriveFreeSpace(const Drive& drive, Row row) {
    if (drive.type == DriveType::kNoRoot) {  // There is no drive to ask.
        waiting_->erase(row);
        return Drives_AddSizeValues(row, {});
    }
    const std::uint64_t question = ++lastQuestion_;
    waiting_->insert_or_assign(row, question);
    drives_.ask(drive,
                [this, row, question, list = std::weak_ptr<Waiting>(waiting_)](const DriveAnswer& space) {
                    const std::shared_ptr<Waiting> waiting = list.lock();
                    if (waiting == nullptr) return;
                    const auto found = waiting->find(row);
                    if (found == waiting->end() || found->second != question) return;
                    waiting->erase(found);
                    answer(row, space);
                });
}

void DriveList::answer(Row row, const DriveAnswer& space) {
    guarded(scan_.diagnostics, {.routine = "Drives_GetDriveFreeSpace"}, [&] {
        constexpr auto kLimit = static_cast<std::uint64_t>(SizeValue::kMaxBytes);
        if (!space) grid_.setCellText(row, kDriveLabel, "");
        const bool known = space && std::max({space->total, space->free, space->clusterSize}) <= kLimit;
        Drives_AddSizeValues(row, known ? *space : DriveSpace());
    });
}

void DriveList::Drives_AddSizeValues(Row row, const DriveSpace& space) {
    const auto total = static_cast<double>(space.total);
    const double free = space.total == 0 ? 0 : static_cast<double>(space.free);
    const double reserved =
        space.total == 0 ? 0 : std::min(static_cast<double>(space.reserved), std::max(0.0, total - free));
    const double used = std::max(0.0, total - free - reserved);
    grid_.setNumber(row, kBsize, used);
    grid_.setNumber(row, kFsize, free);
    grid_.setNumber(row, kGsize, total);
    // With a total of 0 both are NaN, and no bar is drawn.
    grid_.setNumber(row, kFsizeP, std::nearbyint(free * 100 / total));
    grid_.setNumber(row, kBsizeP, std::nearbyint(used * 100 / total));
    grid_.setNumber(row, kRsize, reserved);
    grid_.setNumber(row, kRsizeP, reserved * 100 / total);
    grid_.setCellText(row, kDriveCluster,
                      space.clusterSize == 0
                          ? ""
                          : FormatSizeAuto(SizeValue::fromBytes(space.clusterSize), true, scan_.numbers));
}

void DriveList::takeAnswers() {
    guarded(scan_.diagnostics, [&] {
        const std::size_t before = waiting_->size();
        {
            const NoRedraw off(grid_);
            drives_.takeAnswers();
        }
        if (waiting_->size() != before) Drives_Resize_Columns(false);
    });
}

// --- following the report

Row DriveList::rowOf(std::string_view text, const PathRules& rules) const {
    const std::string key = identityKey(text, rules);
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
        if (identityKey(grid_.text(row), rules) == key) return row;
    return kNoRow;
}

void DriveList::Drives_SelectDrive(Row reportRow) {
    guarded(scan_.diagnostics, [&] {
        const std::string source(scan_.tvwPL.text(scan_.tvwPL.rootOf(reportRow)));
        if (isNetworkPath(source)) return;
        std::vector<Drive> drives;
        for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
            if (!isNetworkPath(grid_.text(row))) drives.push_back({.root = std::string(grid_.text(row))});
        const Drive* drive = driveOfPath(source, drives, scan_.paths);
        if (drive == nullptr) return;
        grid_.selectNone();
        grid_.setSelected(rowOf(drive->root, scan_.paths), true);
    });
}

// Returns the drive as the machine has it now; if it is not mounted, the drive has no root.
Drive DriveList::driveOfRow(std::string_view text) {
    if (isNetworkPath(text))
        return drives_.network(text).value_or(Drive{.root = {}, .type = DriveType::kNoRoot});
    for (Drive& drive : drives_.drives())
        if (drive.root == text) return std::move(drive);
    return Drive{.root = {}, .type = DriveType::kNoRoot};
}

void DriveList::Drives_RefreshDrive(Row reportRow) {
    guarded(scan_.diagnostics, [&] {
        const Grid& report = scan_.tvwPL;
        std::string source(report.text(report.rootOf(reportRow)));
        if (isNetworkPath(source)) source = asShare(std::move(source));
        const Row row = rowOf(source, scan_.paths);
        if (row == kNoRow) return;
        Drives_GetDriveFreeSpace(driveOfRow(grid_.text(row)), row);
        Drives_Resize_Columns(false);
    });
}

void DriveList::Drives_ScanDrives(bool selectedOnly) {
    guarded(scan_.diagnostics, [&] {
        std::vector<std::string> sources;
        Row row = selectedOnly ? firstSelected(grid_) : grid_.firstRoot();
        for (; row != kNoRow; row = selectedOnly ? kNoRow : grid_.nextSibling(row)) {
            const std::string text(grid_.text(row));
            const auto share = isNetworkPath(text) ? drives_.network(text) : std::nullopt;
            sources.push_back(share ? share->root : text);
        }
        if (!sources.empty()) host_.readSources(sources);
    });
}

// --- how it looks

void DriveList::Drives_ChangeSizeFormat() {
    guarded(scan_.diagnostics, [&] {
        grid_.setEnabled(false);
        const ScopeExit usable([this] { grid_.setEnabled(true); });
        const NoRedraw off(grid_);
        showSizes(grid_, kDrivesTable, scan_.options, scan_.texts);
        for (const DriveListColumn column : {kDriveListTotal, kDriveListFree, kDriveListUsed})
            pane().autosizeColumn(column, kSizeColumnMargin);
    });
}

void DriveList::Drives_Resize_Columns(bool withRedraw) {
    guarded(scan_.diagnostics, [&] {
        std::optional<NoRedraw> off;
        if (withRedraw) off.emplace(grid_);
        for (std::size_t column = 0; column < grid_.columns().size(); ++column)
            pane().autosizeColumn(column, 0);
    });
}

// --- what the user does

void DriveList::MouseUp(Row row, MouseButton button, bool /*shift*/, Point at) {
    if (scan_.state.ScanActive || row == kNoRow) return;
    guarded(scan_.diagnostics, {.routine = "lvwDiskinfo_MouseUp"}, [&] {
        pane().focus();
        if (button == MouseButton::kRight) host_.openDriveMenu(row, at);
    });
}

void DriveList::DblClick() {
    if (!scan_.state.ScanActive) Drives_ScanDrives(true);
}

void DriveList::Shortcut(GridShortcut what) {
    guarded(scan_.diagnostics, {.routine = "lvwDiskinfo_Shortcut"}, [&] {
        if (what != GridShortcut::kCopy || grid_.selectedCount() == 0 || scan_.state.ScanActive) return;
        std::vector<std::string> roots;
        for (const Row row : grid_.selectedRows()) roots.emplace_back(grid_.text(row));
        host_.copyPaths(roots);
    });
}

void DriveList::KeyUp(int key) {
    if (scan_.state.ScanActive) return;
    if (key == kKeyReturn) DblClick();
}

void DriveList::deletePressed(bool /*forGood*/) {
    if (scan_.state.ScanActive) return;
    guarded(scan_.diagnostics, {.routine = "lvwDiskinfo_KeyUp"}, [&] {
        const Row row = firstSelected(grid_);
        if (row == kNoRow || !isNetworkPath(grid_.text(row))) return;
        waiting_->erase(row);
        grid_.removeRow(row);
        host_.Drives_ResizeTableHeight();
        Drives_Resize_Columns(false);
    });
}

}  // namespace hl
