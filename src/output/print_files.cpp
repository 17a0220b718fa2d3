#include "output/print_files.h"

namespace hl {

void Print_Files(const PrintSources& sources, const std::string& title, Grid& grid, GridId id,
                 const NumberFormat& numbers, const Window& window) {
    if (grid.rowCount() == 0) return;
    // Switching it off and on tells of all gathered changes now, so that the list is laid out anew.
    grid.setRedraw(false);
    grid.setRedraw(true);
    window.dialogs.previewPrint(printedGrid(sources, title, grid, numbers, window.grid(id).gridFont()));
}

}  // namespace hl
