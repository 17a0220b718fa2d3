#include "mainwindow/preview_control.h"

#include "mainwindow/main_form.h"

namespace hl {

PreviewControl::PreviewControl(MainForm& form)
    : form_(form), preview_(*this, form.services().texts, form.services().log, form.services().diagnostics) {}

void PreviewControl::setWindow(const Window* window) {
    preview_.setPane(window != nullptr ? window->preview : nullptr);
}

bool PreviewControl::previewShows() {
    const Panes& panes = form_.looks.panes();
    return panes.listShows() && panes.splitter(SplitterId::kFilesAndPreview).Control2Visible();
}

std::string PreviewControl::selectedFile() {
    const GridId list = form_.looks.panes().list();
    if (list == GridId::kJunctions || list == GridId::kStatistics || list == GridId::kChanges) return {};
    const Grid& grid = form_.session.grid(list);
    if (grid.selectedCount() == 0) return {};
    const Row row = grid.selectedRows().front();
    const std::string folder = list == GridId::kFiles ? form_.session.state.fileList.folder
                                                      : std::string(grid.cellText(row, kFilePath));
    return folder + std::string(grid.text(row));
}

}  // namespace hl
