// Looks at the entries of folders, some at a time, and asks for the extents of files where those may be
// shared. That question takes the most time, so two threads ask. For one thread; see SharedWork.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "platform/freed_sum.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/scan/directory_calls.h"
#include "platform/linux/space/file_extents.h"
#include "platform/linux/space/shared_work.h"

namespace hl {

struct EntryLook {
    enum class Kind : std::uint8_t {
        kGone,  ///< Or not looked at, since the work is unwanted.
        kUnknown,
        kFolder,
        kMount,  ///< A file that is mounted there.
        kFile,
    };
    enum class Extents : std::uint8_t { kNotAsked, kUntold, kInline, kTold };

    int folder = -1;          ///< Open.
    std::size_t name = 0;     ///< Where it begins among the names.
    bool mayBeFolder = true;  ///< The record did not tell.
    Kind kind = Kind::kGone;
    bool hasExtents = false;  ///< It may have some that are shared.
    Extents extents = Extents::kNotAsked;
    FreedName file;
    std::vector<SpecialExtent> special = {};
};

class EntryLooks {
  public:
    /// The first two must outlive this object. `place` is what `whereabouts` is told.
    EntryLooks(DirectoryCalls& calls, Whereabouts& whereabouts, const std::string& place)
        : calls_(calls), whereabouts_(whereabouts), place_(place) {}

    /// Tells what the file system shares; for the entries that are added from now on.
    void setSharing(Sharing sharing) { sharing_ = sharing; }
    /// Tells whether many at a time are quicker.
    bool areShared() const { return sharing_ == Sharing::kBlocks || sharing_ == Sharing::kExtents; }
    /// Adds an entry of the open folder, which must stay open until it was looked at. REQUIRES: it is not
    /// full.
    void add(int folder, const char* name, bool mayBeFolder);
    bool isFull() const { return count_ == entries_.size(); }
    /// Looks at all that were added, and asks for the extents of files that have one name. The result stays
    /// until the next entry is added.
    std::span<EntryLook> look();
    const char* nameOf(const EntryLook& entry) const { return names_.data() + entry.name; }
    /// Asks for the extents of one file.
    void askExtents(EntryLook& entry) { askExtents(0, entry); }

  private:
    void lookAt(std::size_t thread, EntryLook& entry);
    void askExtents(std::size_t thread, EntryLook& entry);

    DirectoryCalls& calls_;
    Whereabouts& whereabouts_;
    const std::string& place_;
    Sharing sharing_ = Sharing::kUntold;
    const std::function<bool()> goesOn_ = [this] { return !whereabouts_.unwanted(); };
    std::array<EntryLook, 128> entries_;
    std::size_t count_ = 0;
    std::string names_;  ///< Each ends with a NUL.
    std::array<FileExtents, SharedWork::kThreads> extents_;
    SharedWork work_;
};

}  // namespace hl
