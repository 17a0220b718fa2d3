// frmInfo: the program's name and version, three texts about it, and links to those of its pages that there
// are. Thread of the logic only.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "app/addresses.h"
#include "app/texts.h"
#include "platform/form.h"

namespace hl {

/// All of it outlives the form.
struct AboutServices {
    const Texts& texts;
    const Addresses& addresses;
    std::string version;  ///< "1.2"; with the revision behind a second point where it is not 0.
    std::function<void(const std::string& url)> StartURL;
    bool portable = true;  ///< Not installed by a package.
};

class AboutForm {
  public:
    explicit AboutForm(const AboutServices& services);
    AboutForm(const AboutForm&) = delete;
    AboutForm& operator=(const AboutForm&) = delete;

    /// How a window shows the form. It refers to this object's controls.
    Form form();

    /// The text of the chosen leaf of tabInfo.
    void tabInfo_Click();
    /// The page for donations.
    void Image2_Click();
    /// The forum.
    void lblForum_Click();
    void lblHomepage_Click();
    void cmdOK_Click() { loaded = false; }

    std::string caption, lblName, lblVersion;
    std::array<OptionButton, 3> tabInfo;
    TextBox txtInfo{.readOnly = true, .multiLine = true, .lines = 6};
    std::string Image2, lblForum, lblHomepage;  ///< Links.
    CommandButton cmdOK;
    bool loaded = true;  ///< False: the form is done with.

  private:
    void addLinks(std::vector<FormItem>& items);

    AboutServices services_;
    std::array<std::string, 3> texts_;
};

}  // namespace hl
