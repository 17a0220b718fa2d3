// The box and its events; the queue.
#include "mainwindow/sources_control.h"

#include <utility>

#include "app/command_line.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "robustness/trap.h"
#include "scan/driver.h"
#include "views/drive_combo.h"

namespace hl {

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
}

// --- the queue

void SourcesControl::queueOwn() {
    const std::vector<std::string> sources = GetFoldersFromCommand(form_.own.commandLine);
    auto& queue = form_.session.state.SourceQueue;
    queue.insert(queue.begin(), sources.begin(), sources.end());
}

void SourcesControl::handOver(const std::string& commandLine) {
    guarded(form_.services().diagnostics, {.routine = "ISubclass_WindowProc"}, [&] {
        form_.window->frame.bringToFront();
        for (std::string& source : GetFoldersFromCommand(commandLine))
            form_.session.state.SourceQueue.push_back(std::move(source));
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
    while (!state.SourceQueue.empty() && !state.ScanActive && !form_.closed) {
        Ordnerliste_Abarbeiten(form_.scan);
        changed();
    }
}

}  // namespace hl
