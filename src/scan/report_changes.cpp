// Changes of the report: finding rows; what went; what came; what is read again.
#include "scan/report_changes.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/date_format.h"
#include "base/size_text.h"
#include "scan/driver.h"
#include "scan/file_system_calls.h"
#include "scan/files_of_folder.h"
#include "scan/left_out.h"
#include "scan/not_read.h"
#include "scan/on_disk.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/snapshots.h"
#include "scan/unfolded.h"
#include "scan/walker.h"
#include "scan/yield.h"

namespace hl {

namespace {

bool isFolder(const Grid& report, Row row) {
    return report.number(row, kIsFolder) == 1;
}

Row folderBelow(const Grid& report, Row row, std::string_view name) {
    Row child = report.firstChild(row);
    while (child != kNoRow && !(isFolder(report, child) && report.text(child) == name))
        child = report.nextSibling(child);
    return child;
}

bool hasFolders(const Grid& report, Row row) {
    const Row child = report.firstChild(row);
    return child != kNoRow && (isFolder(report, child) || report.nextSibling(child) != kNoRow);
}

void add(Grid& report, Row row, CellId cell, double value) {
    report.setNumber(row, cell, report.number(row, cell) + value);
}

// Returns the numbers of a row, without those of folders.
ScanTotals totalsOf(const Grid& report, Row row) {
    const auto bytes = [&](CellId cell) {
        return SizeValue::fromBytes(static_cast<std::uint64_t>(report.number(row, cell)));
    };
    return {.size = bytes(kSize),
            .disk = bytes(kDisk),
            .newest = static_cast<std::int64_t>(report.number(row, kNewest)),
            .files = static_cast<std::int32_t>(report.number(row, kFiles))};
}

}  // namespace

// --- finding rows

namespace {

/// Returns the row of the folder, or of the nearest folder above it; `rest` receives the names below that
/// row. REQUIRES: the source holds the path.
Row descend(const Grid& report, Row root, std::string_view path, char separator, std::string_view& rest) {
    rest = path.substr(report.text(root).size());
    for (Row row = root;;) {
        if (!rest.empty() && rest.front() == separator) rest.remove_prefix(1);
        if (rest.empty()) return row;
        const std::string_view name = rest.substr(0, rest.find(separator));
        const Row below = folderBelow(report, row, name);
        if (below == kNoRow) return row;
        row = below;
        rest.remove_prefix(name.size());
    }
}

}  // namespace

Row rowOfFolder(const Grid& report, Row root, std::string_view path, const PathRules& paths) {
    if (!liesIn(path, report.text(root), paths)) return kNoRow;
    std::string_view rest;
    const Row row = descend(report, root, path, paths.separator, rest);
    return rest.empty() ? row : kNoRow;
}

bool holdsLinkedFiles(ScanContext& scan, const std::string& folder) {
    Yield yield(scan.state, scan.pump);
    const auto reader = scan.fileSystem.read(folder, {.wantLinks = true, .wantFileNames = false}, &yield);
    std::vector<std::pair<std::unique_ptr<Listing>, std::size_t>> open;
    open.emplace_back(reader->next(), 0);
    while (!open.empty()) {
        if (scan.state.CancelState != kCancelNone) return true;
        auto& [block, next] = open.back();
        if (block == nullptr) return true;
        if (next < block->count) {
            yield.perEntry();
            const Entry& entry = block->entries[next++];
            if ((entry.attributes & kAttributeDirectory) == 0) {
                if (entry.links > 1) return true;
            } else if (entry.isEntered()) {
                open.emplace_back(reader->next(), 0);
            }
        } else if (block->more) {
            block = reader->next();
            next = 0;
        } else {
            open.pop_back();
        }
    }
    return false;
}

template <class Do>
void ReportChanges::forEachRowOf(std::string_view path, Do act) {
    for (Row root = firstLiveSource(scan_); root != kNoRow; root = nextLiveSource(scan_, root)) {
        const Row row = rowOfFolder(scan_.tvwPL, root, path, scan_.paths);
        if (row == kNoRow) continue;
        drives_.insert(root);
        act(root, row);
    }
}

// --- what went

void ReportChanges::folderWent(std::string_view path) {
    Grid& report = scan_.tvwPL;
    folderWent_ = true;
    for (Row root = firstLiveSource(scan_); root != kNoRow;) {
        const Row next = nextLiveSource(scan_, root);
        if (liesIn(report.text(root), path, scan_.paths)) takeOutSource(root);
        root = next;
    }
    forEachRowOf(path, [&](Row root, Row row) {
        takeOut(row);
        if (forgetSubvolumes(scan_, root, path)) sources_.insert(root);
    });
}

void ReportChanges::takeOutSource(Row root) {
    forgetBelow(root);
    sources_.erase(root);
    drives_.erase(root);
    scan_.state.snapshots.met.erase(std::string(scan_.tvwPL.text(root)));
    scan_.tvwPL.removeRow(root);
    if (scan_.statistics != nullptr) scan_.statistics->dropSource(root);
    if (scan_.largest != nullptr) scan_.largest->dropSource(root);
    if (scan_.facts != nullptr) scan_.facts->dropSource(root);
    if (scan_.tvwPL.rowCount() == 0) scan_.state.DeepestLevel = 0;
}

void ReportChanges::takeOut(Row row) {
    Grid& report = scan_.tvwPL;
    const Row parent = report.parent(row);
    for (Row above = parent; above != kNoRow; above = report.parent(above)) {
        add(report, above, kSize, -report.number(row, kSize));
        add(report, above, kDisk, -report.number(row, kDisk));
        add(report, above, kFiles, -report.number(row, kFiles));
        add(report, above, kFolders, -report.number(row, kFolders) - 1);
        report.setMark(above, report.mark(above) - foldersNotRead(report, row));
        changeLeftOut(report, above, leftOutWith(report, row), {});
    }
    const double newest = report.number(row, kNewest);
    report.setNumber(row, kNewest, 0);
    Report_UpdateNewest(report, row, newest);
    forgetBelow(row);
    if (scan_.largest != nullptr) scan_.largest->forgetBelow(report, row);
    report.removeRow(row);
    if (scan_.statistics != nullptr) scan_.statistics->orderChanged();
    // A folder without subfolders has no row for its files; its own row counts them.
    const Row files = hasFolders(report, parent) ? kNoRow : filesRowBelow(report, parent);
    if (files != kNoRow) report.removeRow(files);
    touched_.insert(parent);
}

std::set<std::string, std::less<>> ReportChanges::loseLinks() {
    const Grid& report = scan_.tvwPL;
    std::set<std::string, std::less<>> links;
    for (Row row = report.firstRoot(); row != kNoRow; row = report.tree().following(row)) {
        if (report.picture(row) != kPictureLink || report.level(row) == 0 || isFromFile(scan_, row)) continue;
        std::string path = Report_GetFullpathOfNode(report, row, false, scan_.paths);
        if (hasVanished(scan_, path + scan_.paths.separator + '.')) links.insert(std::move(path));
    }
    for (const std::string& path : links) {
        folderWent(path);
        filesChanged(folderAbove(path, scan_.paths));
    }
    scan_.state.LostLinks.insert(links.begin(), links.end());
    return links;
}

void ReportChanges::findLinksAgain() {
    auto& lost = scan_.state.LostLinks;
    for (auto link = lost.begin(); link != lost.end();) {
        const bool leadsAgain = !hasVanished(scan_, *link + scan_.paths.separator + '.');
        if (leadsAgain) folderChanged(folderAbove(*link, scan_.paths));
        link = leadsAgain ? lost.erase(link) : std::next(link);
    }
}

void ReportChanges::folderRenamed(std::string_view from, std::string_view name) {
    folderWent_ = true;  // Links that led to it lead nowhere.
    Grid& report = scan_.tvwPL;
    const std::string to = std::string(from.substr(0, from.rfind(scan_.paths.separator) + 1)).append(name);
    for (Row root = firstLiveSource(scan_); root != kNoRow; root = nextLiveSource(scan_, root)) {
        const std::string was(report.text(root));
        if (!liesIn(was, from, scan_.paths)) continue;
        const std::string now = to + was.substr(from.size());
        report.setText(root, now);
        renameSource(scan_.state, was, now);
    }
    std::vector<Row> renamed;
    forEachRowOf(from, [&](Row root, Row row) {
        if (row == root) return;
        report.setText(row, name);
        touched_.insert(report.parent(row));
        renamed.push_back(row);
    });
    renameSubvolumes(scan_, from, to);
    if (!leavesOut(scan_)) return;
    // Other rules may name it and what lies below it now. A link that a rule names has no row.
    bool isLink = false;
    for (const Row row : renamed) {
        isLink = isLink || report.picture(row) == kPictureLink;
        if (isEntered(row) || isLeftOutByRule(report, row)) readAgain(row);
    }
    if (isLink) folderChanged(folderAbove(to, scan_.paths));
}

void ReportChanges::fileRenamed(std::string_view from, std::string_view name) {
    if (scan_.largest == nullptr) return;
    forEachRowOf(folderAbove(from, scan_.paths), [&](Row, Row row) {
        if (LargestFiles* largest = scan_.largest->of(scan_.tvwPL, row))
            largest->rename(row, fileNameOf(from, scan_.paths), name);
    });
}

// Forgets the row and all below it, because their numbers will belong to other rows.
void ReportChanges::forgetBelow(Row row) {
    std::erase_if(touched_, [&](Row each) {
        while (each != kNoRow && each != row) each = scan_.tvwPL.parent(each);
        return each == row;
    });
}

// --- what came

void ReportChanges::folderCame(std::string_view path) {
    const Grid& report = scan_.tvwPL;
    for (Row root = firstLiveSource(scan_); root != kNoRow; root = nextLiveSource(scan_, root)) {
        if (!liesIn(path, report.text(root), scan_.paths)) continue;
        std::string_view rest;
        const Row row = descend(report, root, path, scan_.paths.separator, rest);
        if (rest.empty() || !isEntered(row)) continue;
        drives_.insert(root);
        const std::string_view name = rest.substr(0, rest.find(scan_.paths.separator));
        // Whether a link is a folder here is decided as in the walk.
        if (isFolder(scan_, path.substr(0, path.size() - rest.size() + name.size()))) {
            addFolder(row, name);
        } else {
            readAgain(row);
        }
    }
}

void ReportChanges::addFolder(Row above, std::string_view name) {
    Grid& report = scan_.tvwPL;
    const bool first = !hasFolders(report, above);
    const ScanTotals files = totalsOf(report, above);
    const auto grey = first ? std::nullopt : report.backColor(report.firstChild(above));
    const Row row = report.addRow(above, name);
    if (scan_.statistics != nullptr) scan_.statistics->forget(row);
    if (scan_.facts != nullptr) scan_.facts->begin(row, {});
    if (grey) report.setBackColor(row, *grey);
    report.setNumber(row, kIsFolder, 1);
    report.setPicture(row, kPictureFolder);
    scan_.state.DeepestLevel = std::max(scan_.state.DeepestLevel, report.level(row));
    for (Row each = above; each != kNoRow; each = report.parent(each)) add(report, each, kFolders, 1);
    if (first && files.files > 0) addFilesRow(above, files);
    readRow(row);
    touched_.insert(row);
}

void ReportChanges::addFilesRow(Row row, const ScanTotals& files) {
    Grid& report = scan_.tvwPL;
    const Row made = report.addRow(row, scan_.texts.TL(3514, "Dateien"));
    report.setPicture(made, kPictureFilesRow);
    if (const auto grey = report.backColor(report.firstChild(row))) report.setBackColor(made, *grey);
    Report_SetTotals(report, made, files);
    Report_UpdateNewest(report, made, 0);
}

// Tells whether a row's folder is read: one that is left out is not, nor are links and other mounts, unless
// the user wants them followed.
bool ReportChanges::isEntered(Row row) const {
    const int picture = scan_.tvwPL.picture(row);
    const bool leadsElsewhere = picture == kPictureLink || picture == kPictureMountPoint;
    if (isLeftOut(scan_.tvwPL, row)) return false;
    return scan_.tvwPL.level(row) == 0 || !leadsElsewhere || scan_.options.ScanHardlinks == 1;
}

// --- what is read again

void ReportChanges::filesChanged(const std::string& folder) {
    if (hasVanished(scan_, folder)) return folderWent(folder);
    forEachRowOf(folder, [&](Row root, Row row) {
        if (isEntered(row) && !readFiles(row, folder)) sources_.insert(root);
    });
}

// Returns false if a file counts only when none of its other names does.
bool ReportChanges::readFiles(Row row, const std::string& folder) {
    const bool once = scan_.options.AddHardlinksOnlyOnce == 1;
    Yield yield(scan_.state, scan_.pump);
    FilesOfFolder kept(scan_, row);
    const auto reader = scan_.fileSystem.read(folder,
                                              {.recursive = false,
                                               .wantLinks = once,
                                               .wantSpace = true,
                                               .wantOwners = kept.wanted(),
                                               .wantFileNames = kept.wanted(),
                                               .leaveOut = rulesOfRow(scan_, row).rules},
                                              &yield);
    ScanTotals files;
    const std::int64_t now = secondsNow();
    for (bool more = true; more;) {
        const std::unique_ptr<Listing> block = reader->next();
        if (block == nullptr) return markIncomplete(row), true;
        if (block->error) return readAgain(row), true;
        files.leftOut.files += block->filesLeftOut;
        for (std::size_t i = 0; i < block->count; ++i) {
            const Entry& entry = block->entries[i];
            yield.perEntry();
            if ((entry.attributes & kAttributeDirectory) != 0) continue;
            if (once && entry.links > 1) return false;
            files.files = addCount(files.files, 1);
            files.size += SizeValue::fromBytes(entry.size);
            const EntryDetails& known = block->details[i];
            addSpace(files, known, now, true);
            if (kept.wanted()) kept.add(block->name(entry), entry.size, known);
        }
        more = block->more;
    }
    writeFiles(row, files);
    kept.write();
    return true;
}

// Stop ended the reading of the row's files, so its numbers are those of before.
void ReportChanges::markIncomplete(Row row) {
    Grid& report = scan_.tvwPL;
    if (isNotRead(report, row)) return;
    Report_MarkIncomplete(scan_, row);
    for (Row above = report.parent(row); above != kNoRow; above = report.parent(above))
        report.setMark(above, report.mark(above) + 1);
}

void ReportChanges::writeFiles(Row row, const ScanTotals& files) {
    Grid& report = scan_.tvwPL;
    const bool ownRow = hasFolders(report, row);
    const Row filesRow = ownRow ? filesRowBelow(report, row) : row;
    const ScanTotals before = filesRow == kNoRow ? ScanTotals() : totalsOf(report, filesRow);
    const Unshown leftOutBefore{.files = ownFilesLeftOut(report, row)};
    for (Row above = row; above != kNoRow; above = report.parent(above)) {
        changeLeftOut(report, above, leftOutBefore, files.leftOut);
        add(report, above, kSize, files.size.asDouble() - before.size.asDouble());
        add(report, above, kDisk, files.disk.asDouble() - before.disk.asDouble());
        add(report, above, kFiles, files.files - before.files);
    }
    touched_.insert(row);
    if (filesRow == kNoRow) {
        if (files.files > 0) addFilesRow(row, files);
        return;
    }
    report.setNumber(filesRow, kNewest, static_cast<double>(files.newest));
    Report_UpdateNewest(report, filesRow, static_cast<double>(before.newest));
    if (!ownRow) return;
    if (files.files == 0) return report.removeRow(filesRow);
    Report_SetTotals(report, filesRow, files);
}

void ReportChanges::folderChanged(std::string_view path) {
    if (hasVanished(scan_, path)) return folderWent(path);
    forEachRowOf(path, [&](Row, Row row) {
        if (isEntered(row)) readAgain(row);
    });
}

void ReportChanges::sourcesChanged(std::string_view path) {
    for (Row root = firstLiveSource(scan_); root != kNoRow; root = nextLiveSource(scan_, root))
        if (liesIn(path, scan_.tvwPL.text(root), scan_.paths)) sources_.insert(root);
}

void ReportChanges::readAgain(Row row) {
    forgetBelow(row);
    Unfolded unfolded(scan_, row);
    readRow(row);
    unfolded.restore(row);
    touched_.insert(row);
}

void ReportChanges::readRow(Row row) {
    Report_ReadAgain(scan_, row);
    if (!std::exchange(scan_.state.snapshots.moved, false)) return;
    sources_.insert(scan_.tvwPL.rootOf(row));
}

bool ReportChanges::showsFoldersTwice(Row root) const {
    if (scan_.options.ScanHardlinks != 1) return false;
    const Grid& report = scan_.tvwPL;
    Row row = report.tree().following(root);
    while (row != kNoRow && report.level(row) > 0 && report.picture(row) != kPictureLink &&
           report.picture(row) != kPictureMountPoint)
        row = report.tree().following(row);
    return row != kNoRow && report.level(row) > 0;
}

std::set<std::string, std::less<>> ReportChanges::finish() {
    auto links = folderWent_ ? loseLinks() : decltype(loseLinks())();
    findLinksAgain();
    for (const Row root : drives_)
        if (showsFoldersTwice(root)) sources_.insert(root);
    for (const Row root : std::exchange(sources_, {})) readAgain(root);
    std::set<Row> done;
    for (Row row : touched_)
        for (; row != kNoRow && done.insert(row).second; row = scan_.tvwPL.parent(row))
            Report_ChangePercentValue(scan_, row);
    Report_Sort(scan_);
    for (const Row root : drives_) {
        noteSpaceChanged(scan_, root);
        scan_.host.sourceChanged(root);
    }
    scan_.host.rowsChanged();
    return links;
}

}  // namespace hl
