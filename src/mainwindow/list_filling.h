// Fills a list that is switched off, when the user asks for it. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <string>

#include "platform/pane_ids.h"
#include "scan/scan_host.h"

namespace hl {

struct MainForm;

class ListFilling final : private ScanHost {
  public:
    explicit ListFilling(MainForm& form) : form_(form) {}

    /// Fills the list from the source of the report's current row, or from its first source. The window is
    /// locked except for Stop. Returns true if the source was read to its end.
    bool fill(GridId list);

  private:
    // --- ScanHost
    void folderEntered(std::string_view path) override;
    void notRead(std::string_view path, const std::string& reason) override;
    void diskSilent(const std::string& text) override;

    std::string source() const;
    void read(GridId list);

    MainForm& form_;
    std::string source_;   ///< Its path, with a trailing separator.
    std::string failure_;  ///< Why the source itself could not be read.
    bool stopped_ = true;  ///< The filling has not come to its end.
    std::uint64_t lastStatusTick_ = 0;
};

}  // namespace hl
