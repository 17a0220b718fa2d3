// frmSave saves the folder report to a file, as the user asks in a dialog or as a command line says.
//
// The file's name decides the format unless a command line did: TXT for ".txt", else CSV. The older file
// stays until the new one is complete. For the thread of the logic; messages run meanwhile.
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

/// A question for the system's save dialog, which warns before it overwrites a file.
struct SaveQuestion {
    std::string filter;            ///< "TXT (*.txt)|*.txt"
    std::string defaultExtension;  ///< What is appended to a name without an extension.
    std::string initialFolder;
};

class SaveDialog {
  public:
    virtual ~SaveDialog() = default;
    /// Returns the chosen path; empty if the user cancelled.
    virtual std::string askSavePath(const SaveQuestion& question) = 0;
};

/// What the form uses; everything outlives it.
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
    SaveDialog* dialog = nullptr;     ///< Null in a run without a window.
    ReplacingFile* target = nullptr;  ///< Where the report is written; null if the path is still to be
                                      ///< opened.
};

/// The indexes of the items in the form's lists.
enum SaveFormat : int { kFormatTxt, kFormatCsv };
enum SaveDelimiter : int { kDelimiterComma, kDelimiterSemicolon, kDelimiterTab, kDelimiterBlank };

class SaveForm {
  public:
    /// Makes the form with translated texts and preset values.
    explicit SaveForm(const SaveServices& services);
    SaveForm(const SaveForm&) = delete;
    SaveForm& operator=(const SaveForm&) = delete;

    /// Writes the report as the controls say. Returns true if it was written. Errors are reported, except for
    /// a file that cannot be written in a run without a window: for that the caller asks fileError(). If an
    /// error loses rows, nothing is written either.
    ///
    /// If `path` is empty, the dialog asks for it, and nothing is written without an answer. `levels` 0
    /// selects all levels, -1 leaves the controls as they are, any other number is that of the levels. A
    /// `delimiter` from 0 to 3 is selected in the list.
    ///
    /// If the user types 0 levels, only unfolded rows are written. "All" goes down to level 999. After an
    /// error the buttons stay disabled; a form can be used only once.
    bool SPEICHERN(std::string& path, std::int32_t levels, std::int32_t delimiter);

    /// The system's code of the error that kept the file from being written in a run without a window, or 0.
    int fileError() const { return fileError_; }
    /// The path of an unfinished file that could not be removed; see ReplacingFile.
    const std::string& leftBehind() const { return leftBehind_; }

    void OKButton_Click();
    void CancelButton_Click() { loaded = false; }
    /// Chooses the delimiter that belongs to the format.
    void cboFormat_Click();
    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();
    /// Returns the key, or 0 for one that cannot be part of a number of levels.
    static char32_t txtLevels_KeyPress(char32_t key) { return digitKey(key); }

    /// Formats a size as a CSV report writes it.
    void FormatFileSizeSave(SizeValue value, std::string& text) const;

    ReportLayout format = ReportLayout::kByName;
    std::string caption;
    std::string lblWasSpeichern, lblLevels, lblLevelsUnit, lblFormat, lblDelimiter;
    std::array<OptionButton, 2> optWasSpeichern;
    std::array<OptionButton, 3> optLevels;
    TextBox txtLevels;
    ComboBox cboFormat, cboDelimiter;
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program is working.
    bool loaded = true;      ///< False once the form is done with.

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
