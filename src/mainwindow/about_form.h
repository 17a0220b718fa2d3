// frmInfo shows the program's name and version, three texts about it, and links to its pages, if it has any.
// For the thread of the logic only.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "app/addresses.h"
#include "app/texts.h"
#include "platform/form.h"

namespace hl {

/// What the form uses; everything outlives it.
struct AboutServices {
    const Texts& texts;
    const Addresses& addresses;
    std::string version;  ///< "1.2"; if the revision is not 0, it follows behind a second point.
    std::function<void(const std::string& url)> StartURL;
    bool portable = true;  ///< True if no package installed the program.
};

class AboutForm {
  public:
    explicit AboutForm(const AboutServices& services);
    AboutForm(const AboutForm&) = delete;
    AboutForm& operator=(const AboutForm&) = delete;

    /// Tells a window how to show the form. The result refers to this object's controls.
    Form form();

    /// Shows the text of the selected leaf of tabInfo.
    void tabInfo_Click();
    /// Opens the page for donations.
    void Image2_Click();
    /// Opens the forum.
    void lblForum_Click();
    void lblHomepage_Click();
    void cmdOK_Click() { loaded = false; }

    std::string caption, lblName, lblVersion;
    std::array<OptionButton, 3> tabInfo;
    TextBox txtInfo{.readOnly = true, .multiLine = true, .lines = 6};
    std::string Image2, lblForum, lblHomepage;  ///< The texts of the links.
    CommandButton cmdOK;
    bool loaded = true;  ///< False once the form is done with.

  private:
    void addLinks(std::vector<FormItem>& items);

    AboutServices services_;
    std::array<std::string, 3> texts_;
};

}  // namespace hl
