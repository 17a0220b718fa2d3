#include "output/print_files.h"

namespace hl {

void Print_Files(const Services& services, const std::string& title, Grid& grid, GridId id,
                 const Window& window) {
    if (grid.rowCount() == 0) return;
    // Switching it off and on tells of all gathered changes now, so that the list is laid out anew.
    grid.setRedraw(false);
    grid.setRedraw(true);
    PrintJob job = printedGrid(services, title, grid, window.grid(id).gridFont());
    job.tree = hasHierarchy(id);
    window.dialogs.previewPrint(job);
}

}  // namespace hl
