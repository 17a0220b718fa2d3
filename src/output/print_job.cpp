#include "output/print_job.h"

#include <memory>
#include <utility>
#include <vector>

#include "base/text.h"
#include "output/report_file.h"
#include "robustness/api_error_text.h"
#include "views/cell_text.h"

namespace hl {

namespace {

constexpr int kColumnGap = 4 * 15;  // Four pixels, in twips.

PrintTexts printTexts(const Texts& texts) {
    return {.preview = texts.TL(9591, "Druckvorschau"),
            .print = texts.TL(9592, "&Drucken..."),
            .savePdf = texts.TL(9593, "Als &PDF speichern..."),
            .close = texts.TL(9594, "&Schließen"),
            .cancel = texts.TL(3615, "Abbrechen"),
            .first = texts.TL(9595, "Erste Seite"),
            .previous = texts.TL(9596, "Vorige Seite"),
            .next = texts.TL(9597, "Nächste Seite"),
            .last = texts.TL(9598, "Letzte Seite"),
            .pageOf = texts.TL(9542, "Seite %1 von %2"),
            .writing = texts.TL(9599, "Seite %1 von %2 wird geschrieben..."),
            .layout = texts.TL(9600, "Ausrichtung:"),
            .upright = texts.TL(9601, "Hochformat"),
            .across = texts.TL(9602, "Querformat"),
            .view = texts.TL(9603, "Ansicht:"),
            .wholePage = texts.TL(9604, "Ganze Seite"),
            .pageWidth = texts.TL(9605, "Seitenbreite")};
}

PrintJob emptyJob(const Texts& texts, Files& files, const std::string& title) {
    PrintJob job;
    job.title = title;
    job.texts = printTexts(texts);
    job.files = &files;
    job.failure = [&texts](const std::string& name, const std::optional<Error>& error,
                           const std::string& rest) {
        const std::string where = visible(name);
        if (!error) return texts.TL(9606, "Das Drucken mit '%1' ist fehlgeschlagen.", {where});
        return texts.TL(9607, "Die Datei wurde nicht geschrieben: %1",
                        {where + ": " + ApiErrorText(false, *error)}) +
               leftBehindText(texts, rest);
    };
    return job;
}

}  // namespace

PrintJob printedText(const Texts& texts, Files& files, const std::string& title, std::string_view text) {
    PrintJob job = emptyJob(texts, files, title);
    job.text = text;
    return job;
}

PrintJob printedPicture(const Texts& texts, Files& files, const std::string& title, std::string svg) {
    PrintJob job = emptyJob(texts, files, title);
    job.picture = std::move(svg);
    return job;
}

PrintJob printedGrid(const Services& services, const std::string& title, const Grid& grid,
                     const GridFont& font) {
    PrintJob job = emptyJob(services.texts, services.files, title);
    job.grid = &grid;
    job.font = font;
    job.columnGap = kColumnGap;
    const auto columns = std::make_shared<std::vector<ColumnText>>();
    for (std::size_t i = 0; i < grid.columns().size(); ++i) columns->emplace_back(grid, i, services.numbers);
    job.cellText = [columns](std::size_t column, Row row) { return (*columns)[column].of(row); };
    return job;
}

}  // namespace hl
