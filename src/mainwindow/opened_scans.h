// Opens files with saved scans, or with what other programs have found, as sources of the report. For the
// thread of the logic only.
#pragma once

#include <deque>
#include <string>

#include "grid/grid.h"

namespace hl {

struct MainForm;

class OpenedScans {
  public:
    explicit OpenedScans(MainForm& form) : form_(form) {}

    /// Asks for a file and opens it.
    void choose();
    /// The file is opened as soon as no command is at work. "-" is standard input; an empty path is ignored.
    void queue(const std::string& path);
    /// Opens the next file of the queue, and says what is wrong with it. Returns false if there is none.
    bool openNext();

  private:
    void open(const std::string& path);
    Row addSource(const std::string& path, std::string& problem);
    void noteOrigin(Row source);

    MainForm& form_;
    std::deque<std::string> queue_;
};

}  // namespace hl
