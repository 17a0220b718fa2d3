// Saving a flat list: the fields of a line, and the form.
#include "output/save_files.h"

#include <cmath>
#include <vector>

#include "app/setting_keys.h"
#include "app/simple_value.h"
#include "base/text.h"
#include "output/report_file.h"
#include "robustness/trap.h"
#include "views/cell_text.h"

namespace hl {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr std::string_view kFormulaStarts = "=+-@\t\r";

// --- the fields of a line

/// The columns that are written, each with its cell.
class Fields {
  public:
    Fields(const Grid& grid, const NumberFormat& numbers, bool text, char delimiter, bool formulasAsText)
        : grid_(grid),
          numbers_(numbers),
          isText_(text),
          delimiter_(delimiter),
          formulasAsText_(formulasAsText) {
        const auto& columns = grid.columns();
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (columns[i].saved && (i == 0 || columns[i].visible))
                fields_.push_back({i, grid.cell(columns[i].key), ColumnText(grid, i, numbers)});
    }

    void appendHeader(std::string& out) const {
        for (const Field& field : fields_) append(out, field, grid_.columns()[field.column].title);
        out.append(kLineEnd);
    }
    void appendRow(std::string& out, Row row) const {
        for (const Field& field : fields_) append(out, field, valueOf(field, row));
        out.append(kLineEnd);
    }

  private:
    struct Field {
        std::size_t column;
        CellId cell;  ///< kNoCell stands for the row's text.
        ColumnText shown;
    };

    void append(std::string& out, const Field& field, const std::string& value) const {
        if (field.column != 0) out += delimiter_;
        if (!isText_) out += '"';
        out.append(value);
        if (!isText_) out += '"';
    }

    std::string valueOf(const Field& field, Row row) const {
        if (field.cell == kNoCell) return written(grid_.text(row));
        if (grid_.cells().isText(field.cell)) return written(grid_.cellText(row, field.cell));
        if (grid_.cells().isDate(field.cell)) return std::string(trimBlanks(field.shown.of(row)));
        const double number = field.shown.number(row);
        return std::isnan(number) ? "" : replaceAll(SimpleValue(number).text(), ".", numbers_.decimal);
    }

    // In TXT each row must stay on one line, whatever a name holds.
    std::string written(std::string_view name) const {
        std::string text = decodable(name);
        if (formulasAsText_ && !text.empty() && kFormulaStarts.find(text.front()) != std::string_view::npos)
            text.insert(0, "'");
        return isText_ ? replaceAll(replaceAll(text, "\r", kReplacement), "\n", kReplacement) : text;
    }

    const Grid& grid_;
    const NumberFormat& numbers_;
    const bool isText_;
    const char delimiter_;
    const bool formulasAsText_;
    std::vector<Field> fields_;
};

}  // namespace

// --- the form

SaveFilesForm::SaveFilesForm(const SaveFilesServices& services) : services_(services) {
    const Texts& texts = services_.texts;
    caption = texts.TL(3612, "Speichern");
    lblFormat = texts.TL(3647, "Dateiformat:");
    cboFormat.items = {"TXT", "CSV"};
    cboFormat.index = kFormatTxt;
    lblDelimiter = texts.TL(3734, "Trennzeichen:");
    cboDelimiter.items = {texts.TL(3730, "Komma"), texts.TL(3731, "Semikolon"), texts.TL(3732, "Tabulator"),
                          texts.TL(3733, "Leerzeichen")};
    cboDelimiter.index = kDelimiterTab;
    chkFormulas.caption = texts.TL(9645, "Texten mit =, +, - oder @ am Anfang ein ' voranstellen");
    chkFormulas.enabled = false;
    const std::string kept = services_.settings.GetSettings(
        kKeyCsvEscapeFormulas.section, kKeyCsvEscapeFormulas.key, kKeyCsvEscapeFormulas.defaultValue);
    chkFormulas.checked = kept == "1";
    OKButton.caption = texts.TL(3610, "OK");
    CancelButton.caption = texts.TL(3609, "Abbrechen");
}

Form SaveFilesForm::form() {
    return {.name = "frmSaveFiles",
            .caption = caption,
            .items = {{.control = &lblFormat},
                      {.control = &cboFormat,
                       .column = 1,
                       .changed = [this] { cboFormat_Click(); },
                       .name = lblFormat},
                      {.control = &lblDelimiter, .row = 1},
                      {.control = &cboDelimiter, .row = 1, .column = 1, .name = lblDelimiter},
                      {.control = &chkFormulas, .row = 2, .columnSpan = 2}},
            .buttons = {{.control = &OKButton, .changed = [this] { OKButton_Click(); }},
                        {.control = &CancelButton, .changed = [this] { CancelButton_Click(); }}},
            .cancel = [this] { CancelButton_Click(); },
            .loaded = &loaded,
            .hourglass = &hourglass};
}

void SaveFilesForm::cboFormat_Click() {
    cboDelimiter.index = cboFormat.index == kFormatTxt ? kDelimiterTab : kDelimiterSemicolon;
    chkFormulas.enabled = cboFormat.index == kFormatCsv;
}

bool SaveFilesForm::SPEICHERN() {
    return guarded(services_.diagnostics, kSaveRoutine, "frmSaveFiles", [&] {
        hourglass = true;
        const std::string path = askPath();
        if (!path.empty()) {
            setControlsEnabled(false);
            keepSetting();
            write(path);
            setControlsEnabled(true);
        }
        hourglass = false;
        loaded = false;
        return !path.empty();
    });
}

std::string SaveFilesForm::askPath() const {
    const std::string root(1, services_.paths.separator);
    if (cboFormat.index == kFormatTxt)
        return services_.dialog.askSavePath({"TXT (*.txt)|*.txt", "txt", root});
    return services_.dialog.askSavePath({"CSV (*.csv)|*.csv", "csv", root});
}

void SaveFilesForm::setControlsEnabled(bool enabled) {
    OKButton.enabled = CancelButton.enabled = cboFormat.enabled = cboDelimiter.enabled = enabled;
    chkFormulas.enabled = enabled && cboFormat.index == kFormatCsv;
}

void SaveFilesForm::keepSetting() {
    if (cboFormat.index == kFormatCsv)
        services_.settings.StoreSettings(kKeyCsvEscapeFormulas.section, kKeyCsvEscapeFormulas.key,
                                         chkFormulas.checked ? 1 : 0);
}

void SaveFilesForm::write(const std::string& path) const {
    const bool text = cboFormat.index == kFormatTxt;
    const char delimiter = kDelimiters.at(static_cast<std::size_t>(cboDelimiter.index));
    const Fields fields(services_.grid, services_.numbers, text, delimiter, !text && chkFormulas.checked);

    int error = 0;
    const auto target = services_.files.replace(path, error);
    if (!target) raiseFileError(error, path, {});
    ReportFile file(*target);
    if (!text) fields.appendHeader(file.block());
    const Grid& grid = services_.grid;
    for (Row row = grid.firstRoot(); row != kNoRow && file.error() == 0; row = grid.nextSibling(row)) {
        fields.appendRow(file.block(), row);
        file.endLine();
    }
    if (file.commit() != 0)
        raiseFileError(file.error(), path, leftBehindText(services_.texts, target->leftBehind()));
}

void Save_Files(const SaveFilesServices& services, const Window& window) {
    if (services.grid.rowCount() == 0) return;
    SaveFilesForm frmSaveFiles(services);
    Form form = frmSaveFiles.form();
    window.dialogs.showForm(form);
}

}  // namespace hl
