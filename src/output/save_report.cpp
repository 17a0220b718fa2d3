#include "output/save_report.h"

#include <limits>

#include "base/size_text.h"
#include "base/text.h"
#include "output/report_file.h"
#include "output/report_walk.h"
#include "robustness/trap.h"
#include "scan/records.h"
#include "scan/yield.h"

namespace hl {

namespace {

constexpr std::int32_t kAllLevels = 999;
constexpr std::int32_t kAsTheControlsSay = -1;
constexpr int kNotWhole = -1;

// Mode 4 has the unit of mode 5 here. Neither can be chosen.
std::string_view unitInTitle(int sizeMode) {
    constexpr std::array<std::string_view, 5> kUnits = {" (Bytes)", " (KB)", " (MB)", " (GB)", " (TB)"};
    return sizeMode < static_cast<int>(kUnits.size()) ? kUnits[static_cast<std::size_t>(sizeMode)] : "";
}

}  // namespace

/// The local values of one run of SPEICHERN.
struct SaveForm::Run {
    std::string path;
    int scope = -1;
    std::int32_t levels = -1;
    char delimiter = ',';
    Row start = kNoRow;
    bool IsTextFormat = false;
    int sizeMode = 0;
    int decimals = 0;
    std::uint64_t rows = 0;
    bool written = false;

    DebugValues values() const {
        return {"path=" + visible(path),
                "scope=" + std::to_string(scope),
                "levels=" + std::to_string(levels),
                "delimiter=" + std::to_string(delimiter),
                "start=" + std::to_string(std::int64_t{start}),
                "IsTextFormat=" + std::to_string(IsTextFormat),
                "FileSizeFormat=" + std::to_string(sizeMode),
                "decimals=" + std::to_string(decimals),
                "rows=" + std::to_string(rows),
                "written=" + std::to_string(written)};
    }
};

SaveForm::SaveForm(const SaveServices& services) : services_(services) {
    fillControls();
    selectOption(optWasSpeichern, kAllFolders);
    optWasSpeichern[kSelectedFolder].enabled = services_.tvwPL.selectedCount() > 0;
    selectOption(optLevels, kUnfoldedLevels);
    cboFormat.index = kFormatTxt;
    cboDelimiter.index = kDelimiterTab;
}

void SaveForm::fillControls() {
    const Texts& texts = services_.texts;
    caption = texts.TL(3612, "Speichern");
    lblWasSpeichern = texts.TL(3709, "Was soll gespeichert werden?");
    optWasSpeichern[kAllFolders].caption = texts.TL(3710, "Alle Ordner");
    optWasSpeichern[kSelectedFolder].caption = texts.TL(3711, "Ausgewählter Ordner");
    lblLevels = texts.TL(3524, "Wieviele Ordnerebenen sollen gespeichert werden?");
    optLevels[kAllFolderLevels].caption = texts.TL(3608, "Alle Ordnerebenen");
    lblLevelsUnit = texts.TL(3611, "Ordnerebenen");
    optLevels[kUnfoldedLevels].caption = texts.TL(3607, "Aktuelle Ordneransicht");
    lblFormat = texts.TL(3647, "Dateiformat:");
    cboFormat.items = {"TXT", "CSV"};
    lblDelimiter = texts.TL(3734, "Trennzeichen:");
    cboDelimiter.items = {texts.TL(3730, "Komma"), texts.TL(3731, "Semikolon"), texts.TL(3732, "Tabulator"),
                          texts.TL(3733, "Leerzeichen")};
    OKButton.caption = texts.TL(3610, "OK");
    CancelButton.caption = texts.TL(3609, "Abbrechen");
}

Form SaveForm::form() {
    std::vector<FormItem> items =
        itemsOf({lblWasSpeichern, optWasSpeichern, lblLevels, optLevels, txtLevels, lblLevelsUnit});
    const FormItem below[] = {{.control = &lblFormat, .row = kRowsOfChoice},
                              {.control = &cboFormat,
                               .row = kRowsOfChoice,
                               .column = 1,
                               .columnSpan = 2,
                               .changed = [this] { cboFormat_Click(); },
                               .name = lblFormat},
                              {.control = &lblDelimiter, .row = kRowsOfChoice + 1},
                              {.control = &cboDelimiter,
                               .row = kRowsOfChoice + 1,
                               .column = 1,
                               .columnSpan = 2,
                               .name = lblDelimiter}};
    items.insert(items.end(), std::begin(below), std::end(below));
    return {.name = "frmSave",
            .caption = caption,
            .items = std::move(items),
            .buttons = {{.control = &OKButton, .changed = [this] { OKButton_Click(); }},
                        {.control = &CancelButton, .changed = [this] { CancelButton_Click(); }}},
            .cancel = [this] { CancelButton_Click(); },
            .loaded = &loaded,
            .hourglass = &hourglass};
}

bool SaveForm::SPEICHERN(std::string& path, std::int32_t levels, std::int32_t delimiter) {
    Run run;
    run.path = path;
    const auto body = [&] {
        applyArguments(levels, delimiter);
        run.scope = GetOptionButtonSelectedIndex(optWasSpeichern);
        run.levels = wantedLevels();
        if (cboDelimiter.index >= 0)
            run.delimiter = kDelimiters.at(static_cast<std::size_t>(cboDelimiter.index));
        hourglass = true;
        run.start = startRow(run.scope);
        if (path.empty()) path = askPath();
        run.path = path;
        if (!path.empty()) {
            setButtonsEnabled(false);
            write(run);
            setButtonsEnabled(true);
        }
        hourglass = false;
        loaded = false;
        return run.written;
    };
    return guarded(services_.diagnostics, kSaveRoutine, "frmSave", body, [&] { return run.values(); });
}

void SaveForm::applyArguments(std::int32_t levels, std::int32_t delimiter) {
    if (levels == 0) {
        selectOption(optLevels, kAllFolderLevels);
    } else if (levels != kAsTheControlsSay) {
        selectOption(optLevels, kSomeFolderLevels);
        txtLevels.text = std::to_string(levels);
    }
    if (delimiter >= kDelimiterComma && delimiter <= kDelimiterBlank) cboDelimiter.index = delimiter;
}

std::int32_t SaveForm::wantedLevels() const {
    switch (GetOptionButtonSelectedIndex(optLevels)) {
        case kAllFolderLevels:
            return kAllLevels;
        case kSomeFolderLevels:
            break;
        default:
            return 0;
    }
    const auto number = parseInteger(txtLevels.text);
    if (!number) throw Fault(kFaultTypeMismatch, kSaveRoutine, "Type mismatch");
    if (*number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::int32_t>::max())
        raiseOverflow(kSaveRoutine);
    return static_cast<std::int32_t>(*number);
}

Row SaveForm::startRow(int scope) const {
    const Grid& report = services_.tvwPL;
    const auto selected = scope == kSelectedFolder ? report.selectedRows() : std::vector<Row>();
    const Row start = scope != kSelectedFolder ? report.firstRoot()
                      : selected.empty()       ? kNoRow
                                               : selected.front();
    if (start == kNoRow)
        throw Fault(kFaultInvalidCall, kSaveRoutine, "Nothing was read: there is no row to save");
    return start;
}

std::string SaveForm::askPath() const {
    if (services_.dialog == nullptr) return {};
    const std::string root(1, services_.paths.separator);
    if (cboFormat.index == kFormatTxt)
        return services_.dialog->askSavePath({"TXT (*.txt)|*.txt", "txt", root});
    return services_.dialog->askSavePath({"CSV (*.csv)|*.csv", "csv", root});
}

void SaveForm::setButtonsEnabled(bool enabled) {
    OKButton.enabled = CancelButton.enabled = enabled;
    for (OptionButton& option : optLevels) option.enabled = enabled;
}

// The start row alone decides the widths. Those of the counts are measured in the mode of the sizes, which
// makes them too small; a number wider than its column is not cut.
ReportFormat SaveForm::formatOf(const Run& run) const {
    const Texts& texts = services_.texts;
    const NumberFormat& numbers = services_.numbers;
    const auto cell = [&](FolderCell id) {
        const auto value = static_cast<std::int64_t>(services_.tvwPL.number(run.start, id));
        return SizeValue::fromBytes(static_cast<std::uint64_t>(value));
    };
    const auto countWidth = [&](FolderCell id) {
        return characterCount(FormatSizeForMode(run.sizeMode, cell(id), false, false, numbers));
    };
    return {.IsTextFormat = run.IsTextFormat,
            .delimiter = run.delimiter,
            .sizeMode = run.sizeMode,
            .decimals = run.decimals,
            .titles = {texts.TL(3623, "Größe").append(unitInTitle(run.sizeMode)), texts.TL(3624, "Dateien"),
                       texts.TL(3625, "Ordner"), texts.TL(3626, "Pfad")},
            .widths = {characterCount(xFormatFileSizeWithSpacer(run.sizeMode, cell(kSize), 1, false,
                                                                run.decimals, numbers)),
                       countWidth(kFiles), countWidth(kFolders)}};
}

void SaveForm::write(Run& run) {
    run.IsTextFormat = format == ReportLayout::kByName ? lowerCase(run.path).ends_with(".txt")
                                                       : format == ReportLayout::kTxt;
    run.sizeMode = services_.options.FileSizeFormat;
    run.decimals = services_.options.SizeFormatNachkommastellenFolders;

    const int error = openAndWrite(run);
    run.written = error == 0;
    fileError_ = error == kNotWhole ? 0 : error;
    if (services_.dialog == nullptr || error == 0) return;
    if (error != kNotWhole) raiseFileError(error, run.path, leftBehindText(services_.texts, leftBehind_));
    throw Fault(kFaultInvalidCall, kSaveRoutine, run.path + " was not written");
}

// Opens the file and writes it; returns what writeLines returns.
int SaveForm::openAndWrite(Run& run) {
    int error = 0;
    const auto opened = services_.target == nullptr ? services_.files.replace(run.path, error) : nullptr;
    ReplacingFile* const target = services_.target == nullptr ? opened.get() : services_.target;
    if (target == nullptr) return error;
    error = writeLines(run, *target);
    leftBehind_ = target->leftBehind();
    return error;
}

// Returns a system error code, or kNotWhole if an error lost rows: then an older report is worth more.
int SaveForm::writeLines(Run& run, ReplacingFile& target) const {
    ReportFormat wanted = formatOf(run);
    wanted.forTerminal = target.isTerminal();
    const ReportLines lines(std::move(wanted), services_.numbers);
    ReportFile file(target);
    lines.appendHeader(file.block());

    const std::uint32_t errorsBefore = services_.diagnostics.errcount();
    Yield yield(services_.state, services_.pump);
    ReportWalk walk(services_.tvwPL, services_.paths, lines, file, yield, services_.diagnostics);
    for (Row root = run.start; root != kNoRow && file.error() == 0;
         root = services_.tvwPL.nextSibling(root)) {
        walk.writeTree(root, run.levels);
        run.rows = walk.rowsWritten();
        if (run.scope == kSelectedFolder) break;
    }
    return services_.diagnostics.errcount() == errorsBefore ? file.commit() : kNotWhole;
}

void SaveForm::OKButton_Click() {
    std::string path;
    SPEICHERN(path, kAsTheControlsSay, kAsTheControlsSay);
}

void SaveForm::cboFormat_Click() {
    cboDelimiter.index = cboFormat.index == kFormatTxt ? kDelimiterTab : kDelimiterSemicolon;
}

void SaveForm::FormatFileSizeSave(SizeValue value, std::string& text) const {
    text.clear();
    savedSize(services_.options.FileSizeFormat, services_.options.SizeFormatNachkommastellenFolders,
              services_.numbers)
        .append(text, value.bytes());
}

}  // namespace hl
