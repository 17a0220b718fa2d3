// The desktop's entry to open a folder with this program ("Open with"). It is one of several, and never makes
// the program the default for folders.
#pragma once

#include <string>

#include "base/result.h"

namespace hl {

/// What the desktop is told.
struct FolderOffer {
    std::string caption;     ///< The text in the menu; UTF-8.
    std::string executable;  ///< The full path; any bytes.
};

/// An error has the name of what could not be made, written or removed. For the thread of the logic. Holds no
/// state of its own.
class FolderVerb {
  public:
    virtual ~FolderVerb() = default;
    /// Adds the entry, or updates an older one. An entry that is right already is not written again.
    virtual Result<> offer(const FolderOffer& offer) = 0;
    /// Removes the entry. It is a success, and nothing is written, if there is none.
    virtual Result<> withdraw() = 0;
};

}  // namespace hl
