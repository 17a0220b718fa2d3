// The box and its events; the queue; what is dropped.
#include "mainwindow/sources_control.h"

#include <algorithm>
#include <utility>

#include "app/command_line.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "scan/file_system_calls.h"
#include "scan/on_disk.h"
#include "scan/rollup.h"
#include "views/drive_combo.h"

namespace hl {

namespace {

// Other files lead to their folder.
bool isNameOfScan(const std::string& path) {
    const std::string name = lowerCase(path);
    return name.ends_with(".hlscan") || name.ends_with(".ncdu.json");
}

/// Tells whether the path is a link, or a chain of links, that ends at a folder.
bool leadsToFolder(FileSystem& fileSystem, const std::string& path) {
    if (fileSystem.target(path).valueOr("").empty()) return false;
    const auto block = fileSystem.read(path, {.recursive = false, .onlyOpen = true}, nullptr)->next();
    return block != nullptr && !block->error;
}

}  // namespace

// --- the box

void SourcesControl::comboText(const std::string& text) {
    guarded(form_.services().diagnostics, {.routine = "cboOrdner_Change"}, [&] {
        form_.session.cboOrdner.text = text;
        form_.session.cboOrdner.selectNone();
    });
}

void SourcesControl::comboSelected(int index) {
    guarded(form_.services().diagnostics, {.routine = "cboOrdner_Click"}, [&] {
        SourceCombo& box = form_.session.cboOrdner;
        if (index >= 0 && static_cast<std::size_t>(index) < box.items().size())
            box.select(static_cast<std::size_t>(index));
    });
}

void SourcesControl::comboKeyDown(int key) {
    if (form_.session.state.ScanActive) return;
    guarded(form_.services().diagnostics, {.routine = "cboOrdner_KeyDown"}, [&] {
        if (key == kKeyReturn) form_.barControl.returnIn(Command::kStart);
    });
    readWaiting();
}

bool SourcesControl::comboRemove(int index) {
    bool removed = false;
    guarded(form_.services().diagnostics, {.routine = "cboOrdner_KeyDown"}, [&] {
        removed = !form_.session.state.ScanActive && index >= 0 &&
                  form_.session.cboOrdner.remove(static_cast<std::size_t>(index));
        if (removed) changed();
    });
    return removed;
}

void SourcesControl::load() {
    Session& session = form_.session;
    const Services& services = session.services;
    const std::vector<Drive> drives = form_.own.drives.drives();
    loadComboText(session.options, services.settings);
    GetAllDrives(session.cboOrdner, drives, session.options.ComboText, services.paths);
    GetAllSavedComboFolders(
        session.cboOrdner, services.settings, drives, session.options.ComboText,
        [&services](const std::string& folder) {
            // The target of a link is not looked at: it may be on a server that is gone.
            const auto facts = services.fileSystem.look(folder);
            return facts ? facts->isFolder || !services.fileSystem.target(folder).valueOr("").empty()
                         : facts.failedAs(ErrorKind::kNoAnswer);
        },
        services.paths);
    loaded_ = true;
    start_.sourcesLoaded();
    changed();
}

void SourcesControl::save() {
    if (loaded_) SaveAllComboFolders(form_.session.cboOrdner, form_.services().settings);
}

void SourcesControl::changed() {
    const SourceCombo& box = form_.session.cboOrdner;
    std::vector<ComboItem> items;
    items.reserve(box.items().size());
    for (const SourceItem& item : box.items()) items.push_back({visible(item.text), item.image});
    const auto selected = box.selectedIndex();
    form_.window->frame.setSources(items, visible(box.text), selected ? static_cast<int>(*selected) : -1);
    start_.show();
}

// --- the queue

void SourcesControl::queueOwn() {
    const std::vector<std::string> sources = GetFoldersFromCommand(form_.own.commandLine);
    auto& queue = form_.session.state.SourceQueue;
    queue.insert(queue.begin(), sources.begin(), sources.end());
    form_.openedScans.queue(openedByCommand(form_.own.commandLine));
}

void SourcesControl::handOver(const std::string& commandLine) {
    guarded(form_.services().diagnostics, {.routine = "ISubclass_WindowProc"}, [&] {
        form_.window->frame.bringToFront();
        ScanState& state = form_.session.state;
        for (std::string& source : GetFoldersFromCommand(commandLine))
            state.DiskSilent ? lateSources_.push_back(std::move(source))
                             : state.SourceQueue.push_back(std::move(source));
        form_.openedScans.queue(openedByCommand(commandLine));
    });
    readWaiting();
}

void SourcesControl::read(const std::vector<std::string>& sources) {
    for (const std::string& source : sources) form_.session.state.SourceQueue.push_back(source);
    runQueue();
}

void SourcesControl::readWaiting() {
    if (!ready_ || commands_ > 0) return;
    guarded(form_.services().diagnostics, {.routine = "Ordnerliste_Abarbeiten"}, [&] { runQueue(); });
}

// Sources may be added when the run has read its last source but is not over yet.
void SourcesControl::runQueue() {
    const ScanState& state = form_.session.state;
    while (!state.ScanActive && !form_.closed) {
        queueLate();
        queueDropped();
        if (form_.openedScans.openNext()) continue;
        if (state.SourceQueue.empty() || form_.closed) return;
        Ordnerliste_Abarbeiten(form_.scan);
        changed();
        selectDroppedFiles();
    }
}

// Whoever ends the wait for a silent disk does not mean what came since: perhaps it came because of the wait.
void SourcesControl::queueLate() {
    auto& queue = form_.session.state.SourceQueue;
    for (std::string& source : std::exchange(lateSources_, {})) queue.push_back(std::move(source));
    dropped_.insert(dropped_.end(), lateDropped_.begin(), lateDropped_.end());
    lateDropped_.clear();
}

// --- what is dropped

void SourcesControl::dropped(const std::vector<DroppedPlace>& places) {
    auto& to = form_.session.state.DiskSilent ? lateDropped_ : dropped_;
    to.insert(to.end(), places.begin(), places.end());
    readWaiting();
}

// While this looks at the disk or shows its message, messages run, and more may be dropped.
void SourcesControl::queueDropped() {
    while (!dropped_.empty()) {
        std::string unread;
        for (const DroppedPlace& place : std::exchange(dropped_, {})) {
            const std::string reason = queuePlace(place);
            if (!reason.empty())
                unread += "\n" + visible(place.path.empty() ? place.address : place.path) + ": " + reason;
        }
        if (unread.empty()) continue;
        const AtWork work(*this);
        form_.window->dialogs.message(MessageKind::kWarning,
                                      form_.services().texts.TL(9696, "Nicht eingelesen:") + "\n" + unread);
    }
}

// Queues a folder, or the folder of a file. Returns why it cannot be read; empty if it can.
std::string SourcesControl::queuePlace(const DroppedPlace& place) {
    const Services& services = form_.services();
    if (place.path.empty()) return services.texts.TL(9697, "kein Ordner dieses Rechners");
    auto& queue = form_.session.state.SourceQueue;
    const auto file = services.fileSystem.look(place.path);
    if (file && (file->isFolder || leadsToFolder(services.fileSystem, place.path)))
        return queue.push_back(place.path), "";
    if (file && isNameOfScan(place.path)) return form_.openedScans.queue(place.path), "";
    if (!file)
        return isNotThere(file.error()) ? services.texts.TL(9698, "gibt es nicht")
                                        : ApiErrorText(true, file.error());
    const std::string folder = place.path.substr(0, place.path.rfind(services.paths.separator) + 1);
    if (std::ranges::find(queue, folder) == queue.end()) queue.push_back(folder);
    droppedFiles_.push_back(place.path);
    return {};
}

// Selects the row of the folder that the last of them lies in, and those of its files in the list of files.
void SourcesControl::selectDroppedFiles() {
    const std::vector<std::string> files = std::exchange(droppedFiles_, {});
    if (files.empty() || form_.closed) return;
    Grid& report = form_.session.tvwPL;
    Grid& list = form_.session.lvwFiles;
    const std::string folder =
        files.back().substr(0, files.back().rfind(form_.services().paths.separator) + 1);
    Row row = firstLiveSource(form_.scan);
    while (row != kNoRow && Report_GetFullpathOfNode(report, row, true, form_.services().paths) != folder)
        row = nextLiveSource(form_.scan, row);
    if (row == kNoRow) return;
    report.selectNone();
    report.setSelected(row, true);
    report.setCurrentRow(row);
    if (form_.session.state.fileList.folder != folder) form_.lists.showFilesOf(folder);
    list.selectNone();
    for (Row file = list.firstRoot(); file != kNoRow; file = list.nextSibling(file)) {
        const std::string path = folder + std::string(list.text(file));
        if (std::ranges::find(files, path) == files.end()) continue;
        list.setSelected(file, true);
        if (path == files.back()) list.setCurrentRow(file);
    }
}

}  // namespace hl
