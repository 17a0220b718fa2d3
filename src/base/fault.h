// The one exception type of the program. It carries an unexpected failure to a trap (robustness/trap.h).
//
// Failures that are expected (a file that cannot be opened, a source that does not exist) are values and
// never faults. A fault carries what the error report prints: a number, the routine that raised it, a
// description.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace hl {

/// Numbers of faults that the program raises itself. Other numbers are error codes of the system.
enum FaultNumber : std::int64_t {
    kFaultInvalidCall = 5,
    kFaultOverflow = 6,
    kFaultSubscript = 9,
    kFaultTypeMismatch = 13,
    kFaultProcessor = 0x80040201,  ///< A processor fault, made an exception by platform/fault_signals.h.
};

/// A fault is thrown by value. The class is visible across modules, so that a fault thrown in a loaded module
/// can be caught outside of it.
class __attribute__((visibility("default"))) Fault : public std::exception {
  public:
    Fault(std::int64_t number, std::string source, std::string description)
        : number_(number), source_(std::move(source)), description_(std::move(description)) {}

    std::int64_t number() const { return number_; }
    const std::string& source() const { return source_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

  private:
    std::int64_t number_;
    std::string source_;
    std::string description_;
};

/// Raises kFaultOverflow. It stands apart from the arithmetic that calls it, so that the fast path stays
/// small.
[[noreturn]] inline void raiseOverflow(std::string_view where) {
    throw Fault(kFaultOverflow, std::string(where), "Overflow");
}

}  // namespace hl
