// frmPrint: asks how much of the folder report is to be printed, and shows the preview of that.
//
// What stands unfolded on the screen is printed from the report itself; anything else from a copy of it,
// which takes as much memory as the rows that it has. Thread of the logic; messages run meanwhile.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "app/options.h"
#include "output/folder_choice.h"
#include "output/print_job.h"
#include "platform/form.h"
#include "platform/message_pump.h"
#include "platform/window.h"
#include "robustness/debug.h"
#include "scan/scan_state.h"
#include "scan/yield.h"

namespace hl {

/// All of it outlives the form.
struct PrintServices {
    Grid& tvwPL;
    const Options& options;
    PrintSources sources;
    const NumberFormat& numbers;
    Diagnostics& diagnostics;
    ScanState& state;
    MessagePump& pump;
    Window& window;
};

class PrintForm {
  public:
    /// As it is loaded: translated, with its presets.
    explicit PrintForm(const PrintServices& services);
    PrintForm(const PrintForm&) = delete;
    PrintForm& operator=(const PrintForm&) = delete;

    /// Prepares what the controls say, shows its preview, and is then done with the form. A number of levels
    /// unfolds so many below the uppermost rows, which have level 0. What went wrong is reported, and the
    /// form stays.
    void Report_print();
    /// Also ends what Report_print is about to prepare.
    void CancelButton_Click() { loaded = false; }
    /// How a window shows the form. It refers to this object's controls.
    Form form();

    std::string caption;
    std::string lblWasDrucken, lblLevels, lblLevelsUnit, lblZoom, lblPercent;
    std::array<OptionButton, 2> optWasDrucken;
    std::array<OptionButton, 3> optLevels;
    TextBox txtLevels, txtZoom;
    CommandButton OKButton, CancelButton;
    bool hourglass = false;  ///< The pointer shows that the program works.
    bool loaded = true;      ///< False: the form is done with.

  private:
    struct Run;

    void fillControls();
    int wantedZoom() const;
    std::int32_t wantedLevels() const;
    void prepare(Run& run);
    void copyRows(Run& run);
    void unfold(Run& run);
    void fitColumns();

    PrintServices services_;
    std::optional<Grid> tvwPL_;  ///< The hidden copy.
};

}  // namespace hl
