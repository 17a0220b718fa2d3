// Composes the description of a processor fault without heap memory or locks, so that a signal handler can do
// it.
#pragma once

#include <cstdint>
#include <string_view>

namespace hl {

enum class FaultOutcome { kGoesOn, kEnds };

/// The text is "An unhandled error (NAME) CR LF occurred at: ADDRESS. TEXT".
class FaultDescription {
  public:
    /// A name that is too long is cut.
    FaultDescription(std::string_view name, std::uintptr_t address, FaultOutcome outcome);
    /// The text ends in a NUL.
    const char* text() const { return text_; }

  private:
    void append(std::string_view part);
    void appendDecimal(std::uintptr_t value);

    char text_[256] = {};
    std::size_t length_ = 0;
};

}  // namespace hl
