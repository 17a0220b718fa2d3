// The standard streams of a run: the lines of its output and errors, and the descriptors 0 to 2. For the
// thread of the logic only.
#pragma once

#include <string>

#include "platform/console.h"

namespace hl {

/// Opens those of the descriptors 0 to 2 that are closed, in a way that nothing can be written to them.
/// Otherwise the next files and sockets would get their numbers, and whatever a library prints would go into
/// them. To be called before anything is opened.
void occupyStandardDescriptors();

/// The standard output and standard error of the process.
class LinuxConsole final : public Console {
  public:
    LinuxConsole();
    ~LinuxConsole() override;
    LinuxConsole(const LinuxConsole&) = delete;
    LinuxConsole& operator=(const LinuxConsole&) = delete;

    bool outputLine(std::string_view line) override;
    void errorLine(std::string_view line) override;
    bool showsProgress() override { return terminal_; }
    void progress(std::string_view line) override;

  private:
    bool terminal_;
    bool progressShown_ = false;
};

}  // namespace hl
