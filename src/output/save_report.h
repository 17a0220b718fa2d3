// frmSave: saves the folder report to a file, as the user asks for it in a dialog or as a command line says.
//
// The format follows the name of the file unless a command line chose it: TXT for one that ends in ".txt",
// CSV for any other. The older file stays until the new one is complete. Thread of the logic; messages run
// meanwhile.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "app/command_line.h"
#include "app/options.h"
#include "app/texts.h"
#include "base/number_format.h"
#include "base/path.h"
#include "base/size_value.h"
#include "grid/grid.h"
#include "output/folder_choice.h"
#include "output/report_lines.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/message_pump.h"
#include "robustness/debug.h"
#include "scan/scan_state.h"

namespace hl {

/// What the system's save dialog is asked. It warns before it overwrites.
struct SaveQuestion {
    std::string filter;            ///< "TXT (*.txt)|*.txt"
    std::string defaultExtension;  ///< For a name without one.
    std::string initialFolder;
};

class SaveDialog {
  public:
    virtual ~SaveDialog() = default;
    /// The path chosen; empty if the user cancelled.
    virtual std::string askSavePath(const SaveQuestion& question) = 0;
};

/// All of it outlives the form.
struct SaveServices {
    const Grid& tvwPL;
    const Options& options;
    const Texts& texts;
    const NumberFormat& numbers;
    Files& files;
    Diagnostics& diagnostics;
    ScanState& state;
    MessagePump& pump;
    const PathRules& paths;
    SaveDialog* dialog = nullptr;     ///< None in a run with no window.
    ReplacingFile* target = nullptr;  ///< What is written; none if the path is still to be opened.
};

/// Indexes of the items of the form's lists.
enum SaveFormat : int { kFormatTxt, kFormatCsv };
enum SaveDelimiter : int { kDelimiterComma, kDelimiterSemicolon, kDelimiterTab, kDelimiterBlank };

class SaveForm {
  public:
    /// As it is loaded: translated, with its presets.
    explicit SaveForm(const SaveServices& services);
    SaveForm(const SaveForm&) = delete;
    SaveForm& operator=(const SaveForm&) = delete;

    /// Writes the report by the controls. True if it was written; what went wrong is reported, but for a file
    /// that cannot be written in a run with no window: that is left to whoever asks for fileError(). After an
    /// error that costs rows nothing is written either.
    ///
    /// `path` may be empty: the dialog then asks for it, and nothing is written without an answer. A `levels`
    /// of 0 selects all levels, one of -1 leaves the controls as they are, any other is a number of levels. A
    /// `delimiter` from 0 to 3 is chosen in the list.
    ///
    /// A number of levels that is typed in as 0 means what is unfolded. "All" goes down to level 999. After
    /// an error the buttons stay disabled; the form serves once.
    bool SPEICHERN(std::string& path, std::int32_t levels, std::int32_t delimiter);

    /// What kept the file from being written in a run with no window: the system's code, or 0.
    int fileError() const { return fileError_; }
    /// See ReplacingFile.
    const std::string& leftBehind() const { return leftBehind_; }

    void OKButton_Click();
    void CancelButton_Click() { loaded = false; }
    /// Each format has a delimiter of its own.
    void cboFormat_Click();
    /// How a window shows the form. It refers to this object's controls.
    Form form();
    /// The key, or 0 for one that a number of levels has no use for.
    static char32_t txtLevels_KeyPress(char32_t key) { return digitKey(key); }

    /// A size as a CSV report writes it.
    void FormatFileSizeSave(SizeValue value, std::string& text) const;

    ReportLayout format = ReportLayout::kByName;
    std::string caption;
    std::string lblWasSpeichern, lblLevels, lblLevelsUnit, lblFormat, lblDelimiter;
    std::array<OptionButton, 2> optWasSpeichern;
    std::array<OptionButton, 3> optLevels;
    TextBox txtLevels;
    ComboBox cboFormat, cboDelimiter;
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program works.
    bool loaded = true;      ///< False: the form is done with.

  private:
    struct Run;

    void fillControls();
    void applyArguments(std::int32_t levels, std::int32_t delimiter);
    std::int32_t wantedLevels() const;
    Row startRow(int scope) const;
    std::string askPath() const;
    void setButtonsEnabled(bool enabled);
    ReportFormat formatOf(const Run& run) const;
    void write(Run& run);
    int openAndWrite(Run& run);
    int writeLines(Run& run, ReplacingFile& target) const;

    SaveServices services_;
    int fileError_ = 0;
    std::string leftBehind_;
};

}  // namespace hl
