#include "mainwindow/command_table.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/size_unit.h"
#include "mainwindow/commands.h"
#include "scan/file_columns.h"
#include "views/changes_list.h"
#include "views/drive_list.h"
#include "views/report_columns.h"
#include "views/statistics_list.h"

namespace hl {

namespace {

namespace C = commands;
using enum Command;

constexpr auto kButton = EntryKind::kButton;
constexpr auto kSplitButton = EntryKind::kSplitButton;
constexpr auto kMenuButton = EntryKind::kMenuButton;
constexpr auto kEdit = EntryKind::kEdit;
constexpr auto kCustom = EntryKind::kCustom;
constexpr auto kLabel = EntryKind::kLabel;
constexpr auto kCheckBox = EntryKind::kCheckBox;
constexpr auto kGroup = Group::kBegins;
constexpr auto kSame = Group::kGoesOn;

template <auto Member>
constexpr KeptOption toggles = {KeptOption::Use::kToggles, {Member}};
template <auto Member>
constexpr KeptOption byRoutine = {KeptOption::Use::kByRoutine, {Member}};

/// Joins several parts into one table.
template <std::size_t... N>
constexpr auto joined(const std::array<CommandRow, N>&... parts) {
    std::array<CommandRow, (N + ...)> all{};
    auto end = all.begin();
    ((end = std::copy(parts.begin(), parts.end(), end)), ...);
    return all;
}
template <std::size_t N>
constexpr auto rows(const CommandRow (&part)[N]) {
    return std::to_array(part);
}

constexpr CommandRow withRows(CommandRow row) {
    row.needs = Needs::kRows;
    return row;
}
constexpr CommandRow withSelection(CommandRow row) {
    row.needs = Needs::kSelection;
    return row;
}
constexpr CommandRow onDisk(CommandRow row) {
    row.needs = Needs::kOnDisk;
    return row;
}
constexpr CommandRow ranked(Rank rank, CommandRow row) {
    row.rank = rank;
    return row;
}

// Texts that several bars share.
constexpr RowText kRefresh = TL(9230, "Aktualisieren");
constexpr RowText kFullView = TL(9232, "Vollansicht");
constexpr RowText kHideOtherLists = TL(9234, "Alle anderen Liste ausblenden");
constexpr RowText kFit = TL(9250, "Optimieren");
constexpr RowText kFitColumns = TL(9251, "Spaltenbreite optimieren");
constexpr RowText kFont = TL(3768, "Schriftart");
constexpr RowText kChooseFont = TL(9223, "Schriftart festlegen");
constexpr RowText kSave = TL(3612, "Speichern");
constexpr RowText kSaveList = TL(9281, "Liste in eine Textdatei speichern");
constexpr RowText kPrint = TL(3619, "Drucken");
constexpr RowText kPrintList = TL(9282, "Liste drucken");
constexpr RowText kDecimals = TL(9255, "Dezimal");
constexpr RowText kShowDecimals = TL(9256, "Nachkommastellen anzeigen");
constexpr RowText kSearch = TL(9257, "Suchen");
constexpr RowText kStartSearch = TL(9258, "Suche starten");
constexpr RowText kDelete = TL(9271, "Löschen");
constexpr RowText kDeleteFiles = TL(9272, "Ausgewählte Datei(en) löschen");
constexpr RowText kRecycle = TL(9273, "Papierkorb");
constexpr RowText kRecycleFiles = TL(9274, "Ausgewählte Datei(en) in den Papierkorb verschieben");
constexpr RowText kSymbols = TL(9275, "Symbole");
constexpr RowText kShowSymbols = TL(9276, "Dateisymbole anzeigen");
constexpr RowText kPreview = TL(9277, "Vorschau");
constexpr RowText kShowPreview = TL(9278, "Dateivorschau einblenden");
constexpr RowText kBalance = TL(9865, "Bilanz");
constexpr RowText kShowBalance = TL(9866, "Woraus sich zusammensetzt, was das Dateisystem als belegt angibt");
constexpr RowText kSplit = TL(9279, "Teilung");
constexpr RowText kTurnSplit = TL(9280, "Fensterteilung umschalten");

/// In the bars of what can be deleted, with ids from 540 on.
constexpr CommandRow comesBack(BarId bar) {
    constexpr int kComesBackId = 540;
    return {.command = commandOf(bar, kComesBackId),
            .kind = kButton,
            .caption = TL(9830, "Was kommt zurück?"),
            .tooltip = TL(9831, "Was zurückkommt, wenn das Ausgewählte für immer gelöscht wird"),
            .icon = kIconOnDisk,
            .key = bar == BarId::kMain ? "" : "Shift+B",
            .run = &C::comesBack,
            .parent = bar == BarId::kMain ? kMenuOfSelectedFolders : kNone,
            .needs = bar == BarId::kMain     ? Needs::kNothing
                     : bar == BarId::kReport ? Needs::kOnDisk
                                             : Needs::kSelection,
            .rank = kGoesEarly};
}

constexpr CommandRow unfold(int levels) {
    const RowText name =
        levels == 1 ? TL(9239, "1 Ordnerebene aufklappen") : TL(9240, "%1 Ordnerebenen aufklappen");
    const Command command = kReportUnfold1 + (levels - 1);
    return withRows(
        {command, kButton, name, {}, -1, kSame, {}, &C::reportUnfold, {}, kReportUnfoldAll, levels});
}

constexpr std::size_t kChosenUnits = static_cast<std::size_t>(
    std::ranges::count_if(kSizeUnits, [](const SizeUnit& unit) { return unit.caption.id != 0; }));

/// The entries for the units of a list's sizes, and for their decimals. The first four have ids one after the
/// other; for others there is room from 400 up.
constexpr auto units(Command bytes, Command decimals, const ListTable& list) {
    constexpr std::array kIcons = {kIconBytes, kIconKilobytes, kIconMegabytes, kIconGigabytes, kIconAutoUnit};
    constexpr int kFirstUnits = 4, kFirstFurtherId = 400;
    static_assert(kIcons.size() == kChosenUnits);
    std::array<CommandRow, kChosenUnits + 1> all{};
    std::size_t filled = 0;
    for (std::size_t mode = 0; mode < kSizeUnits.size(); ++mode) {
        const RowText name = kSizeUnits[mode].caption;
        if (name.id == 0) continue;
        const int n = static_cast<int>(filled);
        const RowText tooltip = kSizeUnits[mode].tooltip;
        const bool further = n >= kFirstUnits;
        all[filled] = {.command = further ? commandOf(barOf(bytes), kFirstFurtherId + n) : bytes + n,
                       .kind = kButton,
                       .caption = name,
                       .tooltip = tooltip.id != 0 ? tooltip : name,
                       .icon = kIcons[filled],
                       .group = filled == 0 ? kGroup : kSame,
                       .run = &C::showSizes,
                       .kept = {KeptOption::Use::kChooses, {list.sizeMode}},
                       .value = static_cast<int>(mode),
                       .rank = kGoesEarly};
        ++filled;
    }
    all[filled] = {.command = decimals,
                   .kind = kButton,
                   .caption = kDecimals,
                   .tooltip = kShowDecimals,
                   .icon = kIconDecimals,
                   .run = &C::showSizes,
                   .kept = {KeptOption::Use::kDecimals, {list.decimals}},
                   .rank = kGoesEarly};
    return all;
}

/// The search box, and the button behind it.
constexpr auto search(Command text, Command button, void (*run)(MainForm&, const CommandRow&)) {
    return rows({
        ranked(kStaysLongest, {text, kEdit, kSearch, {}, -1, kGroup, {}, run}),
        ranked(kStaysLongest, {button, kButton, kStartSearch, {}, kIconSearch, kSame, "F", run}),
    });
}

/// The entries that show and hide the columns of a list.
template <const ListTable& List>
constexpr auto columns(void (*run)(MainForm&, const CommandRow&)) {
    constexpr auto kCount =
        List.columns.size() - std::ranges::count(List.columns, kNone, &ListColumn::command);
    std::array<CommandRow, kCount> all{};
    std::size_t filled = 0;
    for (std::size_t i = 0; i < List.columns.size(); ++i) {
        const ListColumn& column = List.columns[i];
        if (column.command == kNone) continue;
        all[filled] = {.command = column.command,
                       .kind = kButton,
                       .caption = column.button,
                       .tooltip = column.tooltip,
                       .icon = column.icon,
                       .group = filled == 0 ? kGroup : kSame,
                       .run = run,
                       .kept = {KeptOption::Use::kToggles, column.shown},
                       .value = static_cast<int>(i),
                       .rank = kGoesFirst};
        ++filled;
    }
    return all;
}

// clang-format off
constexpr auto kMainRows = rows({
    {kSourceBox, kCustom, {}, TL(9228, "Einzulesende Quelle")},
    ranked(kStaysLongest, {kNewSource, kButton, TL(3529, "Neu"), TL(9210, "Neue Quelle auswählen"), kIconNew, kSame, "N", &C::newSource}),
    ranked(kStaysLongest, {kStart, kSplitButton, TL(3531, "Start"), TL(9211, "Quelle einlesen"), kIconStart, kSame, "R", &C::start}),
    {kCreateListTop, kCheckBox, TL(3754, "Liste mit den größten Dateien erstellen (langsamer)"), {}, -1, kSame, {}, &C::scanOption, toggles<&Options::CreateListTOP>, kStart},
    {kCreateListHardlinks, kCheckBox, TL(3755, "Liste mit Hardlinks erstellen (langsamer)"), {}, -1, kSame, {}, &C::scanOption, toggles<&Options::CreateListHardlink>, kStart},
    {kCreateListJunctions, kCheckBox, TL(3756, "Liste mit Junctions erstellen (langsamer)"), {}, -1, kSame, {}, &C::scanOption, toggles<&Options::CreateListJunction>, kStart},
    {kCreateStatistics, kCheckBox, TL(9709, "Statistik nach Art, Alter und Eigentümer erstellen"), {}, -1, kSame, {}, &C::scanOption, toggles<&Options::CreateStatistics>, kStart},
    {kCountHardlinksOnce, kCheckBox, TL(3770, "Dateigröße von Hardlinks nur einmal zählen (langsamer)"), {}, -1, kGroup, {}, &C::scanOption, toggles<&Options::AddHardlinksOnlyOnce>, kStart},
    {kFollowLinks, kCheckBox, TL(3779, "NTFS-Abzweigungspunkte und symbolische Verknüpfungen einlesen"), {}, -1, kGroup, {}, &C::scanOption, toggles<&Options::ScanHardlinks>, kStart},
    {kHideLinks, kCheckBox, TL(3590, "Keine Junctions in der Ordnerliste anzeigen"), {}, -1, kSame, {}, &C::scanOption, toggles<&Options::NoHardlinks>, kStart},
    {kColorFade, kCheckBox, TL(3621, "Ordnerebenen farblich voneinander abgrenzen"), {}, -1, kGroup, {}, &C::scanOption, toggles<&Options::FolderColorFade>, kStart},
    {kPercentBar, kCheckBox, TL(3772, "Prozentbalken vor dem Ordnernamen anzeigen"), {}, -1, kSame, {}, &C::scanOption, toggles<&Options::FolderShowPercentBar>, kStart},
    ranked(kStaysLongest, {kStop, kButton, TL(3533, "Stop"), TL(9212, "Einlesen beenden"), kIconStop, kSame, "T", &C::stop}),
    {kShowReport, kButton, TL(3641, "Ordnerliste"), TL(9213, "Ordnerliste anzeigen"), kIconReport, kGroup, "1", &C::showPanel},
    {kShowDrives, kButton, TL(3643, "Laufwerksliste"), TL(9214, "Laufwerksliste anzeigen"), kIconDrives, kSame, "2", &C::showPanel, byRoutine<&Options::DiskinfoVisible>},
    {kShowFiles, kButton, TL(3645, "Dateiliste"), TL(9215, "Dateiliste anzeigen"), kIconFiles, kGroup, "3", &C::showPanel, byRoutine<&Options::FilelistVisible>},
    {kShowTop, kButton, TL(3724, "Größte Dateien"), TL(9216, "Liste mit den größten Dateien anzeigen"), kIconTop, kSame, "4", &C::showPanel, byRoutine<&Options::ToplistVisible>},
    {kShowHardlinks, kButton, TL(3740, "Hardlinks"), TL(9217, "Liste mit Hardlinks anzeigen"), kIconHardlinks, kSame, "5", &C::showPanel, byRoutine<&Options::HardlinksVisible>},
    {kShowJunctions, kButton, TL(3742, "Junctions"), TL(9218, "Liste mit Junctions anzeigen"), kIconJunctions, kSame, "6", &C::showPanel, byRoutine<&Options::JunctionsVisible>},
    {kShowFind, kButton, TL(9945, "Finden"), TL(9946, "Dateien nach Name, Größe, Alter, Art oder Eigentümer finden"), kIconFind, kSame, "7", &C::showPanel, byRoutine<&Options::FindVisible>},
    {kShowStatistics, kButton, TL(9700, "Statistik"), TL(9701, "Statistik nach Art, Alter und Eigentümer anzeigen"), kIconStatistics, kSame, "8", &C::showPanel, byRoutine<&Options::StatisticsVisible>},
    {kShowChanges, kButton, TL(9061, "Veränderungen"), TL(9062, "Ordner anzeigen, die seit einem früheren Scan gewachsen oder geschrumpft sind"), kIconChanges, kSame, "9", &C::showPanel, byRoutine<&Options::ChangesVisible>},
    {kShowMap, kButton, TL(9772, "Karte"), TL(9773, "Karte der Ordner anzeigen"), kIconMap, kGroup, "F9", &C::showMap, toggles<&Options::MapVisible>},
    {kTakeBack, kButton, TL(9794, "Zurückholen"), TL(9808, "Zurückholen, was zuletzt in den Papierkorb kam"), kIconTakeBack, kGroup, "Z", &C::takeBack},
    {kOptions, kButton, TL(3547, "Optionen"), TL(3547, "Optionen"), kIconOptions, kGroup, "O", &C::showOptions},
    ranked(kGoesEarly, {kLargeIcons, kButton, TL(3627, "Symbolgröße"), TL(9219, "Symbole vergrößern"), kIconIconSize, kGroup, {}, &C::largeIcons, toggles<&Options::BigIcons>}),
    ranked(kGoesEarly, {kIconText, kButton, TL(3690, "Symboltext"), TL(9220, "Symboltext anzeigen"), kIconIconText, kSame, {}, &C::iconText, toggles<&Options::SymbolText>}),
    ranked(kGoesEarly, {kLargerFont, kButton, TL(3672, "Größer"), TL(9221, "Schrift vergrößern"), kIconLarger, kGroup, {}, &C::changeFontSize, {}, {}, 1}),
    ranked(kGoesEarly, {kSmallerFont, kButton, TL(3650, "Kleiner"), TL(9222, "Schrift verkleinern"), kIconSmaller, kSame, {}, &C::changeFontSize, {}, {}, -1}),
    ranked(kGoesEarly, {kFontOfAll, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFontOfAll}),
    ranked(kGoesEarly, {kLanguages, kMenuButton, TL(9224, "Sprache"), TL(9225, "Sprache der Benutzeroberfläche ändern"), kIconLanguage, kGroup}),
    ranked(kGoesEarly, {kLog, kButton, TL(3549, "Protokoll"), TL(3549, "Protokoll"), kIconLog, kGroup, "L", &C::showLog}),
    {kGuide, kButton, TL(9757, "Anleitung"), TL(9758, "Anleitung öffnen"), kIconGuide, kGroup, "F1", &C::openGuide},
    {kInfo, kButton, TL(3551, "Info"), TL(3551, "Info"), kIconInfo, kSame, {}, &C::showAbout},
    {kHomepage, kButton, TL(3553, "Homepage"), TL(3553, "Homepage"), kIconHomepage, kSame, {}, &C::openHomepage},
    {kQuit, kButton, TL(3557, "Beenden"), TL(9226, "Programm beenden"), kIconQuit, kGroup, "Q", &C::quit},
    {kDeleteFolders, kButton, TL(3780, "Markierte Ordner löschen"), {}, kIconDelete, kSame, {}, &C::deleteFolders, {}, kMenuOfSelectedFolders},
    {kRecycleFolders, kButton, TL(3781, "Markierte Ordner in den Papierkorb verschieben"), {}, kIconRecycle, kGroup, {}, &C::recycleFolders, {}, kMenuOfSelectedFolders},
    comesBack(BarId::kMain),
    {kShowNotRead, kButton, TL(9809, "Nicht gelesene Ordner"), {}, kIconAccessError, kSame, {}, &C::showNotRead, {}, kMenuOfStatus},
});

constexpr auto kReportRows = joined(rows({
    ranked(kStaysLongest, {kReportTitle, kLabel, TL(3625, "Ordner")}),
    onDisk({kReportRescan, kButton, kRefresh, TL(9231, "Ausgewählter Ordner neu einlesen"), kIconRefresh, kGroup, "F5", &C::reportRescan}),
    {kReportFullView, kButton, kFullView, TL(9233, "Alle anderen Listen ausblenden"), kIconFullView, kGroup, "F11", &C::fullView},
    withRows({kReportFoldAll, kButton, TL(9235, "Zuklappen"), TL(9236, "Alle Ordner zuklappen"), kIconCollapse, kGroup, "F7", &C::reportFoldAll}),
    withRows({kReportUnfoldAll, kSplitButton, TL(9237, "Aufklappen"), TL(9238, "Alle Ordner aufklappen"), kIconExpand, kSame, "F8", &C::reportUnfoldAll}),
    unfold(1), unfold(2), unfold(3), unfold(4), unfold(5), unfold(6), unfold(7), unfold(8), unfold(9), unfold(10),
    withSelection({kReportRemove, kButton, TL(9241, "Entfernen"), TL(9242, "Ausgewählte Quelle entfernen"), kIconRemove, kGroup, {}, &C::reportRemove}),
    withRows({kReportRemoveAll, kButton, TL(9243, "Alle entfernen"), TL(9244, "Alle Quellen entfernen"), kIconRemoveAll, kSame, {}, &C::reportRemoveAll}),
    comesBack(BarId::kReport),
    withRows({kReportSave, kButton, kSave, TL(9245, "Ordnerliste in eine Textdatei speichern"), kIconSave, kGroup, "S", &C::reportSave}),
    withRows({kReportSaveScan, kButton, TL(9054, "Scan speichern"), TL(9055, "Quelle als gespeicherten Scan (.hlscan) sichern"), kIconSave, kSame, "Shift+S", &C::reportSaveScan}),
    {kReportOpenScan, kButton, TL(9057, "Scan öffnen"), TL(9058, "Gespeicherten Scan, JSON von ncdu oder Liste von find als Quelle öffnen"), kIconNew, kSame, "Shift+O", &C::reportOpenScan},
    withRows({kReportCompare, kSplitButton, TL(9086, "Vergleichen"), TL(9087, "Quelle mit einem gespeicherten Scan vergleichen, oder den Vergleich beenden"), kIconCompare, kSame, "K", &C::reportCompare}),
    withRows({kReportCompareFile, kButton, TL(9121, "Mit einem gespeicherten Scan..."), {}, -1, kSame, {}, &C::reportCompareFile, {}, kReportCompare}),
    withRows({kReportPrint, kButton, kPrint, TL(9246, "Ordnerliste drucken"), kIconPrint, kGroup, "P", &C::reportPrint}),
}), columns<kReportTable>(&C::reportColumn), rows({
    ranked(kGoesFirst, {kReckonOnDisk, kButton, TL(9826, "Nach Platz auf dem Datenträger rechnen"), TL(9827, "Prozente, Balken und Reihenfolge nach dem Platz auf dem Datenträger"), kIconReckonOnDisk, kSame, "D", &C::reckonOnDisk, toggles<&Options::ReckonOnDisk>}),
    onDisk({commandOf(BarId::kReport, 510), kButton, kBalance, kShowBalance, kIconBalance, kSame, "B", &C::reportBalance}),
    ranked(kGoesFirst, {kReportFit, kButton, kFit, kFitColumns, kIconFit, kSame, {}, &C::reportFit}),
    ranked(kGoesFirst, {kReportFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
}), units(kReportBytes, kReportDecimals, kReportTable),
    search(kReportSearchText, kReportSearch, &C::reportSearch));

constexpr auto kDrivesRows = joined(rows({
    ranked(kStaysLongest, {kDrivesTitle, kLabel, TL(9260, "Laufwerke")}),
    {kDrivesRefresh, kButton, kRefresh, TL(9261, "Laufwerksliste neu einlesen"), kIconRefresh, kGroup, {}, &C::drivesRefresh},
    withSelection({kDrivesRead, kButton, TL(9262, "Einlesen"), TL(9263, "Ausgewähltes Laufwerk einlesen"), kIconRead, kGroup, {}, &C::drivesRead}),
    withRows({kDrivesReadAll, kButton, TL(9264, "Alle einlesen"), TL(9265, "Alle Laufwerke einlesen"), kIconReadAll, kSame, {}, &C::drivesReadAll}),
    withSelection({commandOf(BarId::kDrives, 500), kButton, kBalance, kShowBalance, kIconBalance, kGroup, {}, &C::drivesBalance}),
    {kDrivesAdd, kButton, TL(9266, "Hinzufügen"), TL(9267, "UNC-Pfad hinzufügen"), kIconAdd, kGroup, {}, &C::drivesAdd},
    ranked(kGoesFirst, {kDrivesFont, kButton, kFont, kChooseFont, kIconFont, kGroup, {}, &C::changeFont}),
}), units(kDrivesBytes, kDrivesDecimals, kDrivesTable));

constexpr auto kFilesRows = joined(rows({
    ranked(kStaysLongest, {kFilesTitle, kLabel, TL(3514, "Dateien")}),
    {kFilesRefresh, kButton, kRefresh, TL(9270, "Dateiliste neu einlesen"), kIconRefresh, kGroup, {}, &C::listOwnCommand},
    withSelection({kFilesDelete, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup, {}, &C::listDelete}),
    withSelection({kFilesRecycle, kButton, kRecycle, kRecycleFiles, kIconRecycle, kSame, {}, &C::listRecycle}),
    comesBack(BarId::kFiles),
    {kFilesIcons, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup, {}, &C::listIcons, toggles<&Options::ShowIcons>},
    {kFilesFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    {kFilesPreview, kButton, kPreview, kShowPreview, kIconPreview, kSame, {}, &C::listPreview, toggles<&Options::FilePreview>},
    {kFilesSplit, kButton, kSplit, kTurnSplit, kIconSplit, kSame, {}, &C::listSplit, toggles<&Options::FilelistTile>},
    ranked(kGoesFirst, {kFilesFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kFilesFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kFilesSave, kButton, kSave, kSaveList, kIconSave, kGroup, {}, &C::listSave}),
    withRows({kFilesPrint, kButton, kPrint, kPrintList, kIconPrint, kGroup, {}, &C::listPrint}),
}), units(kFilesBytes, kFilesDecimals, kFilesTable), columns<kFilesTable>(&C::listColumn), search(kFilesSearchText, kFilesSearch, &C::listSearch));

constexpr int kCountWidth = 50;

constexpr auto kTopRows = joined(rows({
    ranked(kStaysLongest, {kTopTitle, kLabel, TL(9293, "Größten Dateien")}),
    {kTopCount, kEdit, {}, TL(9297, "Anzahl der Dateien in der Liste"), -1, kGroup, {}, nullptr, {}, {}, 0, kCountWidth},
    withSelection({kTopDelete, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup, {}, &C::listDelete}),
    withSelection({kTopRecycle, kButton, kRecycle, kRecycleFiles, kIconRecycle, kSame, {}, &C::listRecycle}),
    comesBack(BarId::kTop),
    {kTopIcons, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup, {}, &C::listIcons, toggles<&Options::ShowIconsTop>},
    {kTopFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    {kTopPreview, kButton, kPreview, kShowPreview, kIconPreview, kSame, {}, &C::listPreview, toggles<&Options::FilePreviewTOP>},
    {kTopSplit, kButton, kSplit, kTurnSplit, kIconSplit, kSame, {}, &C::listSplit, toggles<&Options::FilelistTileTOP>},
    ranked(kGoesFirst, {kTopFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kTopFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kTopSave, kButton, kSave, TL(9294, "Dateiliste in eine Textdatei speichern"), kIconSave, kGroup, {}, &C::listSave}),
    withRows({kTopPrint, kButton, kPrint, TL(9295, "Dateiliste drucken"), kIconPrint, kGroup, {}, &C::listPrint}),
}), units(kTopBytes, kTopDecimals, kTopTable), columns<kTopTable>(&C::listColumn), search(kTopSearchText, kTopSearch, &C::listSearch));

constexpr auto kHardlinksRows = joined(rows({
    ranked(kStaysLongest, {kHardlinksTitle, kLabel, TL(3740, "Hardlinks")}),
    withRows({kHardlinksAnalyze, kButton, TL(9300, "Analysieren"), TL(9301, "Hardlinks sortieren und farblich abgrenzen"), kIconAnalyze, kGroup, {}, &C::listOwnCommand}),
    withSelection({kHardlinksDelete, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup, {}, &C::listDelete}),
    withSelection({kHardlinksRecycle, kButton, kRecycle, kRecycleFiles, kIconRecycle, kSame, {}, &C::listRecycle}),
    comesBack(BarId::kHardlinks),
    {kHardlinksIcons, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup, {}, &C::listIcons, toggles<&Options::ShowIconsHardlinks>},
    {kHardlinksFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    {kHardlinksPreview, kButton, kPreview, kShowPreview, kIconPreview, kSame, {}, &C::listPreview, toggles<&Options::HardlinkPreview>},
    {kHardlinksSplit, kButton, kSplit, kTurnSplit, kIconSplit, kSame, {}, &C::listSplit, toggles<&Options::HardlinksTile>},
    ranked(kGoesFirst, {kHardlinksFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kHardlinksFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kHardlinksSave, kButton, kSave, kSaveList, kIconSave, kGroup, {}, &C::listSave}),
    withRows({kHardlinksPrint, kButton, kPrint, kPrintList, kIconPrint, kGroup, {}, &C::listPrint}),
}), units(kHardlinksBytes, kHardlinksDecimals, kHardlinksTable), columns<kHardlinksTable>(&C::listColumn), search(kHardlinksSearchText, kHardlinksSearch, &C::listSearch));

constexpr auto kJunctionsRows = joined(rows({
    ranked(kStaysLongest, {kJunctionsTitle, kLabel, TL(3742, "Junctions")}),
    {kJunctionsFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    ranked(kGoesFirst, {kJunctionsFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kJunctionsFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kJunctionsSave, kButton, kSave, kSaveList, kIconSave, kGroup, {}, &C::listSave}),
    withRows({kJunctionsPrint, kButton, kPrint, kPrintList, kIconPrint, kGroup, {}, &C::listPrint}),
}), search(kJunctionsSearchText, kJunctionsSearch, &C::listSearch));

constexpr int kFilterWidth = 220;

constexpr auto kFindRows = joined(rows({
    ranked(kStaysLongest, {kFindTitle, kLabel, TL(9945, "Finden")}),
    ranked(kStaysLongest, {kFindFilter, kEdit, TL(9949, "Filter"), TL(9947, "Filter, zum Beispiel size>1G age>1y name=*.iso"), -1, kGroup, {}, &C::findStart, {}, {}, 0, kFilterWidth}),
    ranked(kStaysLongest, {kFindStart, kButton, TL(9945, "Finden"), TL(9946, "Dateien nach Name, Größe, Alter, Art oder Eigentümer finden"), kIconFind, kSame, {}, &C::findStart}),
    {kFindForm, kButton, TL(9949, "Filter"), TL(9950, "Filter in einem Formular bearbeiten"), kIconFilter, kSame, {}, &C::findForm},
    {kFindAllSources, kButton, TL(9951, "Alle Quellen"), TL(9952, "In allen Quellen suchen, nicht nur unter der ausgewählten Zeile"), kIconAllSources, kSame, {}, nullptr, toggles<&Options::FindAllSources>},
    withSelection({kFindDelete, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup, {}, &C::listDelete}),
    withSelection({kFindRecycle, kButton, kRecycle, kRecycleFiles, kIconRecycle, kSame, {}, &C::listRecycle}),
    comesBack(BarId::kFind),
    {kFindIcons, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup, {}, &C::listIcons, toggles<&Options::ShowIconsFind>},
    {kFindFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    {kFindPreview, kButton, kPreview, kShowPreview, kIconPreview, kSame, {}, &C::listPreview, toggles<&Options::FilePreviewFind>},
    {kFindSplit, kButton, kSplit, kTurnSplit, kIconSplit, kSame, {}, &C::listSplit, toggles<&Options::FilelistTileFind>},
    ranked(kGoesFirst, {kFindFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kFindFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kFindSave, kButton, kSave, TL(9294, "Dateiliste in eine Textdatei speichern"), kIconSave, kGroup, {}, &C::listSave}),
    withRows({kFindPrint, kButton, kPrint, TL(9295, "Dateiliste drucken"), kIconPrint, kGroup, {}, &C::listPrint}),
}), units(kFindBytes, kFindDecimals, kFindTable), columns<kFindTable>(&C::listColumn), search(kFindSearchText, kFindSearch, &C::listSearch));

constexpr auto kStatisticsRows = joined(rows({
    ranked(kStaysLongest, {kStatisticsTitle, kLabel, TL(9700, "Statistik")}),
    {kStatisticsFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    ranked(kGoesFirst, {kStatisticsFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kStatisticsFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kStatisticsSave, kButton, kSave, kSaveList, kIconSave, kGroup, {}, &C::listSave}),
    withRows({kStatisticsPrint, kButton, kPrint, kPrintList, kIconPrint, kGroup, {}, &C::listPrint}),
}), units(kStatisticsBytes, kStatisticsDecimals, kStatisticsTable), search(kStatisticsSearchText, kStatisticsSearch, &C::listSearch));

constexpr auto kChangesRows = joined(rows({
    ranked(kStaysLongest, {kChangesTitle, kLabel, TL(9061, "Veränderungen")}),
    {kChangesFullView, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup, {}, &C::fullView},
    ranked(kGoesFirst, {kChangesFit, kButton, kFit, kFitColumns, kIconFit, kGroup, {}, &C::listFit}),
    ranked(kGoesFirst, {kChangesFont, kButton, kFont, kChooseFont, kIconFont, kSame, {}, &C::changeFont}),
    withRows({kChangesSave, kButton, kSave, kSaveList, kIconSave, kGroup, {}, &C::listSave}),
    withRows({kChangesPrint, kButton, kPrint, kPrintList, kIconPrint, kGroup, {}, &C::listPrint}),
}), units(kChangesBytes, kChangesDecimals, kChangesTable), search(kChangesSearchText, kChangesSearch, &C::listSearch));

constexpr KeptOption kMapColour = {KeptOption::Use::kChooses, {&Options::MapColour}};

constexpr auto kMapRows = rows({
    ranked(kStaysLongest, {kMapTitle, kLabel, TL(9772, "Karte")}),
    {kMapColours, kMenuButton, TL(9419, "Farben"), TL(9420, "Wofür die Farben der Karte stehen"), kIconMap, kGroup},
    {kMapByKind, kButton, TL(9703, "Nach Art"), {}, -1, kSame, {}, &C::mapColour, kMapColour, kMapColours, 0},
    {kMapByAge, kButton, TL(9704, "Nach Alter"), {}, -1, kSame, {}, &C::mapColour, kMapColour, kMapColours, 1},
    {kMapByOwner, kButton, TL(9705, "Nach Eigentümer"), {}, -1, kSame, {}, &C::mapColour, kMapColour, kMapColours, 2},
    {kMapByDepth, kButton, TL(9421, "Nach Ordnerebene"), {}, -1, kSame, {}, &C::mapColour, kMapColour, kMapColours, 3},
    {kMapByChange, kButton, TL(9118, "Nach Änderung, beim Vergleichen"), {}, -1, kSame, {}, &C::mapColour, kMapColour, kMapColours, 4},
    withRows({kMapUp, kButton, TL(9422, "Ebene höher"), TL(9423, "Den Ordner darüber zeigen"), kIconCollapse, kSame, {}, &C::mapUp}),
    withRows({kMapSave, kMenuButton, kSave, TL(9424, "Karte als Bild speichern"), kIconSave, kGroup}),
    {kMapSavePng, kButton, TL(9425, "Als PNG"), {}, -1, kSame, {}, &C::mapSave, {}, kMapSave},
    {kMapSaveSvg, kButton, TL(9426, "Als SVG"), {}, -1, kSame, {}, &C::mapSave, {}, kMapSave},
    withRows({kMapPrint, kButton, kPrint, TL(9427, "Karte drucken"), kIconPrint, kGroup, {}, &C::mapPrint}),
});

constexpr BarRow kBars[kBarCount] = {
    {"cbrMain", "Init_ToolbarMain", kMainRows},
    {"cbrReport", "Init_Toolbar_Folders", kReportRows},
    {"cbrDrives", "Init_Toolbar_Drives", kDrivesRows},
    {"cbrFiles", "Init_Toolbar_Files", kFilesRows},
    {"cbrTOP", "Init_Toolbar_TOP", kTopRows},
    {"cbrHardlinks", "Init_Toolbar_Hardlinks", kHardlinksRows},
    {"cbrJunctions", "Init_Toolbar_Junctions", kJunctionsRows},
    {"cbrFind", "Init_Toolbar_Find", kFindRows},
    {"cbrStatistics", "Init_Toolbar_Statistics", kStatisticsRows},
    {"cbrChanges", "Init_Toolbar_Changes", kChangesRows},
    {"cbrMap", "Init_Toolbar_Map", kMapRows},
};
// clang-format on

}  // namespace

std::span<const BarRow, kBarCount> barRows() {
    return kBars;
}

std::span<const CommandRow> commandsOf(BarId bar) {
    return kBars[static_cast<std::size_t>(bar)].commands;
}

bool switchesColumn(const CommandRow& row) {
    return row.run == &C::reportColumn || row.run == &C::listColumn;
}

const CommandRow* commandRow(Command command) {
    const auto all = commandsOf(barOf(command));
    const auto found = std::ranges::find(all, command, &CommandRow::command);
    return found != all.end() ? &*found : nullptr;
}

// The languages that come with the program keep their ids.
std::vector<CommandRow> languageCommands(const std::vector<Language>& languages) {
    constexpr int kFirstId = 35, kShipped = 6, kFirstFurtherId = 400;
    std::vector<CommandRow> rows;
    int id = kFirstId;
    for (const Language& language : languages) {
        rows.push_back({.command = commandOf(BarId::kMain, id),
                        .kind = kButton,
                        .caption = {language.nameId, language.name},
                        .run = &C::changeLanguage,
                        .parent = kLanguages,
                        .value = language.id});
        id = ++id == kFirstId + kShipped ? kFirstFurtherId : id;
    }
    return rows;
}

}  // namespace hl
