// What a run with no window says to the person who started it: lines on standard output and standard error,
// and on a terminal one line that shows how far it is.
#pragma once

#include <string_view>

namespace hl {

class Console {
  public:
    virtual ~Console() = default;
    /// Lines may hold line breaks of the program's own; what comes from outside must be made visible before.
    /// False if the line could not be written.
    virtual bool outputLine(std::string_view line) = 0;
    virtual void errorLine(std::string_view line) = 0;
    /// Whether standard error is a terminal; progress is dropped otherwise.
    virtual bool showsProgress() = 0;
    /// Replaces the progress line; cut to the width of the terminal. An empty line takes it away.
    virtual void progress(std::string_view line) = 0;
};

}  // namespace hl
