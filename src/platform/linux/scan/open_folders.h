// The open folders of one scan, kept within a budget of descriptors.
//
// A folder stays open while something below it is still to be opened. Above the budget the folder that was
// opened longest ago (on the way down: the shallowest) is closed; the source never is. Before that its device
// and inode are noted. It comes back either on the way up, by "..", from the folder that is done with, or by
// name, step by step from the deepest open folder above it; either way it is taken only if device and inode
// are the same.
//
// Calls on the folders of a mount that can hang are never made under the lock (but for the seek when a long
// folder is opened again, which asks nobody), and only by threads that may hang: such a folder is found again
// by name alone, has its identity from the moment when it was opened, and is closed by closeClosable().
//
// The caller holds one lock around every call. No call recurses; depth has no limit.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/scan/directory_calls.h"

namespace hl {

class OpenFolders;

/// Whether a call failed for want of descriptors: to close a folder may help.
bool isShortage(int result);

/// A folder known to the scan: part of a chain up to the source. Kept while something refers to it.
class Folder {
  public:
    Folder* parent() const { return parent_; }
    std::uint32_t depth() const { return depth_; }  ///< 0 for the source.
    const std::string& name() const { return name_; }
    int descriptor() const { return descriptor_; }  ///< -1 while closed.
    /// Links followed on the way from the source, this one included.
    std::uint32_t linksAbove() const { return linksAbove_; }
    /// Unset until the folder was closed or got it by setId.
    const FolderId& id() const { return id_; }
    void setId(const FolderId& id) { id_ = id; }
    bool throughLink() const { return parent_ != nullptr && linksAbove_ != parent_->linksAbove_; }
    /// Where to go on reading if the folder was closed in the middle of its entries.
    std::int64_t cookie = 0;
    /// Calls on it may hang. As the folder above at first.
    bool canHang = false;

  private:
    friend class OpenFolders;
    Folder* parent_ = nullptr;
    std::string name_;
    std::uint32_t depth_ = 0;
    std::uint32_t linksAbove_ = 0;
    std::uint32_t references_ = 1;
    std::uint32_t needs_ = 0;  ///< Things below it still to be opened, or entries to be read.
    std::uint32_t pins_ = 0;   ///< Threads that use the descriptor right now.
    int descriptor_ = -1;
    int lost_ = 0;  ///< Error that ended the attempts to open it again.
    FolderId id_;
    Folder* olderOpen_ = nullptr;
    Folder* newerOpen_ = nullptr;
};

class OpenFolders {
  public:
    using Lock = std::unique_lock<std::mutex>;

    /// `budget` descriptors at most, but always enough for the source and for what threads use at once.
    OpenFolders(DirectoryCalls& calls, std::size_t budget) : calls_(calls), budget_(budget) {}
    /// REQUIRES: every folder was released.
    ~OpenFolders() = default;
    OpenFolders(const OpenFolders&) = delete;
    OpenFolders& operator=(const OpenFolders&) = delete;

    /// A folder with one reference; the parent (null for the source) gets one more. Not open yet.
    static Folder* make(Folder* parent, std::string name, bool throughLink);
    static void addReference(Folder* folder) { ++folder->references_; }
    /// Drops a reference; without any, the folder and what it alone kept alive are closed and gone.
    void release(Folder* folder);

    /// Takes over a descriptor that was just opened for this folder.
    void opened(Folder* folder, int descriptor);
    void addNeed(Folder* folder) { ++folder->needs_; }
    /// Closes the folder when nothing needs it any more.
    void dropNeed(Folder* folder);
    /// The descriptor, opened again if it had to be closed; it stays open until unpin. A negative system
    /// error code if the folder cannot be found again; it must not be unpinned then. `lock` is the caller's:
    /// given up meanwhile if the folder can hang.
    int pin(Folder* folder, Lock* lock = nullptr);
    void unpin(Folder* folder);
    /// Opens `above` again from `below`, by ".." alone, if it had to be closed. Cheap if it is open.
    /// REQUIRES: `above` is above `below`, which is pinned.
    void reopenFromBelow(Folder* above, Folder* below);
    /// Closes one folder that nobody uses right now. False if there is none.
    bool closeOne();
    /// Whether there are descriptors that are done with and that only a thread that may hang can close.
    bool hasClosable() const { return !closable_.empty(); }
    /// Whether there are such, or open folders that will be.
    bool someOpenCanHang() const;
    /// Closes them, without the lock.
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
