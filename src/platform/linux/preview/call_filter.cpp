#include "platform/linux/preview/call_filter.h"

#include <linux/audit.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

#include <cerrno>
#include <cstddef>

namespace hl {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kMachine = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kMachine = 0;  // Calls are not filtered on this machine.
#endif

/// From this number on the calls are those of another table of the same machine, which has the same calls.
constexpr std::uint32_t kOtherTable = 0x4000'0000;
constexpr std::uint32_t kAllowed = SECCOMP_RET_ALLOW;
constexpr std::uint32_t kRefused = SECCOMP_RET_ERRNO | EPERM;
constexpr std::uint32_t kPretended = SECCOMP_RET_ERRNO;
constexpr std::uint32_t kHidden = SECCOMP_RET_ERRNO | ENOSYS;

sock_filter statement(std::uint16_t code, std::uint32_t value) {
    return {code, 0, 0, value};
}
// Skips that many statements.
sock_filter jump(std::uint16_t code, std::uint32_t value, std::size_t ifSo, std::size_t ifNot) {
    return {code, static_cast<std::uint8_t>(ifSo), static_cast<std::uint8_t>(ifNot), value};
}

constexpr std::uint16_t kLoad = BPF_LD | BPF_W | BPF_ABS;
constexpr std::uint16_t kEqual = BPF_JMP | BPF_JEQ | BPF_K;
constexpr std::uint16_t kAtLeast = BPF_JMP | BPF_JGE | BPF_K;
constexpr std::uint16_t kAnyBit = BPF_JMP | BPF_JSET | BPF_K;
constexpr std::uint16_t kReturn = BPF_RET | BPF_K;

/// Loads the number of the call; between two rules it is always loaded.
sock_filter loadCall() {
    return statement(kLoad, offsetof(seccomp_data, nr));
}
sock_filter isCall(long call, std::size_t otherwise) {
    return jump(kEqual, static_cast<std::uint32_t>(call), 0, otherwise);
}

}  // namespace

CallFilter::CallFilter()
    : rules_({statement(kLoad, offsetof(seccomp_data, arch)), jump(kEqual, kMachine, 1, 0),
              statement(kReturn, SECCOMP_RET_KILL_PROCESS), loadCall(), jump(kAtLeast, kOtherTable, 0, 1),
              statement(kReturn, SECCOMP_RET_KILL_PROCESS)}) {}

void CallFilter::decide(long call, std::uint32_t verdict) {
    rules_.push_back(isCall(call, 1));
    rules_.push_back(statement(kReturn, verdict));
}

void CallFilter::allow(std::span<const long> calls) {
    for (const long call : calls) decide(call, kAllowed);
}

void CallFilter::refuse(std::span<const long> calls) {
    for (const long call : calls) decide(call, kRefused);
}

void CallFilter::hide(long call) {
    decide(call, kHidden);
}

void CallFilter::hideFrom(long call) {
    rules_.push_back(jump(kAtLeast, static_cast<std::uint32_t>(call), 0, 1));
    rules_.push_back(statement(kReturn, kHidden));
}

void CallFilter::pretend(std::initializer_list<long> calls) {
    for (const long call : calls) decide(call, kPretended);
}

void CallFilter::loadArgument(unsigned argument) {
    const std::size_t at = offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t);
    rules_.push_back(statement(kLoad, static_cast<std::uint32_t>(at)));
}

void CallFilter::decideIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values,
                               std::uint32_t verdict, std::uint32_t otherwise) {
    rules_.push_back(isCall(call, 2 + 2 * values.size()));
    loadArgument(argument);
    for (const std::uint32_t value : values) {
        rules_.push_back(jump(kEqual, value, 0, 1));
        rules_.push_back(statement(kReturn, verdict));
    }
    rules_.push_back(statement(kReturn, otherwise));
}

void CallFilter::allowIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values) {
    decideIfOneOf(call, argument, values, kAllowed, kRefused);
}

void CallFilter::refuseIfOneOf(long call, unsigned argument, std::initializer_list<std::uint32_t> values) {
    decideIfOneOf(call, argument, values, kRefused, kAllowed);
}

void CallFilter::decideByBits(long call, unsigned argument, std::uint32_t bits, std::uint32_t ifAny,
                              std::uint32_t ifNone) {
    rules_.push_back(isCall(call, 4));
    loadArgument(argument);
    rules_.push_back(jump(kAnyBit, bits, 0, 1));
    rules_.push_back(statement(kReturn, ifAny));
    rules_.push_back(statement(kReturn, ifNone));
}

void CallFilter::allowIfNoneOfTheBits(long call, unsigned argument, std::uint32_t bits) {
    decideByBits(call, argument, bits, kRefused, kAllowed);
}

void CallFilter::allowIfABitOf(long call, unsigned argument, std::uint32_t bits) {
    decideByBits(call, argument, bits, kAllowed, kRefused);
}

void CallFilter::refuseOthers() {
    rules_.push_back(statement(kReturn, kRefused));
}

void CallFilter::allowOthers() {
    rules_.push_back(statement(kReturn, kAllowed));
}

bool CallFilter::enter() const {
    if (kMachine == 0) return true;
    // The system only reads it.
    const sock_fprog program{static_cast<unsigned short>(rules_.size()),
                             const_cast<sock_filter*>(rules_.data())};
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace hl
