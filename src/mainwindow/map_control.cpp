#include "mainwindow/map_control.h"

#include "mainwindow/main_form.h"

namespace hl {

MapControl::MapControl(MainForm& form) : form_(form), view_(form.scan, *this) {}

void MapControl::setWindow(const Window* window) {
    view_.setPane(window != nullptr ? window->map : nullptr);
}

void MapControl::selectFolder(const std::string& path) {
    form_.report.view().goTo(path);
}

void MapControl::selectFile(const std::string& folder, const std::string& name) {
    const std::string& shown = form_.session.state.fileList.folder;
    if (form_.lists.listShows(GridId::kFiles) && shown == AddTrailingSlash(folder, form_.services().paths))
        form_.lists.of(GridId::kFiles)->showRowOf(name);
}

void MapControl::openFolderMenu(Row row, Point at) {
    form_.report.Report_ShellContextMenu(row, form_.report.view().folderPath(row), at);
}

}  // namespace hl
