// The toolbars of the six views. Column buttons of the lists have no icon: their captions tell them apart.
#include "mainwindow/bar_options.h"
#include "mainwindow/bar_rows.h"
#include "mainwindow/bars.h"
#include "robustness/trap.h"

namespace hl {

namespace {

using namespace bar_rows;

// Texts that several bars have.
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
constexpr RowText kBytes = TL(3515, "Bytes");
constexpr RowText kKilobytes = TL(9252, "Kilobytes");
constexpr RowText kMegabytes = TL(9253, "Megabytes");
constexpr RowText kGigabytes = TL(9254, "Gigabytes");
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
constexpr RowText kSplit = TL(9279, "Teilung");
constexpr RowText kTurnSplit = TL(9280, "Fensterteilung umschalten");
constexpr RowText kSize = TL(3623, "Größe");
constexpr RowText kColumnSize = TL(9283, "Spalte 'Größe'");
constexpr RowText kExtension = TL(9103, "Endung");
constexpr RowText kColumnExtension = TL(9284, "Spalte 'Endung'");
constexpr RowText kType = TL(9104, "Typ");
constexpr RowText kColumnType = TL(9285, "Spalte 'Typ'");
constexpr RowText kAttributes = TL(9105, "Attribute");
constexpr RowText kColumnAttributes = TL(9286, "Spalte 'Attribute'");
constexpr RowText kModified = TL(9287, "Änderung");
constexpr RowText kColumnModified = TL(9288, "Spalte 'Änderungsdatum'");
constexpr RowText kCreated = TL(9289, "Erstellt");
constexpr RowText kColumnCreated = TL(9290, "Spalte 'Erstellungsdatum'");
constexpr RowText kAccessed = TL(9291, "Zugriff");
constexpr RowText kColumnAccessed = TL(9292, "Spalte 'Zugriffsdatum'");

constexpr int kExpand = 25;
constexpr int kFirstLevel = 100;
constexpr int kLevels = 10;

// clang-format off
constexpr EntryRow kFoldersUpToLevels[] = {
    {0, kLabel, TL(3625, "Ordner")},
    {4, kButton, kRefresh, TL(9231, "Ausgewählter Ordner neu einlesen"), kIconRefresh, kGroup, "F5"},
    {323, kButton, kFullView, TL(9233, "Alle anderen Listen ausblenden"), kIconFullView, kGroup, "F11"},
    {24, kButton, TL(9235, "Zuklappen"), TL(9236, "Alle Ordner zuklappen"), kIconCollapse, kGroup, "F7"},
    {kExpand, kSplitButton, TL(9237, "Aufklappen"), TL(9238, "Alle Ordner aufklappen"), kIconExpand, kSame, "F8"},
    {kFirstLevel, kButton, TL(9239, "1 Ordnerebene aufklappen"), {}, -1, kSame, {}, kExpand},
};

constexpr EntryRow kFoldersBehindLevels[] = {
    {7, kButton, TL(9241, "Entfernen"), TL(9242, "Ausgewählte Quelle entfernen"), kIconRemove, kGroup},
    {9, kButton, TL(9243, "Alle entfernen"), TL(9244, "Alle Quellen entfernen"), kIconRemoveAll},
    {5, kButton, kSave, TL(9245, "Ordnerliste in eine Textdatei speichern"), kIconSave, kGroup, "S"},
    {6, kButton, kPrint, TL(9246, "Ordnerliste drucken"), kIconPrint, kGroup, "P"},
    {35, kButton, TL(9101, "Prozent"), TL(9247, "Spalte 'Prozent' anzeigen"), kIconPercent, kGroup},
    {22, kButton, TL(3624, "Dateien"), TL(9248, "Spalte 'Dateianzahl' anzeigen"), kIconFiles},
    {23, kButton, TL(3625, "Ordner"), TL(9249, "Spalte 'Ordneranzahl' anzeigen"), kIconFolder},
    {26, kButton, kFit, kFitColumns, kIconFit},
    {328, kButton, kFont, kChooseFont, kIconFont},
    {10, kButton, kBytes, kBytes, kIconBytes, kGroup},
    {11, kButton, kKilobytes, kKilobytes, kIconKilobytes},
    {12, kButton, kMegabytes, kMegabytes, kIconMegabytes},
    {13, kButton, kGigabytes, kGigabytes, kIconGigabytes},
    {33, kButton, kDecimals, kShowDecimals, kIconDecimals},
    {29, kEdit, kSearch, {}, -1, kGroup},
    {30, kButton, kStartSearch, {}, kIconSearch, kSame, "F"},
};

constexpr EntryRow kDrivesRows[] = {
    {0, kLabel, TL(9260, "Laufwerke")},
    {200, kButton, kRefresh, TL(9261, "Laufwerksliste neu einlesen"), kIconRefresh, kGroup},
    {206, kButton, TL(9262, "Einlesen"), TL(9263, "Ausgewähltes Laufwerk einlesen"), kIconRead, kGroup},
    {207, kButton, TL(9264, "Alle einlesen"), TL(9265, "Alle Laufwerke einlesen"), kIconReadAll},
    {208, kButton, TL(9266, "Hinzufügen"), TL(9267, "UNC-Pfad hinzufügen"), kIconAdd, kGroup},
    {328, kButton, kFont, kChooseFont, kIconFont, kGroup},
    {201, kButton, kBytes, kBytes, kIconBytes, kGroup},
    {202, kButton, kKilobytes, kKilobytes, kIconKilobytes},
    {203, kButton, kMegabytes, kMegabytes, kIconMegabytes},
    {204, kButton, kGigabytes, kGigabytes, kIconGigabytes},
    {205, kButton, kDecimals, kShowDecimals, kIconDecimals},
};

// What the bars of the lists have in common.
constexpr EntryRow kListUnits[] = {
    {301, kButton, kBytes, kBytes, kIconBytes, kGroup},
    {302, kButton, kKilobytes, kKilobytes, kIconKilobytes},
    {303, kButton, kMegabytes, kMegabytes, kIconMegabytes},
    {304, kButton, kGigabytes, kGigabytes, kIconGigabytes},
    {309, kButton, kDecimals, kShowDecimals, kIconDecimals},
};

constexpr EntryRow kListSearch[] = {
    {307, kEdit, kSearch, {}, -1, kGroup},
    {308, kButton, kStartSearch, {}, kIconSearch, kSame, "F"},
};

constexpr EntryRow kFilesRows[] = {
    {0, kLabel, TL(3514, "Dateien")},
    {300, kButton, kRefresh, TL(9270, "Dateiliste neu einlesen"), kIconRefresh, kGroup},
    {320, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup},
    {321, kButton, kRecycle, kRecycleFiles, kIconRecycle},
    {305, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup},
    {323, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup},
    {318, kButton, kPreview, kShowPreview, kIconPreview},
    {319, kButton, kSplit, kTurnSplit, kIconSplit},
    {317, kButton, kFit, kFitColumns, kIconFit, kGroup},
    {328, kButton, kFont, kChooseFont, kIconFont},
    {324, kButton, kSave, kSaveList, kIconSave, kGroup},
    {325, kButton, kPrint, kPrintList, kIconPrint, kGroup},
};

constexpr EntryRow kFilesColumns[] = {
    {310, kButton, kSize, kColumnSize, -1, kGroup},
    {311, kButton, kExtension, kColumnExtension},
    {312, kButton, kType, kColumnType},
    {313, kButton, kAttributes, kColumnAttributes},
    {314, kButton, kModified, kColumnModified},
    {315, kButton, kCreated, kColumnCreated},
    {316, kButton, kAccessed, kColumnAccessed},
};

constexpr int kCountWidth = 50;

constexpr EntryRow kTopRows[] = {
    {0, kLabel, TL(9293, "Größten Dateien")},
    {kTopCountBox, kEdit, {}, TL(9297, "Anzahl der Dateien in der Liste"), -1, kGroup, {}, 0, kCountWidth},
    {320, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup},
    {321, kButton, kRecycle, kRecycleFiles, kIconRecycle},
    {305, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup},
    {323, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup},
    {318, kButton, kPreview, kShowPreview, kIconPreview},
    {319, kButton, kSplit, kTurnSplit, kIconSplit},
    {324, kButton, kFit, kFitColumns, kIconFit, kGroup},
    {328, kButton, kFont, kChooseFont, kIconFont},
    {325, kButton, kSave, TL(9294, "Dateiliste in eine Textdatei speichern"), kIconSave, kGroup},
    {326, kButton, kPrint, TL(9295, "Dateiliste drucken"), kIconPrint, kGroup},
};

constexpr EntryRow kTopColumns[] = {
    {310, kButton, kSize, kColumnSize, -1, kGroup},
    {311, kButton, TL(3626, "Pfad"), TL(9296, "Spalte 'Pfad'")},
    {312, kButton, kExtension, kColumnExtension},
    {313, kButton, kType, kColumnType},
    {314, kButton, kAttributes, kColumnAttributes},
    {315, kButton, kModified, kColumnModified},
    {316, kButton, kCreated, kColumnCreated},
    {317, kButton, kAccessed, kColumnAccessed},
};

constexpr EntryRow kHardlinksRows[] = {
    {0, kLabel, TL(3740, "Hardlinks")},
    {300, kButton, TL(9300, "Analysieren"), TL(9301, "Hardlinks sortieren und farblich abgrenzen"), kIconAnalyze, kGroup},
    {320, kButton, kDelete, kDeleteFiles, kIconDelete, kGroup},
    {321, kButton, kRecycle, kRecycleFiles, kIconRecycle},
    {305, kButton, kSymbols, kShowSymbols, kIconSymbols, kGroup},
    {327, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup},
    {322, kButton, kPreview, kShowPreview, kIconPreview},
    {323, kButton, kSplit, kTurnSplit, kIconSplit},
    {326, kButton, kFit, kFitColumns, kIconFit, kGroup},
    {328, kButton, kFont, kChooseFont, kIconFont},
    {324, kButton, kSave, kSaveList, kIconSave, kGroup},
    {325, kButton, kPrint, kPrintList, kIconPrint, kGroup},
};

constexpr EntryRow kHardlinksColumns[] = {
    {310, kButton, TL(9109, "ID"), TL(9302, "Spalte 'ID'"), -1, kGroup},
    {311, kButton, TL(3740, "Hardlinks"), TL(9303, "Spalte 'Hardlinks'")},
    {312, kButton, TL(3625, "Ordner"), TL(9304, "Spalte 'Ordner'")},
    {313, kButton, kSize, kColumnSize},
    {314, kButton, kExtension, kColumnExtension},
    {315, kButton, kType, kColumnType},
    {316, kButton, kAttributes, kColumnAttributes},
    {317, kButton, kModified, kColumnModified},
    {318, kButton, kCreated, kColumnCreated},
    {319, kButton, kAccessed, kColumnAccessed},
};

constexpr EntryRow kJunctionsRows[] = {
    {0, kLabel, TL(3742, "Junctions")},
    {323, kButton, kFullView, kHideOtherLists, kIconFullView, kGroup},
    {317, kButton, kFit, kFitColumns, kIconFit, kGroup},
    {328, kButton, kFont, kChooseFont, kIconFont},
    {324, kButton, kSave, kSaveList, kIconSave, kGroup},
    {325, kButton, kPrint, kPrintList, kIconPrint, kGroup},
};
// clang-format on

void addLevels(CommandBar& bar, const Texts& texts) {
    EntryRow row{0, kButton, TL(9240, "%1 Ordnerebenen aufklappen")};
    row.parent = kExpand;
    for (int level = 2; level <= kLevels; ++level) {
        row.id = kFirstLevel - 1 + level;
        addRow(bar, row, texts, {level});
    }
}

void buildView(const char* routine, CommandBar& bar, std::initializer_list<std::span<const EntryRow>> parts,
               const BarSources& sources) {
    guarded(sources.diagnostics, routine, "frmMain", [&] {
        for (const std::span<const EntryRow> rows : parts) addRows(bar, rows, sources.texts);
        optionsToBar(sources.options, bar);
    });
}

}  // namespace

void Init_Toolbar_Folders(Bars& bars, const BarSources& sources) {
    guarded(sources.diagnostics, "Init_Toolbar_Folders", "frmMain", [&] {
        addRows(bars.cbrReport, kFoldersUpToLevels, sources.texts);
        addLevels(bars.cbrReport, sources.texts);
        addRows(bars.cbrReport, kFoldersBehindLevels, sources.texts);
        optionsToBar(sources.options, bars.cbrReport);
    });
}

void Init_Toolbar_Drives(Bars& bars, const BarSources& sources) {
    buildView("Init_Toolbar_Drives", bars.cbrDrives, {kDrivesRows}, sources);
}

void Init_Toolbar_Files(Bars& bars, const BarSources& sources) {
    buildView("Init_Toolbar_Files", bars.cbrFiles, {kFilesRows, kListUnits, kFilesColumns, kListSearch},
              sources);
}

void Init_Toolbar_TOP(Bars& bars, const BarSources& sources) {
    buildView("Init_Toolbar_TOP", bars.cbrTOP, {kTopRows, kListUnits, kTopColumns, kListSearch}, sources);
}

void Init_Toolbar_Hardlinks(Bars& bars, const BarSources& sources) {
    buildView("Init_Toolbar_Hardlinks", bars.cbrHardlinks,
              {kHardlinksRows, kListUnits, kHardlinksColumns, kListSearch}, sources);
}

void Init_Toolbar_Junctions(Bars& bars, const BarSources& sources) {
    buildView("Init_Toolbar_Junctions", bars.cbrJunctions, {kJunctionsRows, kListSearch}, sources);
}

}  // namespace hl
