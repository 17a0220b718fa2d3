// What kinds of files and classes of age are called in the window.
#pragma once

#include "base/row_text.h"
#include "scan/file_kinds.h"
#include "scan/statistics.h"

namespace hl {

// In the order of FileKind.
inline constexpr RowText kKindTexts[kFileKinds] = {
    TL(9710, "Bilder"),
    TL(9711, "Filme"),
    TL(9712, "Klänge"),
    TL(9713, "Dokumente"),
    TL(9714, "Tabellen"),
    TL(9715, "Präsentationen"),
    TL(9716, "Bücher"),
    TL(9717, "Archive"),
    TL(9718, "Laufwerksabbilder"),
    TL(9719, "Installationspakete"),
    TL(9725, "Programme"),
    TL(9726, "Bibliotheken"),
    TL(9727, "Quelltexte"),
    TL(9728, "Daten, Datenbanken"),
    TL(9729, "Protokolle"),
    TL(9730, "E-Mail"),
    TL(9731, "Schriften"),
    TL(9732, "Sicherungen, Temporäres"),
    TL(9733, "Cache, Übersetztes"),
    TL(9734, "Andere"),
};

// In the order of kAgeBorders, and then the future.
inline constexpr RowText kAgeTexts[kAgeClasses] = {
    TL(9735, "Unter 1 Tag"),      TL(9736, "1 bis 7 Tage"),       TL(9737, "7 bis 30 Tage"),
    TL(9738, "30 bis 90 Tage"),   TL(9739, "90 bis 180 Tage"),    TL(9740, "180 bis 365 Tage"),
    TL(9741, "365 bis 730 Tage"), TL(9742, "730 Tage und älter"), TL(9743, "In der Zukunft"),
};

}  // namespace hl
