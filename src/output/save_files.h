// frmSaveFiles saves a flat list to a file as its grid stands, row by row, with the visible columns.
//
// TXT has no header and no quotes; CSV has both, with all fields in double quotes and no escape for a double
// quote in a name. The user chooses the format, whatever the file's name. Numbers are written as the cells
// hold them, dates as the list shows them. The first column is always written. An office
// program takes a CSV text that begins with =, +, -, @, a tab or CR for a formula, quoted or not, and anybody
// can give a file such a name: if asked to, the form puts a ' in front of such texts. The older file stays
// until the new one is complete. For the thread of the logic.
#pragma once

#include <string>

#include "app/settings.h"
#include "output/save_report.h"
#include "platform/window.h"

namespace hl {

/// What the form uses; everything outlives it.
struct SaveFilesServices {
    const Grid& grid;  ///< The list that is saved.
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
    /// Makes the form with translated texts and preset values.
    explicit SaveFilesForm(const SaveFilesServices& services);
    SaveFilesForm(const SaveFilesForm&) = delete;
    SaveFilesForm& operator=(const SaveFilesForm&) = delete;

    /// Asks for the path and writes the list as the controls say; without a path nothing is written. Returns
    /// true if it was written. An error is reported; the form then stays, with its controls disabled.
    bool SPEICHERN();

    void OKButton_Click() { SPEICHERN(); }
    void CancelButton_Click() { loaded = false; }
    /// Chooses the delimiter that belongs to the format.
    void cboFormat_Click();
    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    std::string caption;
    std::string lblFormat, lblDelimiter;
    ComboBox cboFormat, cboDelimiter;
    CheckBox chkFormulas;  ///< The value of kKeyCsvEscapeFormulas; it counts for CSV only.
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program is working.
    bool loaded = true;      ///< False once the form is done with.

  private:
    void setControlsEnabled(bool enabled);
    void keepSetting();
    std::string askPath() const;
    void write(const std::string& path) const;

    SaveFilesServices services_;
};

/// Asks the user and saves. Nothing happens for a list without rows.
void Save_Files(const SaveFilesServices& services, const Window& window);

}  // namespace hl
