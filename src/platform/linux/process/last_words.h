// The entry of error.log for an error that the program does not survive.
//
// All of it is made beforehand but for what only that moment knows: the time, the module, the description. So
// a signal handler can write it, which may neither take memory nor wait for a lock.
#pragma once

#include <array>
#include <string>

#include "base/date_format.h"

namespace hl {

class LastWords {
  public:
    /// The report up to the time, up to the module, up to the description, and behind it.
    using Pieces = std::array<std::string, 4>;

    /// `datePicture` is one for formatDate; the time is that of the time zone as it is now.
    LastWords(std::string log, std::string datePicture, Pieces pieces);

    /// Adds the entry to the log, and one line to standard error. `instruction` lies in the module that is
    /// named. From a signal handler.
    void say(const char* description, const void* instruction) const noexcept;

  private:
    LocalTime now() const noexcept;

    std::string log_, datePicture_;
    Pieces pieces_;
    long zone_;  ///< Seconds east of Greenwich.
};

}  // namespace hl
