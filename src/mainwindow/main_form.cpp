#include "mainwindow/main_form.h"

#include "app/language.h"
#include "app/product.h"
#include "mainwindow/pane_table.h"
#include "scan/on_disk.h"
#include "views/cell_text.h"
#include "views/cell_tip.h"

namespace hl {

MainForm::MainForm(const Services& services, const WindowServices& given)
    : session(services), own(given), scan(scanContext(session, run, run)) {
    const Texts& texts = services.texts;
    scan.statistics = &session.statistics;
    scan.largest = &session.largest;
    scan.facts = &session.facts;
    session.state.balance.wanted = services.diskSpace != nullptr;
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const PaneRow& pane = paneRows()[i];
        parts.grids[i] = &(session.*pane.grid);
        parts.gridNames[i] = pane.name;
        parts.gridTitles[i] = texts.TL(pane.title.id, pane.title.german);
    }
    parts.bars = bars.all();
    parts.barEvents = &barControl;
    parts.sourceEvents = &sources;
    parts.splitters = looks.panes().all();
    parts.cellText = [this](GridId id, std::size_t column, Row row) {
        return ColumnText(session.grid(id), column, this->services().numbers).of(row);
    };
    parts.markNote = [&services = this->services()](std::uint32_t folders) {
        const Texts& all = services.texts;
        return folders == 1 ? all.TL(9813, "1 Ordner darunter wurde nicht gelesen.")
                            : all.TL(9814, "%1 Ordner darunter wurden nicht gelesen.",
                                     {formatNumber(folders, {}, services.numbers)});
    };
    parts.cellTip = [this](GridId id, std::size_t column, Row row) {
        return cellTip(session.grid(id), column, row, this->services(),
                       id != GridId::kReport || !isFromFile(scan, row));
    };
    parts.emptyHint = [this](GridId id) { return lists.emptyHint(id); };
    parts.emptyButton = [this](GridId id) { return lists.emptyButton(id); };
    parts.fileIcon = [this](int picture) { return lists.iconName(picture); };
    parts.yes = texts.TL(9500, "Ja");
    parts.no = texts.TL(9501, "Nein");
    parts.ok = texts.TL(3610, "OK");
    parts.cancel = texts.TL(3609, "Abbrechen");
    parts.map = texts.TL(9772, "Karte");
    parts.level = texts.TL(9502, "Ebene");
    parts.more = texts.TL(9508, "Weitere Befehle");
    parts.clear = texts.TL(9509, "Text löschen");
    parts.name = kProductName;
    parts.language = languageOf(texts.languages(), texts.languageId()).code;
    parts.folder = own.programFolder;
    parts.preview.texts = previewTexts(texts);
}

}  // namespace hl
