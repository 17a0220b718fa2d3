#include "mainwindow/window_preview.h"

#include "scan/records.h"

namespace hl {

void WindowPreview::setWindow(const Window* window) {
    preview_.setPane(window != nullptr ? window->preview : nullptr);
}

bool WindowPreview::previewShows() {
    return parts_.panes.listShows() && parts_.panes.splitter(SplitterId::kFilesAndPreview).Control2Visible();
}

std::string WindowPreview::selectedFile() {
    const GridId list = parts_.panes.list();
    if (list == GridId::kJunctions) return {};
    const Grid& grid = *parts_.grids[static_cast<std::size_t>(list)];
    if (grid.selectedCount() == 0) return {};
    const Row row = grid.selectedRows().front();
    const std::string folder =
        list == GridId::kFiles ? parts_.state.currentFolder : std::string(grid.cellText(row, kFilePath));
    return folder + std::string(grid.text(row));
}

}  // namespace hl
