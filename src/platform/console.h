// What a run without a window tells the person who started it: lines on standard output and standard error,
// and on a terminal one line that shows the progress. For the thread of the logic.
#pragma once

#include <string_view>

namespace hl {

class Console {
  public:
    virtual ~Console() = default;
    /// Writes a line, which may hold line breaks of the program's own; text from outside must be made visible
    /// before. Returns false if the line could not be written.
    virtual bool outputLine(std::string_view line) = 0;
    virtual void errorLine(std::string_view line) = 0;
    /// Tells whether standard error is a terminal; otherwise progress is dropped.
    virtual bool showsProgress() = 0;
    /// Replaces the progress line and cuts it to the terminal's width. An empty line removes it.
    virtual void progress(std::string_view line) = 0;
};

}  // namespace hl
