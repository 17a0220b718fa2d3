// What the four lists ask of the window around them, and how their events reach them.
#include "base/text.h"
#include "mainwindow/view_options.h"
#include "mainwindow/window_form.h"
#include "views/file_list.h"
#include "views/list_columns.h"

namespace hl {

// The views need the window already while they are set up. From here on each hears of its own grid.
void WindowForm::makeViews() {
    Init_DiskInfo(lvwDiskinfo_, services_.texts);
    reportView_ = std::make_unique<ReportView>(scan_, options_, bars_.cbrReport, *window_,
                                               static_cast<ReportHost&>(*this), ColumnDragGuard_);
    driveList_ = std::make_unique<DriveList>(DriveListServices{
        lvwDiskinfo_, tvwPL_, own_.drives, *window_, *this, state_, services_.settings, options_,
        services_.texts, services_.facts, services_.diagnostics, services_.paths, services_.numbers});
    Init_FileList(lvwFiles_, options_, services_.texts);
    pictures_ = std::make_unique<FilePictures>(window_->fileTypes);
    typeNames_ = std::make_unique<TypeNames>(window_->fileTypes, services_.files);
    const ListParts parts{scan_, options_, *window_, *this, *pictures_, ColumnDragGuard_};
    lists_.reset(new ListViews{{parts, lvwFiles_, bars_.cbrFiles},
                               {parts, lvwTOP_, bars_.cbrTOP},
                               {parts, lvwHardlinks_, bars_.cbrHardlinks},
                               {parts, lvwJunctions_, bars_.cbrJunctions}});
    window_->grid(GridId::kReport).setEvents(reportView_.get());
    window_->grid(GridId::kDrives).setEvents(driveList_.get());
    for (const GridId id : kListGrids) window_->grid(id).setEvents(lists_->of(id));
}

GridEvents& WindowForm::gridEvents(GridId id) {
    if (id == GridId::kReport) return *reportView_;
    if (id == GridId::kDrives) return *driveList_;
    return *lists_->of(id);
}

ListView* WindowForm::listThatShows() {
    return panes_.listShows() ? lists_->of(panes_.list()) : nullptr;
}

// --- ListHost

bool WindowForm::listShows(GridId list) {
    return !unloaded_ && panes_.listShows() && panes_.list() == list;
}

// Returns what to do about an empty list that no scan fills, or about a window without a source.
std::string WindowForm::emptyHint(GridId id) const {
    const Texts& texts = services_.texts;
    const std::string start = texts.TL(3531, "Start");
    if (id == GridId::kReport)
        return texts.TL(9299, "Wählen Sie mit \"%1\" einen Ordner, und drücken Sie \"%2\".",
                        {texts.TL(3529, "Neu"), start});
    const bool off = (id == GridId::kTop && options_.CreateListTOP == 0) ||
                     (id == GridId::kHardlinks && options_.CreateListHardlink == 0) ||
                     (id == GridId::kJunctions && options_.CreateListJunction == 0);
    if (!off) return {};
    return texts.TL(9298,
                    "Diese Liste ist ausgeschaltet. Schalten Sie sie in der Liste unter \"%1\" ein, und "
                    "lesen Sie die Quelle neu ein.",
                    {start});
}

void WindowForm::setSecondPanel(const std::string& text) {
    status_.second = visible(text);
    showStatus();
}

// --- what the panes and a scan ask for

void WindowForm::fitColumns(GridId list) {
    if (ListView* view = lists_->of(list)) view->Resize_Columns(false);
}

void WindowForm::SetFileIcons(GridId list) {
    if (ListView* view = lists_->of(list)) view->SetFileIcons(false);
}

void WindowForm::ShowFileStat(GridId list) {
    if (ListView* view = lists_->of(list)) view->ShowFileStat();
}

void WindowForm::showFileStat() {
    if (ListView* list = listThatShows()) list->ShowFileStat();
}

void WindowForm::showFilesOf(const std::string& folder) {
    lists_->files.List_Files_ScanFolder(folder, !state_.ScanActive);
}

void WindowForm::listsFilled() {
    for (const GridId id : {GridId::kTop, GridId::kHardlinks, GridId::kJunctions})
        lists_->of(id)->rowsChanged();
}

std::string WindowForm::typeName(const std::string& path) {
    return typeNames_->of(path);
}

// --- events

void WindowForm::editLeft(BarId id, int entry) {
    if (commandOf(id, entry) == Command::kTopCount && !unloaded_) lists_->top.countLeft();
}

}  // namespace hl
