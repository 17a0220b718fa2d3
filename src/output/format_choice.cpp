#include "output/format_choice.h"

namespace hl {

FormatChoice::FormatChoice(const Texts& texts) {
    lblFormat = texts.TL(3647, "Dateiformat:");
    for (const ReportFormat& format : reportFormats()) cboFormat.items.emplace_back(format.caption);
    cboFormat.index = kFormatTxt;
    lblDelimiter = texts.TL(3734, "Trennzeichen:");
    cboDelimiter.items = {texts.TL(3730, "Komma"), texts.TL(3731, "Semikolon"), texts.TL(3732, "Tabulator"),
                          texts.TL(3733, "Leerzeichen")};
    cboDelimiter.index = kDelimiterTab;
}

const ReportFormat& FormatChoice::chosenFormat() const {
    return reportFormats()[static_cast<std::size_t>(cboFormat.index)];
}

char FormatChoice::chosenDelimiter() const {
    return kDelimiters.at(static_cast<std::size_t>(cboDelimiter.index));
}

void FormatChoice::cboFormat_Click() {
    cboDelimiter.index = chosenFormat().delimiter;
}

std::string FormatChoice::askPath(SaveDialog& dialog, const PathRules& paths) const {
    const ReportFormat& format = chosenFormat();
    const std::string name(format.name);
    const std::string filter = std::string(format.caption).append(" (*.").append(name).append(")|*.");
    return dialog.askSavePath({filter + name, name, std::string(1, paths.separator)});
}

std::vector<FormItem> FormatChoice::formatItems(int row, int columnSpan) {
    return {{.control = &lblFormat, .row = row},
            {.control = &cboFormat,
             .row = row,
             .column = 1,
             .columnSpan = columnSpan,
             .changed = [this] { cboFormat_Click(); },
             .name = lblFormat},
            {.control = &lblDelimiter, .row = row + 1},
            {.control = &cboDelimiter,
             .row = row + 1,
             .column = 1,
             .columnSpan = columnSpan,
             .name = lblDelimiter}};
}

}  // namespace hl
