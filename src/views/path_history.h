// The folders that were shown one after another, for going back and forth among them. For the thread of the
// logic only.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace hl {

class PathHistory {
  public:
    /// Adds a path behind the present one; those that followed it are forgotten, and of too many the oldest.
    void visited(const std::string& path);
    /// Goes one step back (-1) or forth (1), past those for which `there` returns false. Returns the path, or
    /// an empty text if there is none that way.
    std::string step(int direction, const std::function<bool(const std::string&)>& there);

    static constexpr std::size_t kMost = 100;

  private:
    std::vector<std::string> paths_;
    std::size_t present_ = 0;
};

}  // namespace hl
