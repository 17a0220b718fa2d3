// frmSaveFiles saves a flat list to a file as its grid stands, row by row, with the visible columns.
//
// The user chooses the format, whatever the file's name. Numbers are written as the cells hold them, dates as
// the list shows them. The first column is always written. Anybody can give a file a name that an office
// program takes for a formula: if asked to, the form puts a ' in front of such texts. The older file stays
// until the new one is complete. For the thread of the logic.
#pragma once

#include <string>

#include "app/services.h"
#include "grid/grid.h"
#include "output/format_choice.h"
#include "platform/form.h"
#include "platform/window.h"

namespace hl {

class SaveFilesForm : public FormatChoice {
  public:
    /// Makes the form with translated texts and preset values.
    SaveFilesForm(const Services& services, const Grid& list, SaveDialog& dialog);

    /// Asks for the path and writes the list as the controls say; without a path nothing is written. Returns
    /// true if it was written. An error is reported; the form then stays, with its controls disabled.
    bool SPEICHERN();

    void OKButton_Click() { SPEICHERN(); }
    void CancelButton_Click() { loaded = false; }
    void cboFormat_Click() override;
    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    std::string caption;
    CheckBox chkFormulas;  ///< The value of kKeyCsvEscapeFormulas; it counts only for a format with formulas.
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program is working.
    bool loaded = true;      ///< False once the form is done with.

  private:
    void setControlsEnabled(bool enabled);
    void keepSetting();
    void write(const std::string& path) const;

    const Services& services_;
    const Grid& list_;
    SaveDialog& dialog_;
};

/// Asks the user and saves. Nothing happens for a list without rows.
void Save_Files(const Services& services, const Grid& list, SaveDialog& dialog, const Window& window);

}  // namespace hl
