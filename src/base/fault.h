// The one exception type of the program: an unexpected failure on its way to a trap (robustness/trap.h).
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
    kFaultProcessor = 0x80040201,  ///< A fault of the processor, made an error by platform/fault_signals.h.
};

/// Thrown by value. Visible across modules, so that it can be caught on both sides of a loaded one.
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

/// Raises kFaultOverflow. Out of line of the arithmetic that calls it, so that the fast path stays small.
[[noreturn]] inline void raiseOverflow(std::string_view where) {
    throw Fault(kFaultOverflow, std::string(where), "Overflow");
}

}  // namespace hl
