// A filter of the system's calls, for a process and all that it starts: built rule by rule, entered once, for
// good. A call is tried with the rules in their order, and the first that fits decides. Arguments are
// compared by their lower half, which is all that the calls in question look at.
#pragma once

#include <linux/filter.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

namespace hl {

class CallFilter {
  public:
    /// Calls of another machine's table end the process.
    CallFilter();
    void allow(std::span<const long> calls);
    /// They fail with EPERM.
    void refuse(std::span<const long> calls);
    /// As if the system did not have it: the library then takes the older call.
    void hide(long call);
    /// Hides all from this number on.
    void hideFrom(long call);
    /// They do nothing and say that all went well.
    void pretend(std::initializer_list<long> calls);
    void allowIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values);
    void refuseIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values);
    /// Decides on the call for good.
    void allowIfNoneOfTheBits(long call, unsigned argument, std::uint32_t bits);
    void allowIfABitOf(long call, unsigned argument, std::uint32_t bits);
    void refuseOthers();
    void allowOthers();

    /// Allocates nothing. False if the system refuses. REQUIRES: the others are decided on, and
    /// PR_SET_NO_NEW_PRIVS.
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
