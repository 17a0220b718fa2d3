// frmOptionen: the few options that have no command of their own. What it saves goes to the file at once.
//
// Opening it makes the desktop's offer for folders what the settings say, so that an offer that got lost, or
// that names the program at an older place, is repaired. Thread of the logic.
#pragma once

#include <string>

#include "app/log.h"
#include "app/settings.h"
#include "app/texts.h"
#include "platform/folder_verb.h"
#include "platform/form.h"
#include "platform/system_facts.h"
#include "robustness/debug.h"

namespace hl {

/// All of it outlives the form.
struct OptionsServices {
    SettingsStore& settings;
    const Texts& texts;
    Log& log;
    SystemFacts& facts;
    Diagnostics& diagnostics;
    FolderVerb& verb;
    std::string executable;  ///< The whole path.
};

class OptionsForm {
  public:
    /// As it is loaded: translated, with the values of the file.
    explicit OptionsForm(const OptionsServices& services);
    OptionsForm(const OptionsForm&) = delete;
    OptionsForm& operator=(const OptionsForm&) = delete;

    /// How a window shows the form. It refers to this object's controls.
    Form form();

    /// Changes count from here on.
    void Form_Activate() { activated_ = true; }
    void chkKontextmenu_Click() { changed_ |= activated_; }
    void chkInstanz_Click() { changed_ |= activated_; }
    void txtDateFormat_Change() { changed_ |= activated_; }
    /// Saves only if something was changed. Another number of instances counts from the next start on; the
    /// date format is the caller's to load anew, whichever button was pressed.
    void cmdOK_Click();
    void cmdCancel_Click() { loaded = false; }

    std::string caption, lblDateFormat;
    CheckBox chkKontextmenu, chkInstanz;
    TextBox txtDateFormat{.text = "dd/mm/yyyy hh:nn:ss"};
    CommandButton cmdOK, cmdCancel;
    bool loaded = true;  ///< False: the form is done with.

  private:
    void OptionenLaden();
    void OptionenSpeichern();
    /// Makes the offer, or withdraws it. A failure goes to the debug log; the user is not told.
    void ApplyExplorerVerb(bool offered);

    OptionsServices services_;
    bool activated_ = false;
    bool changed_ = false;
};

}  // namespace hl
