// The main toolbar.
#include "mainwindow/bar_options.h"
#include "mainwindow/bar_rows.h"
#include "mainwindow/bars.h"
#include "robustness/trap.h"

namespace hl {

namespace {

using namespace bar_rows;

constexpr int kStart = 2;
constexpr int kStop = 3;
constexpr int kLanguage = 28;
constexpr int kReportPanel = 33;
constexpr int kHomepage = 18;

// clang-format off
constexpr EntryRow kMainRows[] = {
    {50, kCustom, {}, TL(9228, "Einzulesende Quelle")},
    {1, kButton, TL(3529, "Neu"), TL(9210, "Neue Quelle auswählen"), kIconNew, kSame, "N"},
    {kStart, kSplitButton, TL(3531, "Start"), TL(9211, "Quelle einlesen"), kIconStart, kSame, "R"},
    {60, kCheckBox, TL(3754, "Liste mit den größten Dateien erstellen (langsamer)"), {}, -1, kSame, {}, kStart},
    {61, kCheckBox, TL(3755, "Liste mit Hardlinks erstellen (langsamer)"), {}, -1, kSame, {}, kStart},
    {62, kCheckBox, TL(3756, "Liste mit Junctions erstellen (langsamer)"), {}, -1, kSame, {}, kStart},
    {65, kCheckBox, TL(3770, "Dateigröße von Hardlinks nur einmal zählen (langsamer)"), {}, -1, kGroup, {}, kStart},
    {68, kCheckBox, TL(3779, "NTFS-Abzweigungspunkte und symbolische Verknüpfungen einlesen"), {}, -1, kGroup, {}, kStart},
    {63, kCheckBox, TL(3590, "Keine Junctions in der Ordnerliste anzeigen"), {}, -1, kSame, {}, kStart},
    {64, kCheckBox, TL(3621, "Ordnerebenen farblich voneinander abgrenzen"), {}, -1, kGroup, {}, kStart},
    {66, kCheckBox, TL(3772, "Prozentbalken vor dem Ordnernamen anzeigen"), {}, -1, kSame, {}, kStart},
    {kStop, kButton, TL(3533, "Stop"), TL(9212, "Einlesen beenden"), kIconStop, kSame, "T"},
    {kReportPanel, kButton, TL(3641, "Ordnerliste"), TL(9213, "Ordnerliste anzeigen"), kIconReport, kGroup, "1"},
    {21, kButton, TL(3643, "Laufwerksliste"), TL(9214, "Laufwerksliste anzeigen"), kIconDrives, kSame, "2"},
    {306, kButton, TL(3645, "Dateiliste"), TL(9215, "Dateiliste anzeigen"), kIconFiles, kGroup, "3"},
    {307, kButton, TL(3724, "Größte Dateien"), TL(9216, "Liste mit den größten Dateien anzeigen"), kIconTop, kSame, "4"},
    {308, kButton, TL(3740, "Hardlinks"), TL(9217, "Liste mit Hardlinks anzeigen"), kIconHardlinks, kSame, "5"},
    {309, kButton, TL(3742, "Junctions"), TL(9218, "Liste mit Junctions anzeigen"), kIconJunctions, kSame, "6"},
    {14, kButton, TL(3547, "Optionen"), TL(3547, "Optionen"), kIconOptions, kGroup, "O"},
    {27, kButton, TL(3627, "Symbolgröße"), TL(9219, "Symbole vergrößern"), kIconIconSize, kGroup},
    {34, kButton, TL(3690, "Symboltext"), TL(9220, "Symboltext anzeigen"), kIconIconText},
    {32, kButton, TL(3672, "Größer"), TL(9221, "Schrift vergrößern"), kIconLarger, kGroup},
    {31, kButton, TL(3650, "Kleiner"), TL(9222, "Schrift verkleinern"), kIconSmaller},
    {328, kButton, TL(3768, "Schriftart"), TL(9223, "Schriftart festlegen"), kIconFont},
    {kLanguage, kMenuButton, TL(9224, "Sprache"), TL(9225, "Sprache der Benutzeroberfläche ändern"), kIconLanguage, kGroup},
    {35, kButton, TL(3703, "Deutsch"), {}, -1, kSame, {}, kLanguage},
    {36, kButton, TL(3704, "Englisch"), {}, -1, kSame, {}, kLanguage},
    {37, kButton, TL(3784, "Niederländisch"), {}, -1, kSame, {}, kLanguage},
    {38, kButton, TL(3785, "Italienisch"), {}, -1, kSame, {}, kLanguage},
    {39, kButton, TL(3786, "Schwedisch"), {}, -1, kSame, {}, kLanguage},
    {40, kButton, TL(3705, "Russisch"), {}, -1, kSame, {}, kLanguage},
    {16, kButton, TL(3549, "Protokoll"), TL(3549, "Protokoll"), kIconLog, kGroup, "L"},
    {17, kButton, TL(3551, "Info"), TL(3551, "Info"), kIconInfo, kGroup, "F1"},
    {kHomepage, kButton, TL(3553, "Homepage"), TL(3553, "Homepage"), kIconHomepage},
    {20, kButton, TL(3557, "Beenden"), TL(9226, "Programm beenden"), kIconQuit, kGroup, "Q"},
    {101, kButton, TL(3780, "Markierte Ordner löschen"), {}, kIconDelete, kSame, {}, kPopupSelectedFolders},
    {102, kButton, TL(3781, "Markierte Ordner in den Papierkorb verschieben"), {}, kIconRecycle, kSame, {}, kPopupSelectedFolders},
};
// clang-format on

void checkLanguage(CommandBar& bar, int language) {
    for (const LanguageCommand& command : kLanguageCommands)
        bar.setChecked(command.id, command.language == language);
}

}  // namespace

void Init_ToolbarMain(Bars& bars, const BarSources& sources) {
    guarded(sources.diagnostics, "Init_ToolbarMain", "frmMain", [&] {
        BarEntry popup;
        popup.id = kPopupSelectedFolders;
        bars.cbrMain.addPopup(popup);
        for (const EntryRow& row : kMainRows)
            if (row.id != kHomepage || sources.homepage) addRow(bars.cbrMain, row, sources.texts);
        bars.cbrMain.setEnabled(kStop, false);
        bars.cbrMain.setChecked(kReportPanel, true);  // No option keeps it: a window begins with its report.
        checkLanguage(bars.cbrMain, sources.texts.languageId());
        optionsToBar(sources.options, bars.cbrMain);
    });
}

}  // namespace hl
