// The questions that the window asks. Each returns when it is answered. Thread of the logic only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/form.h"
#include "platform/geometry.h"
#include "platform/print.h"

namespace hl {

enum class MessageKind : std::uint8_t { kInformation, kWarning, kError, kQuestion };

/// An entry of a menu that is built when it is opened.
struct MenuEntry {
    int id = 0;                           ///< 0 means a separator.
    std::string caption;                  ///< UTF-8, control characters visible; "&" is a plain character.
    std::vector<MenuEntry> entries = {};  ///< The entries of a submenu, whose own id can then not be chosen.
    std::string key = {};                 ///< The key that does the same without the menu: "F2", "Ctrl+C".
    int icon = -1;                        ///< See platform/icons.h; -1 for none.
};

class Dialogs {
  public:
    using LiveText = std::function<std::string()>;

    virtual ~Dialogs() = default;
    virtual void showForm(Form& form) = 0;
    /// Returns true for yes; Return alone does not mean that. A message that is no question has one button.
    virtual bool message(MessageKind kind, const std::string& text) = 0;
    /// Asks before something that cannot be undone. `action` is the caption of the button that does it;
    /// the other one, which is the default, cancels. Returns true if it is to be done. `live` (may be null)
    /// returns a text that is shown below; it is called some ten times a second until the answer.
    virtual bool confirm(const std::string& text, const std::string& action, const LiveText& live) = 0;
    /// Returns an empty text if the user cancelled.
    virtual std::string askText(const std::string& prompt, const std::string& preset) = 0;
    virtual std::string askFolder(const std::string& title, const std::string& start) = 0;
    /// `filter` has captions and their patterns, "TXT (*.txt)|*.txt|CSV (*.csv)|*.csv"; the first is
    /// selected. `extension` is appended to a name that has none.
    virtual std::string askSavePath(const std::string& filter, const std::string& extension,
                                    const std::string& folder) = 0;
    /// The same for a file that is there.
    virtual std::string askOpenPath(const std::string& filter, const std::string& folder) = 0;
    virtual std::optional<GridFont> askFont(const GridFont& start) = 0;
    /// Shows the pages; from there the user prints them or writes them to a PDF. No printer is needed.
    virtual void previewPrint(const PrintJob& job) = 0;
    /// Asks for a printer, or for a PDF instead, and prints.
    virtual void print(const PrintJob& job) = 0;
    /// Opens a menu at a place of the screen; returns the id of the chosen entry, 0 if none was chosen.
    virtual int showMenu(const std::vector<MenuEntry>& entries, Point at) = 0;
};

}  // namespace hl
