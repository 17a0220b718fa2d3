// What the moves to the trash of this session took, so that it can be put back. For the thread of the logic
// only.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_operations.h"

namespace hl {

/// A file or a folder that went to the trash.
struct TrashedItem {
    std::string path;  ///< Where it was.
    FilePlace place;   ///< The same, as it was reached.
    Moved moved;
    bool folder = false;
};

/// A file or a folder that was renamed.
struct RenamedItem {
    std::string from, to;
    FilePlace place;  ///< Of `from`.
    Moved moved;
    bool folder = false;  ///< It has a row in the report, like a folder or a link to one.
};

/// What one command did.
struct UndoStep {
    std::vector<TrashedItem> trashed = {};    ///< In the order in which they went.
    std::optional<RenamedItem> renamed = {};  ///< Took the name of what went to the trash.
    /// Links that led into a folder that went: without it they count as files.
    std::vector<std::string> links = {};
    std::vector<std::string> sources = {};  ///< Of the report, that were or lay in a folder that went.
};

class UndoSteps {
  public:
    static constexpr std::size_t kMost = 100;

    bool isEmpty() const { return steps_.empty(); }
    /// Adds the step that is taken back next. A step that put nothing into the trash is not kept; when there
    /// are too many, the oldest is forgotten.
    void add(UndoStep step) {
        if (!isKept(step)) return;
        if (steps_.size() == kMost) steps_.pop_front();
        steps_.push_back(std::move(step));
    }
    /// Adds a step that is taken back after all others, if there is room.
    void addOldest(UndoStep step) {
        if (isKept(step) && steps_.size() < kMost) steps_.push_front(std::move(step));
    }
    /// REQUIRES: there is a step.
    UndoStep take() {
        UndoStep last = std::move(steps_.back());
        steps_.pop_back();
        return last;
    }

  private:
    /// Forgets what the system does not tell the place of.
    static bool isKept(UndoStep& step) {
        std::erase_if(step.trashed, [](const TrashedItem& item) { return item.moved.now.base.empty(); });
        return !step.trashed.empty();
    }

    std::deque<UndoStep> steps_;
};

}  // namespace hl
