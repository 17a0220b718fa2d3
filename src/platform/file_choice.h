// Chooses the files that a reader of folders returns: what nobody wants is not handed over, and, where its
// name tells enough, not even looked at. Nothing in it changes once it is made, so any thread may ask.
#pragma once

#include <string_view>

namespace hl {

struct Entry;
struct EntryDetails;

/// What an entry is that is no folder.
enum class FileType : char { kFile = 'f', kLink = 'l', kOther = 'o' };

class FileChoice {
  public:
    virtual ~FileChoice() = default;
    /// Is asked before a file is looked at, if the folder tells its type; false drops it.
    virtual bool mayTake(std::string_view name, FileType type) const = 0;
    /// Is asked about a file that was looked at. The entry has no name yet.
    virtual bool takes(std::string_view name, FileType type, const Entry& file,
                       const EntryDetails& details) const = 0;
};

}  // namespace hl
