// The desktop's part of the menus, and the opening of files.
#include "fileops/menus.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "fileops/properties.h"

namespace hl {

namespace {

// The ids of the desktop's part are lower than those of the program's entries.
enum DesktopId { kOpen = 1, kOtherProgram, kShowInFolder, kCopyFiles, kCopyPaths, kProperties };
constexpr int kFirstProgram = 100;
constexpr std::size_t kMostPrograms = 20;

}  // namespace

// --- the desktop's part

std::vector<MenuEntry> Menus::desktopPart(const std::vector<std::string>& paths) {
    programs_ = ops_.window.desktop.programsFor(paths, kMostPrograms);
    std::vector<MenuEntry> with;
    for (const DesktopProgram& program : programs_)
        with.push_back({kFirstProgram + static_cast<int>(with.size()), visible(program.name)});
    if (!with.empty()) with.push_back({});
    with.push_back({kOtherProgram, text(9562, "Anderes Programm ...")});
    std::vector<MenuEntry> part = {{kOpen, text(9560, "Öffnen")},
                                   {0, text(9561, "Öffnen mit"), std::move(with)},
                                   {kShowInFolder, text(9563, "Im Dateimanager zeigen")},
                                   {}};
    std::ranges::move(copyingPart(), std::back_inserter(part));
    part.push_back({});
    part.push_back({kProperties, text(9566, "Eigenschaften")});
    return part;
}

std::vector<MenuEntry> Menus::copyingPart() const {
    return {{kCopyFiles, text(9564, "Kopieren"), {}, "Ctrl+C"}, {kCopyPaths, text(9565, "Pfad kopieren")}};
}

int Menus::show(const std::vector<std::string>& paths, std::vector<MenuEntry> own, Point at) {
    std::vector<MenuEntry> entries = desktopPart(paths);
    if (ops_.host.closed()) return 0;  // Closed while the files were looked at.
    return show(std::move(entries), paths, std::move(own), at);
}

int Menus::showForCopying(const std::vector<std::string>& paths, std::vector<MenuEntry> own, Point at) {
    return show(copyingPart(), paths, std::move(own), at);
}

int Menus::show(std::vector<MenuEntry> entries, const std::vector<std::string>& paths,
                std::vector<MenuEntry> own, Point at) {
    std::move(own.begin(), own.end(), std::back_inserter(entries));
    const int chosen = ops_.window.dialogs.showMenu(entries, at);
    if (chosen >= kFirstOwn) return chosen;
    if (chosen > 0) runDesktopEntry(chosen, paths);
    return 0;
}

void Menus::runDesktopEntry(int id, const std::vector<std::string>& paths) {
    Desktop& desktop = ops_.window.desktop;
    const auto program = static_cast<std::size_t>(id - kFirstProgram);
    if (id >= kFirstProgram && program < programs_.size()) {
        if (!desktop.openWith(programs_[program].id, paths)) cannotBeOpened(paths.front());
        return;
    }
    std::string joined;
    switch (id) {
        case kOpen:
            return openAll(paths);
        case kOtherProgram:
            return openWithOther(paths);
        case kShowInFolder:
            if (!desktop.showInFolder(paths)) cannotBeOpened(paths.front());
            return;
        case kCopyFiles:
            return ops_.window.clipboard.copyFiles(paths);
        case kCopyPaths:
            for (const std::string& path : paths) joined += (joined.empty() ? "" : "\n") + path;
            return ops_.window.clipboard.copyText(joined);
        case kProperties:
            if (!desktop.showProperties(paths) && !ops_.host.closed()) showProperties(ops_, paths);
            return;
        default:
            return;
    }
}

// --- opening

void Menus::openFile(const std::string& path) {
    openOne(path);
}

// Returns false if the user or the desktop refuses.
bool Menus::openOne(const std::string& path) {
    if (!wantsToRun(path)) return false;
    switch (ops_.window.desktop.open(path)) {
        case OpenResult::kStarted:
            return true;
        case OpenResult::kNoProgram:
            return openWithOther({path}), true;
        default:
            return cannotBeOpened(path), false;
    }
}

void Menus::showInFolder(const std::string& path) {
    if (!ops_.window.desktop.showInFolder({path})) cannotBeOpened(path);
}

void Menus::openAll(const std::vector<std::string>& paths) {
    constexpr std::size_t kManyPrograms = 10;
    if (paths.size() > kManyPrograms &&
        !ops_.window.dialogs.message(MessageKind::kQuestion,
                                     ops_.scan.texts.TL(9557, "%1 Dateien öffnen?", {paths.size()})))
        return;
    for (const std::string& path : paths)
        if (!openOne(path)) return;
}

bool Menus::wantsToRun(const std::string& path) {
    if (!ops_.window.desktop.runsWhenOpened(path)) return true;
    if (ops_.host.closed()) return false;
    return ops_.window.dialogs.message(
        MessageKind::kQuestion,
        ops_.scan.texts.TL(9556, "'%1' ist ein Programm oder startet eines. Trotzdem öffnen?",
                           {visible(path)}));
}

void Menus::openWithOther(const std::vector<std::string>& paths) {
    const std::vector<DesktopProgram> all = ops_.window.desktop.allPrograms();
    if (all.empty()) return cannotBeOpened(paths.front());
    std::string caption =
        ops_.scan.texts.TL(9567, "Womit soll '%1' geöffnet werden?", {visible(paths.front())});
    ComboBox cboProgram;
    for (const DesktopProgram& program : all) cboProgram.items.push_back(visible(program.name));
    cboProgram.index = 0;
    CommandButton OKButton{text(3610, "OK")};
    CommandButton CancelButton{text(3609, "Abbrechen")};
    bool loaded = true;
    bool accepted = false;
    Form form;
    form.name = "frmOpenWith";
    form.caption = text(9561, "Öffnen mit");
    form.items = {{.control = &caption, .row = 0}, {.control = &cboProgram, .row = 1, .name = caption}};
    form.buttons = {{.control = &OKButton, .changed = [&] { accepted = !(loaded = false); }},
                    {.control = &CancelButton, .changed = [&] { loaded = false; }}};
    form.cancel = [&] { loaded = false; };
    form.loaded = &loaded;
    ops_.window.dialogs.showForm(form);
    const auto chosen = static_cast<std::size_t>(cboProgram.index);
    if (accepted && chosen < all.size() && !ops_.window.desktop.openWith(all[chosen].id, paths))
        cannotBeOpened(paths.front());
}

void Menus::cannotBeOpened(const std::string& path) {
    if (ops_.host.closed()) return;
    ops_.window.dialogs.message(
        MessageKind::kError,
        ops_.scan.texts.TL(9525, "Die Datei '%1' kann nicht geöffnet werden.", {visible(path)}));
}

}  // namespace hl
