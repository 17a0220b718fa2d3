#include "platform/fault_signals.h"

#include <charconv>

#include "platform/fault_description.h"

namespace hl {

thread_local int GuardedRoutine::depth_ = 0;

GuardedRoutine::GuardedRoutine() {
    ++depth_;
}
GuardedRoutine::~GuardedRoutine() {
    --depth_;
}
int GuardedRoutine::depth() {
    return depth_;
}

FaultDescription::FaultDescription(std::string_view name, std::uintptr_t address) {
    append("An unhandled error (");
    append(name.substr(0, 100));
    append(") \r\noccurred at: ");
    appendDecimal(address);
    append(". Probably safe to continue, but better not.");
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

std::string faultDescription(std::string_view name, std::uintptr_t address) {
    return FaultDescription(name, address).text();
}

}  // namespace hl
