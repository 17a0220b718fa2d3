// The start page: what an empty report offers to read. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "platform/start_page.h"

namespace hl {

struct MainForm;

class StartControl final {
  public:
    explicit StartControl(MainForm& form) : form_(form) {}

    /// Shows the page, with the drives and sources of now, if the report is empty; else the report.
    void show();
    /// The page stays but cannot be used.
    void lock(bool locked);
    /// A button of the page was pressed; it has this tag.
    void chosen(const std::string& tag);
    /// The box of sources has its saved ones: the page offers them.
    void sourcesLoaded();
    /// A source is being read: the page offers it first next time.
    void sourceBegan(const std::string& source);

  private:
    StartPage page() const;
    StartGroup drives() const;
    StartGroup readLast(const StartGroup& drives, const std::string& home) const;

    MainForm& form_;
    StartPage shown_;
    bool locked_ = false;
    std::vector<std::string> read_;  ///< What was read, the last one first; those of earlier starts last.
};

}  // namespace hl
