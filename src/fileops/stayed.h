// Tells the user what a command could not do, and why. For the thread of the logic only.
#pragma once

#include <string>
#include <vector>

#include "base/text.h"
#include "fileops/file_run.h"

namespace hl {

/// Shortens a path, since no screen shows more of it.
inline std::string cut(const std::string& path) {
    constexpr std::size_t kFront = 300, kBack = 200;
    if (path.size() <= kFront + kBack) return path;
    return path.substr(0, kFront) + " ... " + path.substr(path.size() - kBack);
}

/// Collects what failed, for one message at the end.
class Stayed {
  public:
    /// Adds a text to the message and writes it to the log.
    void add(const FileOps& ops, const std::string& text) {
        ops.scan.log.LogProtokoll(text);
        ++count_;
        if (texts_.size() < kMostTexts) texts_.push_back(text);
    }
    void tell(const FileOps& ops) const {
        if (count_ == 0 || ops.host.closed()) return;
        std::string all;
        for (const std::string& text : texts_)
            all += (all.empty() ? "" : "\n") + visible(count_ == 1 ? text : cut(text));
        if (count_ > texts_.size())
            all += "\n" + ops.scan.texts.TL(9555, "... und %1 weitere",
                                            {formatCount(count_ - texts_.size(), ops.scan.numbers)});
        ops.window.dialogs.message(MessageKind::kWarning, all);
    }

  private:
    static constexpr std::size_t kMostTexts = 10;
    std::vector<std::string> texts_;
    std::size_t count_ = 0;
};

}  // namespace hl
