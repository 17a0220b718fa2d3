// The open folders of one scan, kept within a budget of descriptors.
//
// A folder stays open while something below it is still to be opened. Above the budget, the folder that was
// opened longest ago (on the way down: the shallowest) is closed, after its device and inode have been noted;
// the source never is. It is opened again either on the way up, by ".." from a folder that is done, or by
// name, step by step from the deepest open folder above it; either way it is accepted only if device and
// inode are the same.
//
// Calls on folders of a mount that can hang are never made under the lock (except the seek when a long folder
// is opened again, which asks nobody), and only by threads that may hang: such a folder is found again only
// by name, has its identity from when it was opened, and is closed by closeClosable().
//
// The caller holds one lock around every call. No call recurses; the depth has no limit.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/leave_out.h"
#include "platform/linux/scan/directory_calls.h"

namespace hl {

class OpenFolders;

/// Tells whether a call failed for lack of descriptors, so that closing a folder may help.
bool isShortage(int result);

/// A folder that the scan knows, with a chain of parents up to the source. It exists while something refers
/// to it.
class Folder {
  public:
    Folder* parent() const { return parent_; }
    std::uint32_t depth() const { return depth_; }  ///< 0 for the source.
    const std::string& name() const { return name_; }
    int descriptor() const { return descriptor_; }  ///< -1 while closed.
    /// The number of links followed on the way from the source, this folder's included.
    std::uint32_t linksAbove() const { return linksAbove_; }
    /// Unset until the folder was closed, or setId was called.
    const FolderId& id() const { return id_; }
    void setId(const FolderId& id) { id_ = id; }
    bool throughLink() const { return parent_ != nullptr && linksAbove_ != parent_->linksAbove_; }
    /// Where reading continues if the folder was closed in the middle of its entries.
    std::int64_t cookie = 0;
    /// Its place for the rules of what is left out; whoever reads its first block sets it.
    LeaveOut::PlacePtr rulesPlace;
    /// Calls on it may hang. At first this is the value of the folder above.
    bool canHang = false;

  private:
    friend class OpenFolders;
    Folder* parent_ = nullptr;
    std::string name_;
    std::uint32_t depth_ = 0;
    std::uint32_t linksAbove_ = 0;
    std::uint32_t references_ = 1;
    std::uint32_t needs_ = 0;  ///< Things below it still to be opened, or entries to be read.
    std::uint32_t pins_ = 0;   ///< The number of threads that are using the descriptor.
    int descriptor_ = -1;
    int lost_ = 0;  ///< The error that ended the attempts to open it again.
    FolderId id_;
    Folder* olderOpen_ = nullptr;
    Folder* newerOpen_ = nullptr;
};

class OpenFolders {
  public:
    using Lock = std::unique_lock<std::mutex>;

    /// Keeps at most `budget` descriptors, but always enough for the source and for what threads are using.
    OpenFolders(DirectoryCalls& calls, std::size_t budget) : calls_(calls), budget_(budget) {}
    /// REQUIRES: every folder was released.
    ~OpenFolders() = default;
    OpenFolders(const OpenFolders&) = delete;
    OpenFolders& operator=(const OpenFolders&) = delete;

    /// Returns a folder with one reference, not open yet; the parent (null for the source) gets one more.
    static Folder* make(Folder* parent, std::string name, bool throughLink);
    static void addReference(Folder* folder) { ++folder->references_; }
    /// Drops a reference; the folder without any, and those that it alone kept, are closed and deleted.
    void release(Folder* folder);

    /// Takes over a descriptor that was just opened for this folder.
    void opened(Folder* folder, int descriptor);
    void addNeed(Folder* folder) { ++folder->needs_; }
    /// Closes the folder when nothing needs it any more.
    void dropNeed(Folder* folder);
    /// Returns the descriptor, which stays open until unpin; it is opened again if it had been closed. If the
    /// folder cannot be found again, returns a negative system error code, and unpin must not be called.
    /// `lock` is the caller's; it is released meanwhile if the folder can hang.
    int pin(Folder* folder, Lock* lock = nullptr);
    void unpin(Folder* folder);
    /// Opens `above` again from `below`, only by "..", if it had been closed. Cheap if it is open. REQUIRES:
    /// `above` is above `below`, which is pinned.
    void reopenFromBelow(Folder* above, Folder* below);
    /// Closes one folder that nobody is using. Returns false if there is none.
    bool closeOne();
    /// Tells whether there are descriptors that are done with but that only a thread that may hang can close.
    bool hasClosable() const { return !closable_.empty(); }
    /// Tells whether there are such descriptors, or open folders that will become such.
    bool someOpenCanHang() const;
    /// Closes these descriptors, without the lock.
    void closeClosable(Lock& lock);

    std::size_t mostOpen() const { return mostOpen_; }

  private:
    void attach(Folder* folder, int descriptor, bool asOldest);
    void reattach(Folder* folder, int descriptor);
    void detach(Folder* folder);
    void closeIfDone(Folder* folder);
    bool isSame(int descriptor, const Folder* folder);
    int stepDown(Folder* folder, Lock* lock);
    int openByNames(Folder* start, const std::vector<const Folder*>& steps);

    DirectoryCalls& calls_;
    std::size_t budget_;
    std::size_t openCount_ = 0;
    std::size_t mostOpen_ = 0;
    Folder* oldest_ = nullptr;
    Folder* newest_ = nullptr;
    std::vector<int> closable_;
};

}  // namespace hl
