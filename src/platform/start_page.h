// The start page, which an empty report shows: what may be read, as buttons. The logic makes it as plain
// data, and a window shows it. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

namespace hl {

/// A button that reads a source.
struct StartEntry {
    std::string caption;
    std::string note = {};  ///< A second line below the caption; empty for none.
    std::string tag = {};   ///< The path that is read, as bytes; empty for the button that asks for a folder.
    int picture = 0;        ///< See platform/icons.h.
    int percent = -1;       ///< How full a drive is; -1 for no bar.
    bool operator==(const StartEntry&) const = default;
};

struct StartGroup {
    std::string title;  ///< Empty for none.
    std::vector<StartEntry> entries;
    bool operator==(const StartGroup&) const = default;
};

struct StartPage {
    std::string title;
    std::vector<StartGroup> groups;  ///< Without groups there is no page.
    std::string hint;                ///< Stands below the buttons.
    bool enabled = true;
    bool operator==(const StartPage&) const = default;
};

/// Where the window lets the user choose a source: the box of sources and the start page.
class SourcePane {
  public:
    virtual ~SourcePane() = default;
    /// Shows the page in place of the report; a page without groups shows the report.
    virtual void setStartPage(const StartPage& page) = 0;
    /// Gives the box of sources the keyboard, with its text selected.
    virtual void focusBox() = 0;
};

}  // namespace hl
