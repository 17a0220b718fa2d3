// frmBalance shows the balance of a source: a table whose lines explain themselves and lead to what they
// count. For the thread of the logic only.
#pragma once

#include <optional>
#include <string>

#include "app/services.h"
#include "output/balance_text.h"
#include "output/format_choice.h"
#include "platform/form.h"
#include "platform/window.h"

namespace hl {

class BalanceForm {
  public:
    /// `services`, `dialog` and `window` must outlive the form. REQUIRES: the balance's state is kThere.
    BalanceForm(const Services& services, SourceBalance balance, SaveDialog& dialog, const Window& window);
    BalanceForm(const BalanceForm&) = delete;
    BalanceForm& operator=(const BalanceForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    void cmdSpeichern_Click();
    void cmdDrucken_Click();
    void cmdKopieren_Click();
    /// Closes the form; `chosen` is the line then.
    void tblBalance_Activated();

    std::string caption, lblAsOf;
    TableBox tblBalance;
    CommandButton cmdClose, cmdSpeichern, cmdDrucken, cmdKopieren;
    std::optional<BalanceLine> chosen;  ///< The line whose rows the user wants to see.
    bool loaded = true;                 ///< False once the form is done with.

  private:
    BalanceWords words() const { return {services_.texts, services_.numbers}; }
    void fillTable();
    std::string text() const;

    const Services& services_;
    const SourceBalance balance_;
    SaveDialog& dialog_;
    const Window& window_;
};

/// Tells whether the line counts what a list or the report shows.
bool leadsToRows(BalanceLine line);

}  // namespace hl
