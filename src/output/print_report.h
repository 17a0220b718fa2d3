// frmPrint asks how much of the folder report is to be printed, and shows the print preview of that.
//
// What is unfolded on the screen is printed from the report itself; anything else is printed from a copy,
// which takes as much memory as its rows do. For the thread of the logic; messages run meanwhile.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "output/folder_choice.h"
#include "output/print_job.h"
#include "platform/form.h"
#include "platform/window.h"
#include "scan/scan_context.h"
#include "scan/yield.h"

namespace hl {

class PrintForm {
  public:
    /// Makes the form with translated texts and preset values.
    PrintForm(ScanContext& scan, const Window& window);
    PrintForm(const PrintForm&) = delete;
    PrintForm& operator=(const PrintForm&) = delete;

    /// Prepares what the controls ask for, shows its preview, and then the form is done with. A number of
    /// levels unfolds that many below the uppermost rows, which have level 0. If something fails, that is
    /// reported, and the form stays.
    void Report_print();
    /// Closes the form, and ends a Report_print that is still preparing.
    void CancelButton_Click() { loaded = false; }
    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    std::string caption;
    std::string lblWasDrucken, lblLevels, lblLevelsUnit, lblZoom, lblPercent;
    std::array<OptionButton, 2> optWasDrucken;
    std::array<OptionButton, 3> optLevels;
    TextBox txtLevels, txtZoom;
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program is working.
    bool loaded = true;      ///< False once the form is done with.

  private:
    struct Run;

    void fillControls();
    int wantedZoom() const;
    std::int32_t wantedLevels() const;
    void prepare(Run& run);
    void copyRows(Run& run);
    void unfold(Run& run);
    void fitColumns();

    ScanContext& scan_;
    const Window& window_;
    std::optional<Grid> tvwPL_;  ///< The copy that is printed but not shown.
};

}  // namespace hl
