#include "views/files_view.h"

#include "base/scope_exit.h"
#include "scan/driver.h"
#include "views/file_list.h"
#include "views/size_display.h"

namespace hl {

namespace {

const ListTraits kFilesTraits = {
    .grid = GridId::kFiles,
    .family = "List_Files_",
    .events = "lvwFiles_",
    .mouseUp = "lvwFiles_MouseUp",
    .fileStat = "List_Files_ShowFileStat",
    .searchText = Command::kFilesSearchText,
    .table = kFilesTable,
    .showIcons = &Options::ShowIcons,
    .iconsDuringScan = true,
    .hitLoadsIcons = true,
    .hitShowsPreview = true,
    .keysShowPreview = true,
};

}  // namespace

FilesView::FilesView(const ListParts& parts, Grid& lvwFiles, CommandBar& cbrFiles)
    : ListView(kFilesTraits, parts, lvwFiles, cbrFiles) {}

void FilesView::List_Files_ScanFolder(const std::string& path, bool lockControls) {
    guarded(parts_.scan.diagnostics, [&] {
        const ScanContext& scan = parts_.scan;
        if (path.empty() || !parts_.host.listShows(GridId::kFiles)) return empty();
        const std::string folder = AddTrailingSlash(path, scan.paths);
        if (identityKey(folder, scan.paths) == identityKey(scan.state.fileList.folder, scan.paths)) return;
        scan.state.fileList.folder = folder;
        all_ = false;
        // While messages run, rows of the former folder must not be taken for those of the new one.
        FilesTotalSize_ = SizeValue();
        grid_.clear();
        const std::uint64_t run = ++scan.state.fileList.run;
        scan.pump.PumpMessages();
        if (scan.state.fileList.run != run) return;
        if (lockControls && !scan.state.ScanActive) {
            listLocked(folder);
        } else {
            list(folder);
        }
        Resize_Columns(true);
    });
}

void FilesView::empty() {
    ++parts_.scan.state.fileList.run;
    parts_.scan.state.fileList.folder.clear();
    FilesTotalSize_ = SizeValue();
    grid_.clear();
    if (parts_.host.listShows(GridId::kFiles)) ShowFileStat();
}

void FilesView::listLocked(const std::string& folder) {
    const BusyPointer busy(parts_.scan.controls);
    DisableControls(parts_.scan, false);
    const ScopeExit unlock([&] { EnableControls(parts_.scan); });
    list(folder);
}

void FilesView::list(const std::string& folder) {
    parts_.host.setSecondPanel(parts_.scan.texts.TL(9522, "Dateiliste wird geladen... (Abbruch: ESC-Taste)"));
    all_ = List_Files_ScanFolderR(parts_.scan, grid_, folder, FilesTotalSize_);
    ShowFileStat();
    rowsReplaced();
}

void FilesView::List_Files_Refresh() {
    guarded(parts_.scan.diagnostics, [&] {
        if (grid_.rowCount() == 0) return;
        const std::string folder = std::exchange(parts_.scan.state.fileList.folder, {});
        List_Files_ScanFolder(folder, true);
        showPreview(false);
    });
}

std::string FilesView::pathOf(Row row) const {
    return parts_.scan.state.fileList.folder + std::string(grid_.text(row));
}

void FilesView::rowsRemoved() {
    FilesTotalSize_ = SizeValue();
    for (Row row = grid_.firstRoot(); row != kNoRow; row = grid_.nextSibling(row))
        FilesTotalSize_ += SizeValue::fromBytes(static_cast<std::uint64_t>(grid_.number(row, kFileSize)));
}

// Returns an empty text if no folder is listed.
std::string FilesView::total() const {
    if (parts_.scan.state.fileList.folder.empty()) return {};
    const NumberFormat& numbers = parts_.scan.numbers;
    return parts_.scan.texts.TL(9523, "%1 Datei(en) mit insgesamt %2",
                                {formatCount(grid_.rowCount(), numbers),
                                 shownSize(parts_.options.FileSizeFormatFiles, FilesTotalSize_, numbers)});
}

}  // namespace hl
