// The views; what is shown of a run; commands; what the lists ask.
#include "mainwindow/lists_control.h"

#include <algorithm>

#include "mainwindow/list_filling.h"
#include "mainwindow/main_form.h"
#include "output/print_files.h"
#include "output/save_files.h"
#include "scan/left_out.h"
#include "scan/list_handover.h"
#include "views/file_list.h"
#include "views/list_columns.h"

namespace hl {

// --- the views

void ListsControl::makeLists() {
    Session& session = form_.session;
    const Services& services = session.services;
    Init_List(session.lvwFiles, kFilesTable, session.options, services.texts);
    Init_List(session.lvwStatistics, kStatisticsTable, session.options, services.texts);
    Init_List(session.lvwChanges, kChangesTable, session.options, services.texts);
    pictures_ = std::make_unique<FilePictures>(form_.window->fileTypes);
    typeNames_ = std::make_unique<TypeNames>(form_.window->fileTypes, services.files, services.texts);
    form_.scan.types = typeNames_.get();
    const ListParts parts{form_.scan, session.options, *form_.window, *this, *pictures_, columnDragGuard_};
    lists_.reset(new ListViews{{parts, session.lvwFiles, form_.bars.cbrFiles},
                               {parts, session.lvwTOP, form_.bars.cbrTOP},
                               {parts, session.lvwHardlinks, form_.bars.cbrHardlinks},
                               {parts, session.lvwJunctions, form_.bars.cbrJunctions},
                               {parts, session.lvwFind, form_.bars.cbrFind},
                               {parts, session.lvwStatistics, form_.bars.cbrStatistics},
                               {parts, session.lvwChanges, form_.bars.cbrChanges}});
    for (const GridId id : kListGrids) form_.window->grid(id).setEvents(lists_->of(id));
}

ListView* ListsControl::shown() {
    const Panes& panes = form_.looks.panes();
    return panes.listShows() ? lists_->of(panes.list()) : nullptr;
}

bool ListsControl::isOff(GridId id) const {
    const Options& options = form_.session.options;
    return (id == GridId::kTop && options.CreateListTOP == 0) ||
           (id == GridId::kHardlinks && options.CreateListHardlink == 0) ||
           (id == GridId::kJunctions && options.CreateListJunction == 0);
}

bool ListsControl::isFilledNow(GridId id) const {
    return std::ranges::find(filledNow_, id) != filledNow_.end();
}

std::string ListsControl::emptyHint(GridId id) const {
    const Texts& texts = form_.services().texts;
    const std::string start = texts.TL(3531, "Start");
    if (id == GridId::kFiles)
        return lists_ && lists_->files.foundNone()
                   ? texts.TL(9753, "Direkt in diesem Ordner liegen keine Dateien.")
                   : std::string();
    if (id == GridId::kStatistics) return statisticsHint();
    if (id == GridId::kChanges) return changesHint();
    if (id == GridId::kFind && !form_.find.hasSearched())
        return texts.TL(9963, "Geben Sie oben einen Filter ein, und drücken Sie die Eingabetaste.");
    if (isFilledNow(id) || id == GridId::kFind) return texts.TL(9754, "Dafür wurde nichts gefunden.");
    if (!isOff(id)) return {};
    return texts.TL(9298,
                    "Diese Liste ist ausgeschaltet. Schalten Sie sie in der Liste unter \"%1\" ein, und "
                    "lesen Sie die Quelle neu ein.",
                    {start});
}

std::string ListsControl::statisticsHint() const {
    const Texts& texts = form_.services().texts;
    if (!lists_ || form_.session.tvwPL.rowCount() == 0) return {};
    if (!lists_->statistics.isNotKept()) return texts.TL(9745, "In diesem Ordner liegen keine Dateien.");
    return texts.TL(9744,
                    "Für diese Quelle gibt es keine Statistik. Schalten Sie sie in der Liste unter \"%1\" "
                    "ein, und lesen Sie die Quelle neu ein.",
                    {texts.TL(3531, "Start")});
}

std::string ListsControl::changesHint() const {
    const Texts& texts = form_.services().texts;
    if (lists_ && lists_->changes.isFilled()) return texts.TL(9078, "Kein Ordner hat sich verändert.");
    return texts.TL(9076, "Vergleichen Sie eine Quelle mit einem früheren Scan (Ctrl+K).");
}

std::string ListsControl::emptyButton(GridId id) const {
    const bool fills = isOff(id) && !isFilledNow(id) && form_.session.tvwPL.rowCount() > 0 &&
                       !form_.session.state.ScanActive;
    return fills ? form_.services().texts.TL(9752, "Jetzt füllen") : std::string();
}

std::string ListsControl::iconName(int picture) const {
    return pictures_ ? pictures_->iconName(picture) : std::string();
}

// --- what is shown of a run

void ListsControl::filled() {
    filledNow_.clear();
    for (const GridId id : {GridId::kTop, GridId::kHardlinks, GridId::kJunctions}) {
        lists_->of(id)->rowsChanged();
        form_.window->grid(id).refresh();
    }
    showTitles();
    followReport();
}

void ListsControl::foundFiles() {
    lists_->find.rowsChanged();
    form_.window->grid(GridId::kFind).refresh();
    showTitles();
}

void ListsControl::showTitles() {
    const Texts& texts = form_.services().texts;
    const auto show = [&](CommandBar& bar, Command label, const std::string& title) {
        if (title.empty()) return;
        bar.setCaption(idOf(label), markedTitle(titleWithLeftOut(form_.services(), title,
                                                                 form_.session.state.leaving.ofLists)));
    };
    show(form_.bars.cbrTOP, Command::kTopTitle, topTitle(form_.scan));
    show(form_.bars.cbrHardlinks, Command::kHardlinksTitle, texts.TL(3740, "Hardlinks"));
    show(form_.bars.cbrJunctions, Command::kJunctionsTitle, texts.TL(3742, "Junctions"));
    if (form_.find.hasSearched())
        form_.bars.cbrFind.setCaption(idOf(Command::kFindTitle), form_.find.title());
}

std::string ListsControl::markedTitle(const std::string& title) const {
    if (!form_.session.state.ListsIncomplete) return title;
    return form_.services().texts.TL(9815, "Unvollständig: %1", {title});
}

void ListsControl::showFilesOf(const std::string& folder) {
    lists_->files.List_Files_ScanFolder(folder, !form_.session.state.ScanActive);
    followReport();
}

void ListsControl::followReport() {
    if (!lists_ || !listShows(GridId::kStatistics)) return;
    lists_->statistics.follow();
    form_.bars.cbrStatistics.setCaption(idOf(Command::kStatisticsTitle), lists_->statistics.title());
    if (!form_.session.state.ScanActive) form_.barControl.followGrid(GridId::kStatistics);
}

// --- commands

void ListsControl::save(ListView& list) {
    if (form_.run.tellIncomplete()) return;
    Save_Files(form_.services(), list.grid(), form_.files, *form_.window);
}

void ListsControl::print(GridId id) {
    if (form_.session.state.ScanActive) return;  // The scan would wait for the preview.
    Print_Files(form_.services(), printedTitle(id), form_.session.grid(id), id, *form_.window);
}

std::string ListsControl::printedTitle(GridId id) const {
    const std::string& title = form_.parts.gridTitles[static_cast<std::size_t>(id)];
    switch (id) {
        case GridId::kTop:
        case GridId::kHardlinks:
        case GridId::kJunctions:
            return markedTitle(title);
        case GridId::kFind:
            return form_.find.title();
        case GridId::kStatistics:
            return lists_->statistics.title();
        case GridId::kChanges:
            return lists_->changes.title();
        default:
            return title;
    }
}

// --- ListHost

bool ListsControl::listShows(GridId list) {
    const Panes& panes = form_.looks.panes();
    return !form_.closed && panes.listShows() && panes.list() == list;
}

void ListsControl::setSecondPanel(const std::string& text) {
    form_.status.setSecond(text);
}

void ListsControl::showPreview(GridId /*list*/, bool force) {
    form_.preview.Preview_ShowFile(force);
}

void ListsControl::openFile(const std::string& path) {
    form_.files.openFile(path);
}

void ListsControl::deleteFiles(GridId list, bool forGood) {
    form_.files.deleteFiles(list, forGood);
}

void ListsControl::ShellContextMenuFileList(GridId list, Point at) {
    form_.files.openListMenu(list, at);
}

void ListsControl::openColumnsMenu(GridId list, Point at) {
    form_.barControl.openColumnsMenu(barOf(list), at);
}

void ListsControl::copyPaths(const std::vector<std::string>& paths) {
    form_.window->clipboard.copyFiles(paths);
}

void ListsControl::fillNow(GridId list) {
    if (form_.session.state.ScanActive || !isOff(list)) return;
    form_.sources.duringCommand([&] {
        const bool whole = ListFilling(form_).fill(list);
        if (form_.closed) return;
        filled();
        if (whole) filledNow_ = {list};
        if (ListView* view = shown()) view->ShowFileStat();
    });
}

void ListsControl::findFiles(const std::string& filter) {
    form_.sources.duringCommand([&] { form_.find.startWith(filter); });
}

void ListsControl::showInReport(const std::string& folder, bool opensReport) {
    form_.sources.duringCommand([&] {
        // The folder may be in several sources; the changes are those of one.
        if (const Row row = form_.comparison.rowOf(folder); row != kNoRow)
            return form_.report.goToRow(row, opensReport);
        if (opensReport) return form_.report.goTo(folder);
        if (!form_.bars.cbrMain.isChecked(idOf(Command::kShowReport))) return;
        if (!form_.report.view().goTo(folder))
            form_.status.setFirst(
                form_.services().texts.TL(9751, "'%1' steht nicht in der Ordnerliste.", {folder}));
    });
}

void ListsControl::listFilled(GridId list) {
    if (!form_.session.state.ScanActive) form_.barControl.followGrid(list);
}

void ListsControl::nameEdited(GridId list, Row row, const std::string& name) {
    form_.files.renameFile(*lists_->of(list), row, name);
}

}  // namespace hl
