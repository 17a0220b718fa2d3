// The description of a processor fault, made without memory from the heap and without locks, so that a signal
// handler can make one.
#pragma once

#include <cstdint>
#include <string_view>

namespace hl {

enum class FaultOutcome { kGoesOn, kEnds };

/// "An unhandled error (NAME) CR LF occurred at: ADDRESS. TEXT"
class FaultDescription {
  public:
    /// A name that is too long is cut.
    FaultDescription(std::string_view name, std::uintptr_t address, FaultOutcome outcome);
    /// Ends in a NUL.
    const char* text() const { return text_; }

  private:
    void append(std::string_view part);
    void appendDecimal(std::uintptr_t value);

    char text_[256] = {};
    std::size_t length_ = 0;
};

}  // namespace hl
