#include "mainwindow/map_control.h"

#include "mainwindow/main_form.h"
#include "mainwindow/saved_text.h"
#include "output/print_job.h"
#include "scan/left_out.h"

namespace hl {

MapControl::MapControl(MainForm& form) : form_(form), view_(form.scan, *this) {}

void MapControl::setWindow(const Window* window) {
    view_.setPane(window != nullptr ? window->map : nullptr);
}

void MapControl::reportChanged() {
    view_.reportChanged();
    form_.bars.cbrMap.setCaption(idOf(Command::kMapTitle), title());
}

std::string MapControl::title() const {
    const Texts& texts = form_.services().texts;
    std::string map = texts.TL(9772, "Karte");
    if (!view_.isThin()) return map;
    return map + " (" + texts.TL(9428, "größte Dateien nach dem Stand des letzten Einlesens") + ")";
}

// --- commands of its bar

void MapControl::savePng() {
    if (view_.isEmpty() || form_.window->map == nullptr) return;
    saveText(form_.services(), form_.files, *form_.window, form_.window->map->png(),
             {"PNG (*.png)|*.png", "png", "/"});
}

void MapControl::saveSvg() {
    if (view_.isEmpty()) return;
    saveText(form_.services(), form_.files, *form_.window, view_.svg(), {"SVG (*.svg)|*.svg", "svg", "/"});
}

void MapControl::print() {
    if (view_.isEmpty() || form_.session.state.ScanActive) return;  // The scan would wait for the preview.
    const Services& services = form_.services();
    std::string what = title();
    if (const std::string path = view_.path(); !path.empty()) what += ": " + path;
    const PrintJob job =
        printedPicture(services.texts, services.files,
                       titleWithLeftOut(services, what, leftOutOf(form_.session.tvwPL)), view_.svg());
    form_.window->dialogs.previewPrint(job);
}

// --- MapHost

void MapControl::selectFolder(Row row) {
    form_.report.view().goTo(row);
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
