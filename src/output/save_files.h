// frmSaveFiles: saves a flat list to a file as its grid stands, row by row, with the columns that show.
//
// TXT has no header and no quotes; CSV has both, all fields in double quotes, with no escape for a double
// quote in a name. The format is the one chosen, whatever the name of the file. Numbers are written as the
// cells hold them, dates as the list shows them. The first column is always written and the last one never.
// An office program takes a text of CSV that begins with =, +, -, @, a tab or CR for a formula, quoted or
// not, and whoever names a file can write one: asked to, the form puts a ' in front of such texts. The older
// file stays until the new one is complete. Thread of the logic.
#pragma once

#include <string>

#include "app/settings.h"
#include "output/save_report.h"
#include "platform/window.h"

namespace hl {

/// All of it outlives the form.
struct SaveFilesServices {
    const Grid& grid;  ///< The list to be saved.
    const Texts& texts;
    const NumberFormat& numbers;
    SettingsStore& settings;
    Files& files;
    Diagnostics& diagnostics;
    const PathRules& paths;
    SaveDialog& dialog;
};

class SaveFilesForm {
  public:
    /// As it is loaded: translated, with its presets.
    explicit SaveFilesForm(const SaveFilesServices& services);
    SaveFilesForm(const SaveFilesForm&) = delete;
    SaveFilesForm& operator=(const SaveFilesForm&) = delete;

    /// Asks for the path and writes the list by the controls; nothing is written without a path. True if it
    /// was written; what went wrong is reported, and the form then stays with its controls disabled.
    bool SPEICHERN();

    void OKButton_Click() { SPEICHERN(); }
    void CancelButton_Click() { loaded = false; }
    /// Each format has a delimiter of its own.
    void cboFormat_Click();
    /// How a window shows the form. It refers to this object's controls.
    Form form();

    std::string caption;
    std::string lblFormat, lblDelimiter;
    ComboBox cboFormat, cboDelimiter;
    CheckBox chkFormulas;  ///< As kKeyCsvEscapeFormulas has it; of CSV alone.
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program works.
    bool loaded = true;      ///< False: the form is done with.

  private:
    void setControlsEnabled(bool enabled);
    void keepSetting();
    std::string askPath() const;
    void write(const std::string& path) const;

    SaveFilesServices services_;
};

/// Asks the user and saves. Nothing happens for a list without rows.
void Save_Files(const SaveFilesServices& services, Window& window);

}  // namespace hl
