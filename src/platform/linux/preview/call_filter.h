// Filters the system calls of a process and all that it starts. A filter is built rule by rule and entered
// once, for good. The first rule that fits a call decides. Arguments are compared by their lower half, which
// is all that the calls in question use. For one thread.
#pragma once

#include <linux/filter.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

namespace hl {

class CallFilter {
  public:
    /// A call by another machine's table ends the process.
    CallFilter();
    void allow(std::span<const long> calls);
    /// These calls fail with EPERM.
    void refuse(std::span<const long> calls);
    /// The system seems not to have the call, so that the library uses the older one.
    void hide(long call);
    /// Hides all calls from this number on.
    void hideFrom(long call);
    /// These calls do nothing and report success.
    void pretend(std::initializer_list<long> calls);
    void allowIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values);
    void refuseIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values);
    /// Decides about the call for good.
    void allowIfNoneOfTheBits(long call, unsigned argument, std::uint32_t bits);
    void allowIfABitOf(long call, unsigned argument, std::uint32_t bits);
    void refuseOthers();
    void allowOthers();

    /// Enters the filter and allocates nothing. Returns false if the system refuses. REQUIRES: the other
    /// calls are decided, and PR_SET_NO_NEW_PRIVS is set.
    bool enter() const;

  private:
    void decide(long call, std::uint32_t verdict);
    void loadArgument(unsigned argument);
    void decideIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values,
                       std::uint32_t verdict, std::uint32_t otherwise);
    void decideByBits(long call, unsigned argument, std::uint32_t bits, std::uint32_t ifAny,
                      std::uint32_t ifNone);

    std::vector<sock_filter> rules_;
};

}  // namespace hl
