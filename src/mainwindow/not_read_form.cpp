#include "mainwindow/not_read_form.h"

#include "base/text.h"
#include "mainwindow/saved_text.h"
#include "robustness/trap.h"
#include "scan/not_read.h"
#include "scan/rollup.h"

namespace hl {

namespace {
constexpr const char* kNotReadModule = "frmNotRead";
}

NotReadForm::NotReadForm(const Services& services, const Grid& report, SaveDialog& dialog,
                         const Window& window)
    : services_(services), dialog_(dialog), window_(window) {
    const Texts& texts = services_.texts;
    const auto count = [&](std::size_t number) {
        return formatNumber(static_cast<double>(number), {}, services_.numbers);
    };
    const std::size_t all = foldersNotRead(report);
    const std::vector<Row> rows = rowsNotRead(report, kMost);
    for (const Row row : rows) {
        const std::string path = Report_GetFullpathOfNode(report, row, false, services_.paths);
        const std::string_view reason = trimBlanks(report.rowNote(row));
        // A line break in a name would begin another line.
        lines_.append(replaceAll(replaceAll(path, "\n", "\uFFFD"), "\r", "\uFFFD"));
        lines_.append("\t").append(reason).append("\r\n");
        txtList.text.append(visible(path)).append("\r\n    ").append(visible(reason)).append("\r\n");
    }
    caption = texts.TL(9809, "Nicht gelesene Ordner");
    lblCount = texts.TL(9807, "%1 Ordner nicht gelesen", {count(all)});
    if (all > rows.size())
        lblCount += " (" + texts.TL(9555, "... und %1 weitere", {count(all - rows.size())}) + ")";
    cmdSpeichern.caption = texts.TL(3612, "Speichern");
    cmdClose.caption = texts.TL(3610, "OK");
}

Form NotReadForm::form() {
    return {.name = kNotReadModule,
            .caption = caption,
            .items = {{.control = &lblCount}, {.control = &txtList, .row = 1, .name = caption}},
            .buttons = {{.control = &cmdClose, .changed = [this] { loaded = false; }},
                        {.control = &cmdSpeichern, .changed = [this] { cmdSpeichern_Click(); }}},
            .cancel = [this] { loaded = false; },
            .loaded = &loaded};
}

void NotReadForm::cmdSpeichern_Click() {
    guarded(services_.diagnostics, {.module = kNotReadModule},
            [&] { saveText(services_, dialog_, window_, lines_); });
}

}  // namespace hl
