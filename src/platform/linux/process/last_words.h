// The entry of error.log for an error that the program does not survive.
//
// Everything is made beforehand except what only that moment knows: the time, the module, the description. So
// a signal handler, which must not allocate memory or wait for a lock, can write it.
#pragma once

#include <array>
#include <string>

#include "base/date_format.h"

namespace hl {

class LastWords {
  public:
    /// The report up to the time, then up to the module, then up to the description, and then the rest.
    using Pieces = std::array<std::string, 4>;

    /// `datePicture` is one for formatDate. Times are in the time zone that is set now.
    LastWords(std::string log, std::string datePicture, Pieces pieces);

    /// Appends the entry to the log, and one line to standard error. The module that contains `instruction`
    /// is named. May be called from a signal handler.
    void say(const char* description, const void* instruction) const noexcept;

  private:
    LocalTime now() const noexcept;

    std::string log_, datePicture_;
    Pieces pieces_;
    long zone_;  ///< In seconds east of Greenwich.
};

}  // namespace hl
