// The clipboard of the desktop. Thread of the logic only.
#pragma once

#include <string>
#include <vector>

namespace hl {

class Clipboard {
  public:
    virtual ~Clipboard() = default;
    virtual void copyText(const std::string& text) = 0;
    /// Copies files, for pasting into a file manager.
    virtual void copyFiles(const std::vector<std::string>& paths) = 0;
    /// Copies a text like copyText, for a process that ends next: the text can still be pasted then. Takes
    /// some seconds at most.
    virtual void leaveText(const std::string& text) = 0;
};

}  // namespace hl
