// Saving a list: the fields of a line, and the form.
#include "output/save_files.h"

#include <utility>
#include <vector>

#include "app/setting_keys.h"
#include "base/text.h"
#include "output/report_file.h"
#include "robustness/trap.h"
#include "views/cell_text.h"

namespace hl {

namespace {

/// The columns of a list that are written, and the fields of its rows.
class ListFields {
  public:
    ListFields(const Grid& grid, const NumberFormat& numbers) : grid_(grid) {
        const auto& columns = grid.columns();
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (columns[i].saved && (i == 0 || columns[i].visible))
                sources_.push_back({i, grid.cell(columns[i].key), ColumnText(grid, i, numbers), {}});
        fields_.resize(sources_.size());
    }

    std::vector<TableColumn> columns() const {
        std::vector<TableColumn> columns;
        for (const Source& source : sources_) {
            const GridColumn& shown = grid_.columns()[source.column];
            columns.push_back(
                {shown.savedTitle.empty() ? shown.title : shown.savedTitle, kindOf(source.cell)});
        }
        return columns;
    }

    /// Returns the fields of a row; the next call changes them.
    const ReportRow& of(Row row, const ReportWriter& writer) {
        for (std::size_t i = 0; i < sources_.size(); ++i) {
            Source& source = sources_[i];
            if (kindOf(source.cell) == FieldKind::kValue) {
                fields_[i].number = source.shown.number(row);
                continue;
            }
            source.text.clear();
            appendText(source, row, writer);
            fields_[i].text = source.text;
        }
        return fields_;
    }

  private:
    struct Source {
        std::size_t column;
        CellId cell;  ///< kNoCell stands for the row's text.
        ColumnText shown;
        std::string text;  ///< The field of the current row.
    };

    FieldKind kindOf(CellId cell) const {
        const bool isText = cell == kNoCell || grid_.cells().isText(cell) || grid_.cells().isDate(cell);
        return isText ? FieldKind::kText : FieldKind::kValue;
    }

    void appendText(Source& source, Row row, const ReportWriter& writer) const {
        if (source.cell == kNoCell)
            writer.appendText(source.text, grid_.text(row));
        else if (grid_.cells().isText(source.cell))
            writer.appendText(source.text, grid_.cellText(row, source.cell));
        else  // A date is written as the format of the options makes it.
            source.text += trimBlanks(source.shown.of(row));
    }

    const Grid& grid_;
    std::vector<Source> sources_;
    ReportRow fields_;
};

}  // namespace

// --- the form

SaveFilesForm::SaveFilesForm(const Services& services, const Grid& list, SaveDialog& dialog)
    : FormatChoice(services.texts), services_(services), list_(list), dialog_(dialog) {
    const Texts& texts = services_.texts;
    caption = texts.TL(3612, "Speichern");
    chkFormulas.caption = texts.TL(9645, "Texten mit =, +, - oder @ am Anfang ein ' voranstellen");
    chkFormulas.enabled = false;
    const std::string kept = services_.settings.GetSettings(
        kKeyCsvEscapeFormulas.section, kKeyCsvEscapeFormulas.key, kKeyCsvEscapeFormulas.defaultValue);
    chkFormulas.checked = kept == "1";
    OKButton.caption = texts.TL(3610, "OK");
    CancelButton.caption = texts.TL(3609, "Abbrechen");
}

Form SaveFilesForm::form() {
    std::vector<FormItem> items = formatItems(0, 1);
    items.push_back({.control = &chkFormulas, .row = 2, .columnSpan = 2});
    return {.name = "frmSaveFiles",
            .caption = caption,
            .items = std::move(items),
            .buttons = {{.control = &OKButton, .changed = [this] { OKButton_Click(); }},
                        {.control = &CancelButton, .changed = [this] { CancelButton_Click(); }}},
            .cancel = [this] { CancelButton_Click(); },
            .loaded = &loaded,
            .hourglass = &hourglass};
}

void SaveFilesForm::cboFormat_Click() {
    FormatChoice::cboFormat_Click();
    chkFormulas.enabled = chosenFormat().hasFormulas;
}

bool SaveFilesForm::SPEICHERN() {
    return guarded(services_.diagnostics, {.module = "frmSaveFiles"}, [&] {
        hourglass = true;
        const std::string path = askPath(dialog_, services_.paths);
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

void SaveFilesForm::setControlsEnabled(bool enabled) {
    OKButton.enabled = CancelButton.enabled = cboFormat.enabled = cboDelimiter.enabled = enabled;
    chkFormulas.enabled = enabled && chosenFormat().hasFormulas;
}

void SaveFilesForm::keepSetting() {
    if (chosenFormat().hasFormulas)
        services_.settings.StoreSettings(kKeyCsvEscapeFormulas.section, kKeyCsvEscapeFormulas.key,
                                         chkFormulas.checked ? 1 : 0);
}

void SaveFilesForm::write(const std::string& path) const {
    const auto made = services_.files.replace(path);
    if (!made) raiseFileError(made.error(), path, {});
    ReplacingFile& target = **made;
    ListFields fields(list_, services_.numbers);
    const auto writer = chosenFormat().writer({.columns = fields.columns(),
                                               .delimiter = chosenDelimiter(),
                                               .forTerminal = target.isTerminal(),
                                               .formulasAsText = chkFormulas.checked},
                                              services_.numbers);
    ReportFile file(target);
    writer->begin(file.block());
    for (Row row = list_.firstRoot(); row != kNoRow && file.isFine(); row = list_.tree().following(row)) {
        writer->row(file.block(), fields.of(row, *writer));
        file.endLine();
    }
    writer->end(file.block());
    if (const Result<> written = file.commit(); !written)
        raiseFileError(written.error(), path, leftBehindText(services_.texts, target.leftBehind()));
}

void Save_Files(const Services& services, const Grid& list, SaveDialog& dialog, const Window& window) {
    if (list.rowCount() == 0) return;
    SaveFilesForm frmSaveFiles(services, list, dialog);
    Form form = frmSaveFiles.form();
    window.dialogs.showForm(form);
}

}  // namespace hl
