// frmSave asks what of the folder report is to be saved, and writes it.
//
// The file's name decides the format: TXT for ".txt", else CSV. The older file stays until the new one is
// complete. For the thread of the logic; messages run meanwhile.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "output/folder_choice.h"
#include "output/format_choice.h"
#include "output/report_order.h"
#include "platform/form.h"

namespace hl {

class SaveForm : public FormatChoice {
  public:
    /// Makes the form with translated texts and preset values. Everything given outlives it.
    SaveForm(ScanContext& scan, SaveDialog& dialog);

    /// Asks for the path and writes the report as the controls say; without a path nothing is written.
    /// Returns true if it was written. Errors are reported. If an error loses rows, nothing is written
    /// either.
    ///
    /// If the user types 0 levels, only unfolded rows are written. "All" goes down to level 999. After an
    /// error the buttons stay disabled; a form can be used only once.
    bool SPEICHERN();

    void OKButton_Click() { SPEICHERN(); }
    void CancelButton_Click() { loaded = false; }
    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();
    /// Returns the key, or 0 for one that cannot be part of a number of levels.
    static char32_t txtLevels_KeyPress(char32_t key) { return digitKey(key); }

    std::string caption;
    std::string lblWasSpeichern, lblLevels, lblLevelsUnit;
    std::array<OptionButton, 2> optWasSpeichern;
    std::array<OptionButton, 3> optLevels;
    TextBox txtLevels;
    CheckBox chkSpace;  ///< Adds the space on the disk and the newest change.
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program is working.
    bool loaded = true;      ///< False once the form is done with.

  private:
    void fillControls();
    std::int32_t wantedLevels() const;
    void setButtonsEnabled(bool enabled);
    bool write(ReportRun& run);

    ScanContext& scan_;
    SaveDialog& dialog_;
};

}  // namespace hl
