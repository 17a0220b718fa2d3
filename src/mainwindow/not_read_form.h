// frmNotRead lists the folders that were not read, with the reasons, and saves the list. For the thread of
// the logic only.
#pragma once

#include <string>

#include "app/services.h"
#include "grid/grid.h"
#include "output/format_choice.h"
#include "platform/form.h"
#include "platform/window.h"

namespace hl {

class NotReadForm {
  public:
    static constexpr std::size_t kMost = 100'000;

    /// Takes the list from the report, at most kMost folders of it. `services`, `dialog` and `window` must
    /// outlive the form.
    NotReadForm(const Services& services, const Grid& report, SaveDialog& dialog, const Window& window);
    NotReadForm(const NotReadForm&) = delete;
    NotReadForm& operator=(const NotReadForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    /// Saves the list as a text, a line for each folder: the path, a tab, the reason. A message tells if that
    /// fails.
    void cmdSpeichern_Click();

    std::string caption, lblCount;
    TextBox txtList{.readOnly = true, .multiLine = true, .lines = 16};
    CommandButton cmdSpeichern, cmdClose;
    bool loaded = true;  ///< False once the form is done with.

  private:
    const Services& services_;
    SaveDialog& dialog_;
    const Window& window_;
    std::string lines_;  ///< As it is saved, with the names as bytes.
};

}  // namespace hl
