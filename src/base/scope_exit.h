// Runs a callable when the scope is left, by whatever way. The callable must not throw.
#pragma once

#include <utility>

namespace hl {

template <class F>
class ScopeExit {
  public:
    explicit ScopeExit(F f) : f_(std::move(f)) {}
    ~ScopeExit() { f_(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

  private:
    F f_;
};

}  // namespace hl
