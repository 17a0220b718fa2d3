// The words of the lines; figures; the whole as text; as JSON.
#include "output/balance_text.h"

#include <algorithm>
#include <iterator>

#include "base/date_format.h"
#include "base/json_text.h"
#include "base/row_text.h"
#include "base/size_text.h"
#include "base/text.h"
#include "output/report_writer.h"

namespace hl {

namespace {

struct LineWords {
    BalanceLine line;
    std::string_view key;  ///< In JSON.
    RowText caption, tip;  ///< A program's line is called by the program, and has the tip of the line above.
};

// clang-format off
constexpr LineWords kLineWords[] = {
    {BalanceLine::kFound, "found", TL(9873, "Gefundene Dateien"),
     TL(9888, "Die Größe aller gefundenen Dateien, jeder Name gezählt.")},
    {BalanceLine::kRoundedUp, "rounded_up", TL(9874, "Aufgerundet und vorbelegt"),
     TL(9889, "Was Dateien über ihre Größe hinaus belegen: ganze Blöcke und im Voraus belegter Platz.")},
    {BalanceLine::kFolders, "folders", TL(9875, "Ordner selbst"),
     TL(9890, "Was Ordner und lange Verknüpfungen auf Ordner selbst belegen.")},
    {BalanceLine::kHidden, "hidden", TL(9876, "Verdeckt unter Einhängepunkten"),
     TL(9891, "Was in Ordnern liegt, auf denen ein anderes Dateisystem eingehängt ist. Nur root kann es lesen.")},
    {BalanceLine::kHeld, "held", TL(9877, "Gelöscht, aber noch geöffnet"),
     TL(9892, "Dateien ohne Namen, die ein Programm noch offen hält; der Platz wird frei, wenn es sie schließt. Die Dateien anderer Benutzer sieht nur root.")},
    {BalanceLine::kHeldBy, "held_by", {}, {}},
    {BalanceLine::kKept, "kept", TL(9878, "Vom Dateisystem selbst belegt"),
     TL(9893, "Verwaltungsdaten und Reserven, die das Dateisystem als belegt zählt. Auf manchen Dateisystemen erfährt sie nur root.")},
    {BalanceLine::kHoles, "holes", TL(9879, "Löcher und Komprimierung"),
     TL(9894, "Was Dateien weniger belegen, als sie groß sind. Auf btrfs ist die Komprimierung nicht dabei, sondern im Rest.")},
    {BalanceLine::kFurtherNames, "further_names", TL(9880, "Weitere Namen derselben Datei"),
     TL(9895, "Hardlinks: Eine Datei mit mehreren Namen belegt ihren Platz nur einmal.")},
    {BalanceLine::kTiny, "tiny", TL(9881, "Kleine Dateien in den Verwaltungsdaten"),
     TL(9896, "Dateien bis 2.048 Bytes liegen in den Verwaltungsdaten des Dateisystems und sind dort schon gezählt.")},
    {BalanceLine::kRest, "rest", TL(9882, "Rest"),
     TL(9897, "Was keine Zeile erklärt: Änderungen während des Einlesens, Unlesbares, Unbekanntes; auf btrfs auch Snapshots, Komprimierung, geteilte und überschriebene Bereiche.")},
    {BalanceLine::kUsed, "used", TL(9883, "Belegt laut Dateisystem"),
     TL(9898, "Vom Dateisystem am Anfang und am Ende des Einlesens erfragt. Ein Unterschied zeigt, dass währenddessen geschrieben wurde.")},
    {BalanceLine::kTrash, "trash", TL(9884, "davon im Papierkorb"),
     TL(9899, "Was im Papierkorb auf diesem Datenträger liegt. Es ist in den Zeilen darüber enthalten.")},
    {BalanceLine::kNotRead, "not_read", TL(9885, "davon nicht lesbar: %1 Ordner"),
     TL(9900, "Ordner, die nicht oder nicht ganz gelesen wurden. Was darin liegt, steckt im Rest.")},
    {BalanceLine::kSnapshots, "snapshots", TL(9901, "davon Snapshots, nicht gezählt: %1"),
     TL(9306, "Snapshots, deren Ursprung in dieser Quelle liegt, werden nicht gelesen. Was sie allein belegen, steckt im Rest.")},
    {BalanceLine::kLeftOut, "left_out", TL(9928, "davon durch Regeln ausgelassen: %1 Ordner, %2 Dateien"),
     TL(9929, "Was Regeln auslassen, wird nicht angesehen. Was es belegt, steckt im Rest.")},
    {BalanceLine::kUsedBefore, "used_before", TL(9886, "Belegt vor dem Einlesen"),
     TL(9898, "Vom Dateisystem am Anfang und am Ende des Einlesens erfragt. Ein Unterschied zeigt, dass währenddessen geschrieben wurde.")},
    {BalanceLine::kReserved, "reserved", TL(9887, "Für root reserviert"),
     TL(9902, "Ein Teil des freien Platzes, den nur root belegen darf. Er zählt nicht als belegt.")},
};
// clang-format on

const LineWords& wordsOf(BalanceLine line) {
    return *std::ranges::find(kLineWords, line, &LineWords::line);
}

std::string unknownText(const Texts& texts, Unknown unknown) {
    if (unknown == Unknown::kNeedsRoot) return texts.TL(9869, "nicht bekannt: erfordert Root-Rechte");
    return unknown == Unknown::kNotTold ? texts.TL(9870, "nicht bekannt") : std::string();
}

std::string_view signOf(const BalanceEntry& entry) {
    const BalanceRole role = roleOf(entry.line);
    if (entry.bytes == 0) return "";
    if (role == BalanceRole::kSubtracted || entry.bytes < 0) return "-";
    return role == BalanceRole::kAdded ? "+" : "";
}

SizeValue magnitude(const BalanceEntry& entry) {
    return SizeValue::fromBytes(static_cast<std::uint64_t>(entry.bytes < 0 ? -entry.bytes : entry.bytes));
}

// A figure of which only a part may be known is shown if there is some of it.
bool hasFigure(const BalanceEntry& entry) {
    return entry.unknown == Unknown::kNo || entry.bytes != 0;
}

std::string bare(const BalanceWords& words, const BalanceEntry& entry) {
    if (!hasFigure(entry)) return {};
    return std::string(signOf(entry)) +
           FormatSizeForMode(kModeBytes, magnitude(entry), false, false, words.numbers);
}

std::string padding(std::size_t width, std::string_view text) {
    return std::string(width - std::min(width, characterCount(text)), ' ');
}

std::string_view roleKey(BalanceRole role) {
    constexpr std::string_view kKeys[] = {"added", "subtracted", "detail", "sum", "of_which", "beside"};
    return kKeys[static_cast<std::size_t>(role)];
}

void appendLineJson(std::string& out, const BalanceEntry& entry) {
    out.append("{\"line\":\"").append(wordsOf(entry.line).key);
    out.append("\",\"role\":\"").append(roleKey(roleOf(entry.line)));
    out.append("\",\"bytes\":").append(hasFigure(entry) ? std::to_string(entry.bytes) : "null");
    if (entry.unknown != Unknown::kNo)
        out.append(entry.unknown == Unknown::kNeedsRoot ? ",\"unknown\":\"needs_root\""
                                                        : ",\"unknown\":\"not_told\"");
    if (entry.line == BalanceLine::kHeldBy) {
        out += ",\"program\":";
        appendJsonString(out, entry.program);
        out.append(",\"process\":").append(std::to_string(entry.process));
    }
    if (entry.line == BalanceLine::kNotRead || entry.line == BalanceLine::kSnapshots ||
        entry.line == BalanceLine::kLeftOut)
        out.append(",\"folders\":").append(std::to_string(entry.folders));
    if (entry.line == BalanceLine::kLeftOut) out.append(",\"files\":").append(std::to_string(entry.files));
    out += '}';
}

std::string whyNoWholeDisk(const Texts& texts, const SourceBalance& balance) {
    const std::string source = visible(balance.source);
    switch (balance.part) {
        case DiskPart::kLayers:
            return texts.TL(9918,
                            "%1 ist aus Ordnern anderer Dateisysteme geschichtet (overlay) und hat keinen "
                            "eigenen Platz: Dafür gibt es keine Bilanz.",
                            {source});
        case DiskPart::kSubvolume:
            return texts.TL(
                9919,
                "%1 ist ein Subvolume und teilt sich den Platz mit anderen: Eine Bilanz gibt es nur "
                "für das ganze Dateisystem.",
                {source});
        case DiskPart::kPlain:
            break;
    }
    return texts.TL(9903, "%1 ist nicht die Wurzel eines Dateisystems: Dafür gibt es keine Bilanz.",
                    {source});
}

}  // namespace

// --- the words of a line

std::string captionOf(const BalanceWords& words, const BalanceEntry& entry) {
    if (entry.line == BalanceLine::kHeldBy)
        return "    " + visible(entry.program) +
               (entry.process != 0 ? " (" + std::to_string(entry.process) + ")" : "");
    const RowText& caption = wordsOf(entry.line).caption;
    return words.texts.TL(
        caption.id, caption.german,
        {formatCount(entry.folders, words.numbers), formatCount(entry.files, words.numbers)});
}

std::string tipOf(const BalanceWords& words, BalanceLine line) {
    const RowText& tip = wordsOf(line == BalanceLine::kHeldBy ? BalanceLine::kHeld : line).tip;
    return words.texts.TL(tip.id, tip.german);
}

// --- figures

std::string bytesOf(const BalanceWords& words, const BalanceEntry& entry) {
    const std::string figure = bare(words, entry);
    const std::string unknown = unknownText(words.texts, entry.unknown);
    return figure + (figure.empty() || unknown.empty() ? "" : "; ") + unknown;
}

std::string sizeOf(const BalanceWords& words, const BalanceEntry& entry) {
    if (!hasFigure(entry)) return {};
    return std::string(signOf(entry)) + FormatSizeAuto(magnitude(entry), true, words.numbers);
}

// --- the whole

std::string whyNoBalance(const Texts& texts, const SourceBalance& balance) {
    switch (balance.state) {
        case BalanceState::kThere:
            break;
        case BalanceState::kNoWholeDisk:
            return whyNoWholeDisk(texts, balance);
        case BalanceState::kStopped:
            return texts.TL(9904, "%1 wurde nicht bis zum Ende eingelesen: Dafür gibt es keine Bilanz.",
                            {visible(balance.source)});
    }
    return {};
}

std::string asOf(const Texts& texts, const SourceBalance& balance) {
    if (!balance.changed) return {};
    return texts.TL(9868, "Stand: %1", {formatDate(localTime(balance.ended), "hh:nn")});
}

void appendBalanceText(std::string& out, const BalanceWords& words, const SourceBalance& balance) {
    out.append(words.texts.TL(9865, "Bilanz")).append(": ").append(visible(balance.source)).append(kLineEnd);
    if (const std::string stand = asOf(words.texts, balance); !stand.empty())
        out.append(stand).append(kLineEnd);
    out.append(kLineEnd);
    if (const std::string why = whyNoBalance(words.texts, balance); !why.empty())
        out.append(why).append(kLineEnd);
    std::size_t captions = 0, figures = 0;
    for (const BalanceEntry& entry : balance.entries) {
        captions = std::max(captions, characterCount(captionOf(words, entry)));
        figures = std::max(figures, characterCount(bare(words, entry)));
    }
    for (const BalanceEntry& entry : balance.entries) {
        const std::string caption = captionOf(words, entry);
        const std::string figure = bare(words, entry);
        out.append(caption).append(padding(captions, caption)).append("  ");
        if (!figure.empty()) out.append(padding(figures, figure));
        out.append(bytesOf(words, entry)).append(kLineEnd);
    }
}

void appendBalanceJson(std::string& out, const SourceBalance& balance) {
    constexpr std::string_view kStates[] = {"complete", "no_whole_disk", "stopped"};
    out += '{';
    appendJsonPath(out, "path", balance.source);
    out.append(",\"state\":\"").append(kStates[static_cast<std::size_t>(balance.state)]);
    out.append("\",\"ended\":").append(std::to_string(balance.ended)).append(",\"lines\":[");
    for (std::size_t i = 0; i < balance.entries.size(); ++i) {
        if (i > 0) out += ',';
        appendLineJson(out, balance.entries[i]);
    }
    out.append("]}");
}

}  // namespace hl
