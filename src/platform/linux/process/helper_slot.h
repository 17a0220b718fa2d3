// Limits how many threads of this process may be where they can hang.
#pragma once

#include <optional>

namespace hl {

/// Permission to have one thread on a disk that may not answer, as long as that thread lives. The process has
/// kMost of them, which limits the threads that hang. From any thread.
class HelperSlot {
  public:
    static constexpr unsigned kMost = 16;
    /// Returns nothing if all are taken.
    static std::optional<HelperSlot> take();
    /// Returns how many are taken. While there are any, the process must end without destroying what threads
    /// may use.
    static unsigned taken();
    ~HelperSlot();
    HelperSlot(HelperSlot&& other) noexcept;
    HelperSlot& operator=(HelperSlot&&) = delete;

  private:
    HelperSlot() = default;
    bool held_ = true;
};

}  // namespace hl
