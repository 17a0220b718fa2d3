// Opens the folders that are read ahead, and learns of them what the walk and the scan's other readers have
// to know: what is mounted there, whether it can hang, whether it leads back to a folder above. A part of
// ReadAheadCore, under its mutex, which is released for calls that may take long.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/drives/mount_table.h"
#include "platform/linux/scan/link_look.h"
#include "platform/linux/scan/read_ahead_order.h"
#include "platform/linux/scan/way_down.h"

namespace hl {

class FolderOpener {
  public:
    using Lock = std::unique_lock<std::mutex>;

    /// A reader, as far as it matters here.
    class Reader {
      public:
        virtual ~Reader() = default;
        /// Is called before the item's folder is opened, which can hang. Returns false if this reader may not
        /// do that.
        virtual bool enter(ReadItem* item) = 0;
    };

    /// This is no system error code: this reader may not open the folder.
    static constexpr int kForAnother = -100'000;

    /// `folders` must outlive it.
    FolderOpener(std::shared_ptr<DirectoryCalls> calls, std::string source, const ReadOptions& options,
                 std::chrono::milliseconds linkLimit, OpenFolders& folders);

    const ReadOptions& options() const { return options_; }
    LinkLook& links() { return links_; }
    /// Returns the source, not open yet, with one reference.
    Folder* makeSource() const;
    /// Tells whether folders' own blocks are asked for; known once the source is open.
    bool wantsOwnBlocks() const { return wantsOwnBlocks_; }
    /// Opens the item's folder and pins it, with a need for the time of reading. Returns the descriptor, a
    /// negative system error code, or kForAnother. REQUIRES: the item is of the kind kFolder, and taken.
    int open(ReadItem* item, Reader& reader, Lock& lock);

  private:
    int openSource(ReadItem* item, Lock& lock);
    int openBelow(ReadItem* item, Folder* parent, Reader& reader, Lock& lock);
    int openOnce(ReadItem* item, int parent, Reader& reader, Lock& lock);
    void reopenNextNeeded(const ReadItem* item, Folder* parent);
    bool leadsWhereItCanHang(const Folder* folder, int parent) const;
    int learnFolder(ReadItem* item, int descriptor, Lock& lock);
    void learnMount(ReadItem* item, int parent);
    void learnUnopened(ReadItem* item, int parent);
    void noteMount(ReadItem* item, const struct statx& facts);
    bool leadsBack(ReadItem* item, const struct statx& facts);
    bool isWholeDisk(int source) const;

    DirectoryCalls& calls_;
    const std::string source_;
    const ReadOptions options_;
    const std::vector<Mount> mounts_;
    LinkLook links_;
    OpenFolders& folders_;
    WayDown wayDown_;
    bool wantsOwnBlocks_ = false;
};

}  // namespace hl
