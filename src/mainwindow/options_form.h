// frmOptionen shows the few options that have no command of their own. It saves them to the file at once.
//
// Opening it brings the desktop's entry for folders in line with the settings, which repairs an entry that
// got lost or that names the program's former place. For the thread of the logic.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/services.h"
#include "platform/folder_verb.h"
#include "platform/form.h"

namespace hl {

class OptionsForm {
  public:
    /// Makes the form with translated texts and the values of the file.
    /// `removeKept` deletes the scans that were kept, and returns how many; nothing if the user refused.
    OptionsForm(const Services& services, FolderVerb& verb, const std::string& executable,
                std::function<std::optional<std::size_t>()> removeKept = nullptr);
    OptionsForm(const OptionsForm&) = delete;
    OptionsForm& operator=(const OptionsForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    /// Clicks count as changes from now on.
    void Form_Activate() { activated_ = true; }
    void chkKontextmenu_Click() { changed_ |= activated_; }
    void chkInstanz_Click() { changed_ |= activated_; }
    void chkAskBeforeDelete_Click() { changed_ |= activated_; }
    void chkCountSnapshots_Click() { changed_ |= activated_; }
    void txtDateFormat_Change() { changed_ |= activated_; }
    void txtKeepScans_Change() { changed_ |= activated_; }
    void cmdRemoveKept_Click();
    void txtRules_Change();
    /// Saves if anything was changed; a rule that cannot be read keeps the form open. A change of the number
    /// of instances takes effect at the next start. The caller must load the dialog's options again,
    /// whichever button was pressed.
    void cmdOK_Click();
    void cmdCancel_Click() { loaded = false; }

    std::string caption, lblDateFormat, lblRules, lblKeepScans;
    std::string lblRulesProblem;  ///< Why a rule cannot be read; empty if all can.
    CheckBox chkKontextmenu, chkInstanz, chkAskBeforeDelete, chkCountSnapshots;
    TextBox txtDateFormat{.text = "dd/mm/yyyy hh:nn:ss"};
    TextBox txtKeepScans{.text = "0"};
    TextBox txtRules{.multiLine = true, .lines = 5};  ///< A rule of what is left out on each line.
    CommandButton cmdOK, cmdCancel, cmdRemoveKept;
    bool loaded = true;  ///< False once the form is done with.

  private:
    void OptionenLaden();
    void OptionenSpeichern();
    std::vector<std::string> rules() const;
    std::string problemOfRules() const;
    /// Adds the desktop's entry for folders, or removes it. A failure goes to the debug log only.
    void ApplyExplorerVerb(bool offered);

    const Services& services_;
    FolderVerb& verb_;
    std::string executable_;
    std::function<std::optional<std::size_t>()> removeKept_;
    bool activated_ = false;
    bool changed_ = false;
};

}  // namespace hl
