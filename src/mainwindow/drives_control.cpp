#include "mainwindow/drives_control.h"

#include "mainwindow/main_form.h"
#include "views/list_columns.h"

namespace hl {

void DrivesControl::makeList() {
    Session& session = form_.session;
    const Services& services = session.services;
    Init_List(session.lvwDiskinfo, kDrivesTable, session.options, services.texts);
    list_ = std::make_unique<DriveList>(
        DriveListServices{session.lvwDiskinfo, session.tvwPL, form_.own.drives, *form_.window, *this,
                          session.state, services.settings, session.options, services.texts, services.facts,
                          services.diagnostics, services.paths, services.numbers});
    form_.window->grid(GridId::kDrives).setEvents(list_.get());
}

void DrivesControl::takeAnswers() {
    if (list_) list_->takeAnswers();
}

void DrivesControl::setBusyPointer(bool busy) {
    form_.run.setBusyPointer(busy);
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

void DrivesControl::openDriveMenu(Row row, Point at) {
    form_.files.openDriveMenu(row, at);
}

}  // namespace hl
