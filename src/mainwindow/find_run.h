// One search: fills the list while it runs, and shows how far it is. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "mainwindow/find_control.h"

namespace hl {

class FindRun final : private FindHost {
  public:
    explicit FindRun(MainForm& form);

    /// Empties the list and fills it from the places, one after the other. A file that two places hold is
    /// found once. The window must be locked.
    FindEnd run(const FindFilter& filter, const std::vector<FindPlace>& places);

    /// Returns what the user is told of the first folder that could not be read; empty if all could.
    const std::string& failure() const { return failure_; }

  private:
    // --- FindHost
    bool found(const FoundFile& file) override;
    void folderEntered(std::string_view path) override;
    void notRead(std::string_view path, const std::string& reason) override;

    bool isKnown(const FoundFile& file);
    void showRows();

    MainForm& form_;
    Grid& list_;
    bool overlaps_ = false;  ///< A place lies in another.
    std::unordered_set<std::string> known_;
    std::string failure_;
    std::uint64_t lastStatusTick_ = 0, nextShow_ = 0;
};

}  // namespace hl
