// The desktop's offer to open a folder with this program ("Open with"). It is one of several such offers and
// never the program that opens folders by default.
#pragma once

#include <string>

namespace hl {

/// What the desktop is told.
struct FolderOffer {
    std::string caption;     ///< As the menu shows it; UTF-8.
    std::string executable;  ///< The whole path, any bytes.
};

/// What kept an offer from being made or withdrawn.
struct FolderVerbFailure {
    int error = 0;     ///< Code of the system; 0 for success.
    std::string path;  ///< What could not be made, written or removed.
};

/// For the thread of the logic. Holds no state of its own.
class FolderVerb {
  public:
    virtual ~FolderVerb() = default;
    /// Makes the offer, or brings an older one up to date. One that stands already is left alone.
    virtual FolderVerbFailure offer(const FolderOffer& offer) = 0;
    /// Success as well where no offer stands; nothing is made or written then.
    virtual FolderVerbFailure withdraw() = 0;
};

}  // namespace hl
