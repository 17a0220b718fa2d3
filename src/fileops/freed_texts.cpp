#include "fileops/freed_texts.h"

#include <algorithm>
#include <utility>

#include "base/date_format.h"
#include "base/size_text.h"
#include "base/text.h"

namespace hl {

namespace {

std::string clockTime(std::int64_t seconds) {
    return formatDate(localTime(seconds), "hh:nn");
}

}  // namespace

std::string FreedTexts::bytes(std::uint64_t count) const {
    return FormatSizeAuto(SizeValue::fromBytes(count), true, numbers_);
}

std::string FreedTexts::count(std::uint64_t number) const {
    return formatNumber(static_cast<double>(number), {}, numbers_);
}

std::vector<std::string> FreedTexts::titles() const {
    return {texts_.TL(9832, "Was daraus wird"), texts_.TL(3623, "Größe"), texts_.TL(3514, "Dateien")};
}

TableBox::Line FreedTexts::line(std::string caption, const FreedAmount& amount, std::string tooltip) const {
    return {{std::move(caption), bytes(amount.bytes), count(amount.files)}, std::move(tooltip)};
}

// The first processes stand for all.
std::string FreedTexts::holders(const FreedWhenClosed& closed) const {
    constexpr std::size_t kMostNamed = 3;
    if (closed.holders.empty()) return texts_.TL(9835, "ein anderes Programm");
    std::string names;
    for (std::size_t i = 0; i < std::min(kMostNamed, closed.holders.size()); ++i) {
        const FileHolder& holder = closed.holders[i];
        names += (i == 0 ? "" : ", ") + visible(holder.program);
        if (holder.process != 0) names += " (" + std::to_string(holder.process) + ")";
    }
    if (closed.holders.size() <= kMostNamed) return names;
    return texts_.TL(9861, "%1 und %2 weitere", {names, count(closed.holders.size() - kMostNamed)});
}

std::vector<TableBox::Line> FreedTexts::lines(const FreedSpace& figures) const {
    std::vector<TableBox::Line> all;
    const auto add = [&](const FreedAmount& amount, std::string caption, std::string tooltip) {
        if (amount != FreedAmount()) all.push_back(line(std::move(caption), amount, std::move(tooltip)));
    };
    all.push_back(
        line(texts_.TL(9833, "Kommt sofort zurück"), figures.now,
             texts_.TL(9853, "Niemand sonst benutzt diese Bytes. Die der Ordner selbst sind dabei.")));
    all.back().strong = true;
    for (const FreedWhenClosed& closed : figures.whenClosed)
        add(closed.amount, texts_.TL(9834, "Kommt zurück, wenn %1 es schließt", {holders(closed)}),
            texts_.TL(9854, "Eine gelöschte Datei bleibt, solange ein Programm sie geöffnet hat."));
    add(figures.perhaps, texts_.TL(9836, "Kommt vielleicht zurück"),
        texts_.TL(
            9855,
            "Von nichts bis zu allem davon: Dateien der Auswahl teilen sich diese Bytes, und niemand sagt, "
            "ob andere sie auch benutzen; oder sie sind komprimiert; oder sie sind klein und liegen in den "
            "Verwaltungsdaten von btrfs."));
    if (figures.perhaps != FreedAmount())
        all.back().cells[1] = texts_.TL(9837, "0 bis %1", {bytes(figures.perhaps.bytes)});
    add(figures.otherNames, texts_.TL(9838, "Bleibt: hat noch andere Namen"),
        texts_.TL(9856, "Hardlinks außerhalb der Auswahl halten diese Dateien."));
    add(figures.shared, texts_.TL(9839, "Bleibt: mit anderen Dateien geteilt"),
        texts_.TL(9857, "Kopien oder Snapshots außerhalb der Auswahl benutzen dieselben Bytes."));
    add(figures.unknown, texts_.TL(9841, "Nicht bekannt"),
        texts_.TL(9859, "Das Dateisystem sagt es nicht, oder die Dateien können nicht gelesen werden."));
    addNotes(figures, all);
    add(figures.all,
        texts_.TL(9840, "Stattdessen im Papierkorb: bleibt auf diesem Datenträger, bis er geleert wird"),
        texts_.TL(9858, "In den Papierkorb verschieben gibt nichts frei, bevor er geleert wird."));
    return all;
}

// Lines without bytes: what cannot be told, and why.
void FreedTexts::addNotes(const FreedSpace& figures, std::vector<TableBox::Line>& lines) const {
    if (figures.foldersUnknown > 0)
        lines.push_back(
            {{texts_.TL(9809, "Nicht gelesene Ordner") + ": " + count(figures.foldersUnknown), "?", "?"}});
    if (figures.mayBeMore)
        lines.push_back({{texts_.TL(9842, "Mehr ist möglich: Teile überschriebener Bereiche"), "?", ""}});
    if (figures.mounts > 0)
        lines.push_back(
            {{texts_.TL(9913, "Bleibt: Subvolumes und Einhängepunkte") + ": " + count(figures.mounts), "?",
              "?"},
             texts_.TL(9915,
                       "Löschen lässt Subvolumes und eingehängte Dateisysteme stehen, mit allem, "
                       "was darin liegt.")});
    if (figures.openFiles == OpenFilesKnown::kNoAnswer)
        lines.push_back(
            {{texts_.TL(9914, "Noch geöffnet: nicht bekannt, die Liste der offenen Dateien kam nicht"), "?",
              "?"}});
    if (figures.openFiles == OpenFilesKnown::kOwn)
        lines.push_back(
            {{texts_.TL(9843, "Von anderen Benutzern geöffnet: nicht bekannt, das sieht nur root"), "?",
              "?"}});
}

std::string FreedTexts::state(const FreedSpace& figures) const {
    if (figures.state == SurveyState::kSilent || figures.silentPlaces > 0)
        return texts_.TL(9846, "Der Datenträger antwortet nicht. Bisher ermittelt:");
    if (figures.state == SurveyState::kRuns) return texts_.TL(9845, "Wird ermittelt ...");
    return texts_.TL(9868, "Stand: %1", {clockTime(figures.asOf)});
}

std::string FreedTexts::soon(const FreedSpace& figures) const {
    const std::string now = bytes(figures.now.bytes);
    if (figures.mayBeMore) return texts_.TL(9850, "Davon kommen sofort zurück: %1 oder mehr", {now});
    if (figures.perhaps.bytes == 0) return texts_.TL(9848, "Davon kommen sofort zurück: %1", {now});
    return texts_.TL(9849, "Davon kommen sofort zurück: %1 bis %2",
                     {now, bytes(figures.now.bytes + figures.perhaps.bytes)});
}

std::string FreedTexts::summary(const FreedSpace& figures) const {
    const bool nothing = figures.all == FreedAmount();
    if (figures.state == SurveyState::kSilent || (figures.silentPlaces > 0 && nothing))
        return texts_.TL(9844, "Was zurückkommt, ist nicht bekannt: Der Datenträger antwortet nicht.");
    std::string first = soon(figures);
    if (figures.state == SurveyState::kRuns) {
        first += " ...";
    } else if (clockTime(figures.asOf) != clockTime(secondsNow())) {
        first += " (" + state(figures) + ")";
    }
    std::uint64_t stays = figures.otherNames.bytes + figures.shared.bytes;
    for (const FreedWhenClosed& closed : figures.whenClosed) stays += closed.amount.bytes;
    const bool unknown = figures.unknown != FreedAmount() || figures.foldersUnknown > 0;
    std::string second;
    const auto add = [&](const std::string& sentence) { second += (second.empty() ? "\n" : " ") + sentence; };
    if (stays > 0)
        add(texts_.TL(9851, "%1 bleiben: andere Namen, geteilt oder noch geöffnet.", {bytes(stays)}));
    if (figures.mounts > 0) add(texts_.TL(9917, "Subvolumes und Einhängepunkte bleiben."));
    if (figures.silentPlaces > 0)
        add(texts_.TL(9916, "Von einem Teil ist es nicht bekannt: Ein Datenträger antwortet nicht."));
    else if (unknown)
        add(texts_.TL(9852, "Von einem Teil ist es nicht bekannt."));
    return first + second;
}

}  // namespace hl
