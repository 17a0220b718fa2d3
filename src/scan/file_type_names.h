// The desktop's names for the types of files. It is implemented above this room. For the thread of the logic
// only; messages may run during a call.
#pragma once

#include <string>

namespace hl {

class FileTypeNames {
  public:
    virtual ~FileTypeNames() = default;
    /// Tells that the files of another source or of another folder come next: the time that their types may
    /// take starts anew.
    virtual void restart() = 0;
    /// Returns the name of a file's type; empty if there is none.
    virtual std::string of(const std::string& path) = 0;
};

}  // namespace hl
