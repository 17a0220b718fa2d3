#include "mainwindow/drives_control.h"

#include "mainwindow/main_form.h"
#include "views/list_columns.h"

namespace hl {

void DrivesControl::makeList() {
    Session& session = form_.session;
    Init_List(session.lvwDiskinfo, kDrivesTable, session.options, session.services.texts);
    list_ = std::make_unique<DriveList>(form_.scan, session.lvwDiskinfo, form_.own.drives, *form_.window,
                                        static_cast<DriveListHost&>(*this));
    form_.window->grid(GridId::kDrives).setEvents(list_.get());
}

void DrivesControl::takeAnswers() {
    if (!list_) return;
    list_->takeAnswers();
    form_.sources.start().show();
}

void DrivesControl::Drives_ResizeTableHeight() {
    if (form_.session.lvwDiskinfo.rowCount() == 0) return;
    constexpr int kBelowRows = 5;
    Panes& panes = form_.looks.panes();
    panes.splitter(SplitterId::kInfo)
        .setPosition(panes.splitter(SplitterId::kDrives).Position() +
                     form_.window->grid(GridId::kDrives).heightOfRows() + kBelowRows);
}

void DrivesControl::readSources(const std::vector<std::string>& sources) {
    form_.sources.read(sources);
}

void DrivesControl::copyPaths(const std::vector<std::string>& paths) {
    form_.window->clipboard.copyFiles(paths);
}

void DrivesControl::openDriveMenu(Row row, Point at) {
    form_.files.openDriveMenu(row, at);
}

}  // namespace hl
