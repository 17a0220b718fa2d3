// The question that both forms for saving have in common: which format, and which delimiter. For the
// thread of the logic only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/texts.h"
#include "base/path.h"
#include "output/report_formats.h"
#include "platform/form.h"

namespace hl {

/// A question for the system's save dialog, which warns before it overwrites a file.
struct SaveQuestion {
    std::string filter;            ///< "TXT (*.txt)|*.txt"
    std::string defaultExtension;  ///< What is appended to a name without an extension.
    std::string initialFolder;
};

class SaveDialog {
  public:
    virtual ~SaveDialog() = default;
    /// Returns the chosen path; empty if the user cancelled.
    virtual std::string askSavePath(const SaveQuestion& question) = 0;
};

/// The controls of the question, with their texts and TXT chosen; a form derives from it.
struct FormatChoice {
    explicit FormatChoice(const Texts& texts);
    virtual ~FormatChoice() = default;
    FormatChoice(const FormatChoice&) = delete;
    FormatChoice& operator=(const FormatChoice&) = delete;

    const ReportFormat& chosenFormat() const;
    char chosenDelimiter() const;
    /// Chooses the delimiter that belongs to the format.
    virtual void cboFormat_Click();
    /// Asks the user for a file of the chosen format.
    std::string askPath(SaveDialog& dialog, const PathRules& paths) const;

    std::string lblFormat, lblDelimiter;
    ComboBox cboFormat, cboDelimiter;

  protected:
    /// Returns the items of two rows of the form, whose boxes are that many columns wide.
    std::vector<FormItem> formatItems(int row, int columnSpan);
};

}  // namespace hl
