#include "fileops/renaming.h"

#include "base/path.h"
#include "base/text.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "views/list_view.h"

namespace hl {

namespace {

constexpr const char* kModul = "frmMain";
constexpr int kNotFound = 2;

/// Renames, and writes the new name into the row or tells why not.
bool rename(const FileOps& ops, Grid& grid, Row row, const std::string& folder, const std::string& name) {
    const std::string error = xMoveFile_W(ops, folder + std::string(grid.text(row)), folder + name);
    if (error.empty()) return grid.setText(row, name), true;
    ops.window.message(MessageKind::kWarning, visible(error));
    return false;
}

}  // namespace

std::string xMoveFile_W(const FileOps& ops, const std::string& from, const std::string& to) {
    int error = 0;
    {
        FileRun run(ops, ops.scan.texts.TL(9551, "Wird verschoben: %1"));
        error = ops.operations.move(placeOf(ops.scan, from), placeOf(ops.scan, to), run);
    }
    if (error == 0) return {};
    const std::string text = ops.scan.facts.errorText(error);
    return text.empty() ? std::to_string(error) : text;
}

void renameInList(const FileOps& ops, ListView& list, Row row, const std::string& name) {
    guarded(ops.scan.diagnostics, list.event("GridCellAfterEditing").c_str(), kModul, [&] {
        const std::string old(list.grid().text(row));
        if (name == old || ops.scan.state.ScanActive) return;
        const std::string path = list.pathOf(row);
        rename(ops, list.grid(), row, path.substr(0, path.size() - old.size()), name);
    });
}

void renameInReport(const FileOps& ops, Row row, const std::string& name) {
    guarded(ops.scan.diagnostics, "tvwPL_GridCellAfterEditing", kModul, [&] {
        Grid& report = ops.scan.tvwPL;
        if (name == report.text(row) || report.level(row) == 0 || ops.scan.state.ScanActive) return;
        // A row that sums up files is no folder, whatever may be called so on the disk.
        if (report.number(row, kIsFolder) != 1) {
            ops.window.message(MessageKind::kWarning, ops.scan.facts.errorText(kNotFound));
            return;
        }
        const std::string folder = Report_GetFullpathOfNode(report, report.parent(row), true, ops.scan.paths);
        const std::string old = AddTrailingSlash(folder + std::string(report.text(row)), ops.scan.paths);
        std::string& listed = ops.scan.state.currentFolder;
        // The list keeps its rows: they lie in the same folder, or in one below it, under another name.
        if (rename(ops, report, row, folder, name) && listed.starts_with(old))
            listed.replace(0, old.size(), AddTrailingSlash(folder + name, ops.scan.paths));
    });
}

}  // namespace hl
