// Remembers the files with several names of which some were met, to find out which ones were met by all of
// their names. It has at most 24 bytes for each of them, once there are a few. For one thread.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/folder_id.h"

namespace hl {

class SeveralNames {
  public:
    struct Met {
        bool first = false;         ///< This is the first name of the file.
        bool last = false;          ///< No other name is left.
        std::uint64_t sectors = 0;  ///< Those told with the first name, in units of 512 bytes.
    };
    /// Notes one more name of a file that has `links` names (2 or more) and takes so many sectors. A file
    /// with more than 65,534 names, and one of the 257th device, never meets its last.
    Met meet(const FolderId& id, std::uint64_t links, std::uint64_t sectors);

    std::size_t size() const { return size_; }
    static constexpr std::size_t kBytesOfFile = 24;
    /// Returns the bytes of the table.
    std::size_t bytes() const { return slots_.size() * sizeof(Slot); }

  private:
    /// The table is full to two thirds at least.
    struct Slot {
        std::uint64_t inode = 0;
        std::uint64_t used : 1 = 0;
        std::uint64_t device : 8 = 0;  ///< An index of devices_.
        std::uint64_t left : 16 = 0;   ///< The names not met yet; kEndless for too many.
        std::uint64_t sectors : 39 = 0;
    };
    static_assert(sizeof(Slot) * 3 <= kBytesOfFile * 2);

    Slot& slotOf(std::uint64_t inode, std::uint64_t device);
    std::size_t deviceIndex(std::uint64_t device);
    void grow();

    std::vector<Slot> slots_;
    std::vector<std::uint64_t> devices_;
    std::size_t size_ = 0;
};

}  // namespace hl
