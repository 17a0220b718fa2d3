#include "platform/fault_signals.h"

#include <charconv>

#include "platform/fault_description.h"

namespace hl {

namespace {

GuardedRoutine::Count& countOfThread() {
    thread_local GuardedRoutine::Count count;
    return count;
}

}  // namespace

constinit GuardedRoutine::Counter GuardedRoutine::counter_ = countOfThread;

GuardedRoutine::GuardedRoutine() {
    Count& count = counter_();
    const auto number = static_cast<std::size_t>(count.depth++);
    if (number < count.guards.size()) count.guards[number] = this;
}
GuardedRoutine::~GuardedRoutine() {
    --counter_().depth;
}
int GuardedRoutine::depth() {
    return counter_().depth;
}

const void* GuardedRoutine::Count::innermost() const {
    const auto number = static_cast<std::size_t>(depth) - 1;
    return number < guards.size() ? guards[number] : nullptr;
}

FaultDescription::FaultDescription(std::string_view name, std::uintptr_t address, FaultOutcome outcome) {
    append("An unhandled error (");
    append(name.substr(0, 100));
    append(") \r\noccurred at: ");
    appendDecimal(address);
    append(outcome == FaultOutcome::kEnds ? ". NOT ok to continue."
                                          : ". Probably safe to continue, but better not.");
}

void FaultDescription::append(std::string_view part) {
    const std::size_t room = sizeof text_ - 1 - length_;
    length_ += part.copy(text_ + length_, room);
}

void FaultDescription::appendDecimal(std::uintptr_t value) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    append({digits, static_cast<std::size_t>(end - digits)});
}

}  // namespace hl
