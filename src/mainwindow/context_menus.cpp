#include "mainwindow/context_menus.h"

#include <algorithm>
#include <span>

#include "base/path.h"
#include "base/row_text.h"
#include "fileops/deleting.h"
#include "fileops/menus.h"
#include "mainwindow/main_form.h"
#include "platform/icons.h"
#include "scan/driver.h"
#include "scan/left_out.h"
#include "scan/on_disk.h"
#include "scan/rollup.h"

namespace hl {

namespace {

struct OwnEntry {
    int group;  ///< A separator stands where another group begins.
    RowText caption;
    int icon;  ///< -1 means none.
    bool (*shows)(const MenuTarget& on);
    void (*run)(const MenuTarget& on);
    const char* key = "";  ///< The key that does the same.
};

bool always(const MenuTarget& /*on*/) {
    return true;
}
bool isOnDisk(const MenuTarget& on) {
    return on.grid != GridId::kReport || hl::isOnDisk(on.form.scan, on.row);
}
bool isSource(const MenuTarget& on) {
    return on.form.scan.tvwPL.level(on.row) == 0;
}
bool isSourceOnDisk(const MenuTarget& on) {
    return isSource(on) && isOnDisk(on);
}
bool isFolderOnDisk(const MenuTarget& on) {
    return !isSource(on) && isOnDisk(on);
}
bool isLeftOutOnDisk(const MenuTarget& on) {
    return isLeftOutByRule(on.form.scan.tvwPL, on.row) && isOnDisk(on);
}
bool hasFiles(const MenuTarget& on) {
    return on.grid != GridId::kJunctions && on.grid != GridId::kStatistics && on.grid != GridId::kChanges;
}
bool isOneFile(const MenuTarget& on) {
    return hasFiles(on) && on.paths.size() == 1;
}

void remove(const MenuTarget& on, bool recycle) {
    const FileOps ops = on.form.files.ops();
    if (on.grid == GridId::kReport) return DeleteFolders(ops, {on.row}, recycle);
    List_DeleteFiles(ops, *on.form.lists.of(on.grid), recycle);
}
void recycle(const MenuTarget& on) {
    remove(on, true);
}
void deleteForGood(const MenuTarget& on) {
    remove(on, false);
}
void comesBack(const MenuTarget& on) {
    if (on.grid != GridId::kReport) return on.form.files.showComesBack(on.grid);
    on.form.files.showComesBack(foldersOf(on.form.files.ops(), {on.row}));
}
void showInFolder(const MenuTarget& on) {
    const FileOps ops = on.form.files.ops();
    Menus(ops).showInFolder(on.paths.front());
}
bool isOne(const MenuTarget& on) {
    return on.paths.size() == 1;
}
// Rows of the junctions are folders, and so are those of the report and of the drives.
void openTerminal(const MenuTarget& on) {
    const bool file = on.grid != GridId::kReport && on.grid != GridId::kDrives && hasFiles(on);
    const std::string folder = file ? folderAbove(on.paths.front(), kPosixPaths) : on.paths.front();
    if (on.form.window->desktop.openTerminal(folder) || on.form.closed) return;
    on.form.status.setFirst(
        on.form.services().texts.TL(9760, "In '%1' kann kein Terminal geöffnet werden.", {folder}));
}
// A link to a folder may have no row of its own.
void showInReport(const MenuTarget& on) {
    on.form.report.goTo(hasFiles(on) ? folderAbove(on.paths.front(), kPosixPaths) : on.paths.front());
}
void unfold(const MenuTarget& on, bool unfolds) {
    on.form.report.view().Report_ExpandSubFolders(unfolds);
}

// clang-format off
constexpr OwnEntry kReportMenu[] = {
    {1, TL(9573, "Ordner in den Papierkorb verschieben"), kIconRecycle, isFolderOnDisk, recycle, "Del"},
    {2, TL(9574, "Ordner löschen"), kIconDelete, isFolderOnDisk, deleteForGood, "Shift+Del"},
    {2, TL(9830, "Was kommt zurück?"), kIconOnDisk, isFolderOnDisk, comesBack, "Ctrl+Shift+B"},
    {3, TL(9575, "Ordner umbenennen"), -1, isFolderOnDisk, [](const MenuTarget& on) { on.form.report.view().KeyUp(kKeyF2); }, "F2"},
    {4, TL(9576, "Alle Unterordner zuklappen"), -1, always, [](const MenuTarget& on) { unfold(on, false); }},
    {4, TL(9577, "Alle Unterordner aufklappen"), -1, always, [](const MenuTarget& on) { unfold(on, true); }},
    {5, TL(9578, "Quelle entfernen"), -1, isSource, [](const MenuTarget& on) { Report_RemoveFolders(on.form.scan); }},
    {5, TL(9579, "Ordner neu einlesen"), -1, isOnDisk, [](const MenuTarget& on) { Report_Rescan(on.form.scan); }, "F5"},
    {5, TL(9927, "Trotzdem einlesen"), kIconRead, isLeftOutOnDisk, [](const MenuTarget& on) { Report_ReadAllTheSame(on.form.scan, on.row); }, "Return"},
    {6, TL(9865, "Bilanz"), kIconBalance, isSourceOnDisk, [](const MenuTarget& on) { on.form.balance.showOf(on.row); }, "Ctrl+B"},
    {7, TL(9755, "Terminal hier öffnen"), -1, isOnDisk, openTerminal},
};

constexpr OwnEntry kDriveMenu[] = {
    {1, TL(9584, "Laufwerk einlesen"), -1, always, [](const MenuTarget& on) { on.form.drives.list().Drives_ScanDrives(true); }, "Return"},
    {1, TL(9865, "Bilanz"), kIconBalance, always, [](const MenuTarget& on) { on.form.balance.showOfDrive(); }},
    {2, TL(9755, "Terminal hier öffnen"), -1, always, openTerminal},
};

constexpr OwnEntry kListMenu[] = {
    {1, TL(9580, "Datei(en) in den Papierkorb verschieben"), kIconRecycle, hasFiles, recycle, "Del"},
    {2, TL(9581, "Datei(en) löschen"), kIconDelete, hasFiles, deleteForGood, "Shift+Del"},
    {2, TL(9830, "Was kommt zurück?"), kIconOnDisk, hasFiles, comesBack, "Ctrl+Shift+B"},
    {3, TL(9582, "Datei umbenennen"), -1, isOneFile, [](const MenuTarget& on) { on.form.lists.of(on.grid)->KeyUp(kKeyF2); }, "F2"},
    {4, TL(9583, "Dateipfad öffnen"), -1, isOneFile, showInFolder},
    {4, TL(9756, "In der Ordnerliste zeigen"), -1, isOne, showInReport},
    {4, TL(9755, "Terminal hier öffnen"), -1, isOne, openTerminal},
};

constexpr OwnEntry kChangesMenu[] = {
    {1, TL(9756, "In der Ordnerliste zeigen"), -1, isOne, [](const MenuTarget& on) { on.form.lists.of(on.grid)->DblClick(); }, "Return"},
};
// clang-format on

std::span<const OwnEntry> ownEntriesOf(GridId grid) {
    if (grid == GridId::kReport) return kReportMenu;
    if (grid == GridId::kDrives) return kDriveMenu;
    if (grid == GridId::kChanges) return kChangesMenu;
    return kListMenu;
}

}  // namespace

void showContextMenu(const MenuTarget& on, Point at) {
    const std::span<const OwnEntry> table = ownEntriesOf(on.grid);
    std::vector<MenuEntry> own;
    int group = 0;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const OwnEntry& entry = table[i];
        if (!entry.shows(on)) continue;
        if (entry.group != group) own.push_back({});
        group = entry.group;
        own.push_back({Menus::kFirstOwn + static_cast<int>(i),
                       on.form.services().texts.TL(entry.caption.id, entry.caption.german),
                       {},
                       entry.key,
                       entry.icon});
    }
    const FileOps ops = on.form.files.ops();
    Menus menus(ops);
    const bool copiesOnly = on.grid == GridId::kChanges || !isOnDisk(on);
    const int chosen = copiesOnly ? menus.showForCopying(on.paths, std::move(own), at)
                                  : menus.show(on.paths, std::move(own), at);
    if (chosen != 0 && !on.form.closed) table[static_cast<std::size_t>(chosen - Menus::kFirstOwn)].run(on);
}

}  // namespace hl
