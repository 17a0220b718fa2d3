#include "start/usage.h"

#include <algorithm>
#include <string_view>

#include "app/product.h"
#include "base/text.h"
#include "output/report_formats.h"

namespace hl {

namespace {

constexpr std::size_t kOptionWidth = 14;

std::string optionLine(std::string_view option, std::string_view meaning) {
    std::string line = "  " + std::string(option);
    line.append(kOptionWidth - std::min(kOptionWidth - 1, characterCount(option)), ' ');
    return line.append(meaning) + "\n";
}

std::string shapeText(const Texts& texts, const JoinedLine& line) {
    const std::string option = visible(line.badArgument);
    switch (line.shape) {
        case ShapeProblem::kNone:
            break;
        case ShapeProblem::kNotForWindow:
            return texts.TL(9615, "%1 gilt für einen Bericht: davor muss -s stehen.", {option});
        case ShapeProblem::kNotTogether:
            return texts.TL(9026, "%1 steht zweimal da oder passt nicht zu dem, was geschrieben wird.",
                            {option});
        case ShapeProblem::kOneSource:
            return texts.TL(9027, "%1 passt nur zu einer einzigen Quelle.", {option});
        case ShapeProblem::kCompareFormat:
            return texts.TL(9028,
                            "%1 passt nicht zu --compare. Es gibt --format=csv, --format=txt und "
                            "--format=jsonl.",
                            {option});
        case ShapeProblem::kNoSize:
            return texts.TL(9029, "Zu --grown gehört eine Größe wie 10G, nicht %1.", {option});
        case ShapeProblem::kNoProgress:
            return texts.TL(9040, "Zu --progress gehört json, nicht %1.", {option});
    }
    return {};
}

}  // namespace

std::string usageText(const Texts& texts) {
    const std::string folder = texts.TL(9002, "ORDNER");
    const std::string levels = texts.TL(9003, "EBENEN");
    const std::string file = texts.TL(9004, "DATEI");
    const std::string filter = texts.TL(9964, "FILTER");
    std::string text = texts.TL(9001, "Aufruf:") + "\n";
    text += "  harborlantern [--] [" + folder + "]...\n";
    text += "  harborlantern -s[" + levels + "] [-dN] [--format=F] [--] " + file + " " + folder + "...\n";
    text += "  harborlantern -s --balance [--format=F] [--] " + file + " " + folder + "...\n";
    text += "  harborlantern -s --find=" + filter + " [--format=F] [--] " + file + " " + folder + "...\n\n";
    text += texts.TL(
        9005, "Zeigt, wie viel Platz Ordner belegen. Mit -s wird ohne Fenster ein Bericht geschrieben.");
    text += "\n\n";
    text += optionLine("-s[" + levels + "]",
                       texts.TL(9006, "Die Quellen und so viele Ordnerebenen darunter; ohne Zahl 999"));
    text +=
        optionLine("-dN", texts.TL(9007, "Trennzeichen: 0 Komma, 1 Semikolon, 2 Tabulator, 3 Leerzeichen"));
    text += optionLine("--format=F", formatHelp(texts));
    text +=
        optionLine("--balance", texts.TL(9871,
                                         "Wie sich zusammensetzt, was das Dateisystem jeder Quelle belegt: "
                                         "txt oder json"));
    text +=
        optionLine("--find=" + filter,
                   texts.TL(9965, "Dateien, auf die der Filter passt (size>1G age>1y name=*.iso): csv, nul"));
    text += optionLine("--exclude=R", texts.TL(9937, "Auslassen, was die Regel R nennt (wie in .gitignore)"));
    text += optionLine("--exclude-from=F", texts.TL(9938, "Auslassen, was die Regeln der Datei F nennen"));
    text += optionLine("--exclude-caches", texts.TL(9939, "Ordner auslassen, die ein CACHEDIR.TAG haben"));
    text +=
        optionLine("--compare=F",
                   texts.TL(9044, "Was seit dem gespeicherten Scan F gewachsen ist: csv, txt oder jsonl"));
    text += optionLine(
        "--grown=N", texts.TL(9045, "Mit --compare: Status 5, wenn etwas um mehr als N (10G) gewachsen ist"));
    text +=
        optionLine("--open=F",
                   texts.TL(9043, "Einen gespeicherten Scan, JSON von ncdu oder eine Liste von find öffnen"));
    text += optionLine("--no-names",
                       texts.TL(9041, "Im gespeicherten Scan weder den Rechner noch Eigentümer nennen"));
    text += optionLine("--progress=json",
                       texts.TL(9042, "Jede Sekunde eine Zeile JSON auf der Fehlerausgabe: wie weit es ist"));
    text += optionLine(file, formatByNameHelp(texts));
    text += optionLine("--", texts.TL(9009, "Danach folgen nur noch Namen, auch solche mit - am Anfang"));
    text += optionLine("-h, --help", texts.TL(9010, "Diese Hilfe"));
    text += optionLine("--version", texts.TL(9011, "Die Version"));
    text += "\n" + texts.TL(9012,
                            "Status: 0 geschrieben; 1 etwas fehlt oder misslang; 2 falscher Aufruf; 3 kein "
                            "Fenster; 5 gewachsen.");
    return text + "\n";
}

std::string versionText() {
    return std::string(kProductName) + " " HARBORLANTERN_VERSION "\n";
}

std::string problemText(const Texts& texts, const JoinedLine& line) {
    switch (line.problem) {
        case LineProblem::kNone:
            break;
        case LineProblem::kUnknownSwitch:
            return texts.TL(9013,
                            "Unbekannter Schalter %1. Für eine Datei oder einen Ordner dieses Namens: ./%1",
                            {visible(line.badArgument)});
        case LineProblem::kNoCurrentFolder:
            return texts.TL(9016, "Es gibt keinen aktuellen Ordner, zu dem %1 gehören könnte.",
                            {visible(line.badArgument)});
        case LineProblem::kEmptyArgument:
            return texts.TL(9014, "Ein Argument ist leer.");
        case LineProblem::kUnknownFormat:
            return unknownFormatText(texts, visible(line.badArgument));
        case LineProblem::kFormatOfFind:
            return texts.TL(9064, "%1 gibt es nur mit %2.", {line.badArgument, "--find"});
        case LineProblem::kFormatOfBalance:
            return texts.TL(9064, "%1 gibt es nur mit %2.", {line.badArgument, "--balance"});
        case LineProblem::kNotForWindow:
            return texts.TL(9615, "%1 gilt für einen Bericht: davor muss -s stehen.", {line.badArgument});
        case LineProblem::kNoFilter:
            return texts.TL(9967, "Zu --find gehört ein Filter, zum Beispiel 'size>1G age>1y name=*.iso'.");
        case LineProblem::kNotWithFind:
            return texts.TL(9966, "%1 steht zweimal da oder passt nicht zu --find.",
                            {visible(line.badArgument)});
        case LineProblem::kNoValue:
            return texts.TL(9936, "Zu %1 gehört eine Regel oder der Name einer Datei.", {line.badArgument});
        case LineProblem::kShape:
            return shapeText(texts, line);
        case LineProblem::kNotTogether:
            return texts.TL(9026, "%1 steht zweimal da oder passt nicht zu dem, was geschrieben wird.",
                            {visible(line.badArgument)});
        case LineProblem::kBalanceFormat:
            return texts.TL(9920, "%1 passt nicht zu --balance. Möglich sind --format=txt und --format=json.",
                            {visible(line.badArgument)});
        case LineProblem::kBalanceEnding:
            return texts.TL(
                9921,
                "%1 endet wie ein Bericht, den es von einer Bilanz nicht gibt. Möglich sind .txt, "
                ".json oder ein --format.",
                {visible(line.badArgument)});
        case LineProblem::kFindEnding:
            return texts.TL(
                9065,
                "%1 endet wie ein Bericht, den es von gefundenen Dateien nicht gibt. Möglich sind "
                ".csv oder ein --format.",
                {visible(line.badArgument)});
        case LineProblem::kIncompleteReport:
            return texts.TL(9015, "Zu -s gehören eine Datei für den Bericht und mindestens ein Ordner.");
    }
    return {};
}

}  // namespace hl
