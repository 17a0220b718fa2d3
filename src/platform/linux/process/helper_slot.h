// How many threads of this process may be where they can hang.
#pragma once

#include <optional>

namespace hl {

/// Permission to have one thread on a disk that may not answer, for as long as that thread lives. The process
/// gives kMost of them, so that those that hang are never more. From any thread.
class HelperSlot {
  public:
    static constexpr unsigned kMost = 16;
    /// Nothing if all are taken.
    static std::optional<HelperSlot> take();
    /// How many are taken. While there are some the process ends without tearing down what threads may use.
    static unsigned taken();
    ~HelperSlot();
    HelperSlot(HelperSlot&& other) noexcept;
    HelperSlot& operator=(HelperSlot&&) = delete;

  private:
    HelperSlot() = default;
    bool held_ = true;
};

}  // namespace hl
