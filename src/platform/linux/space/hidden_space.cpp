#include "platform/linux/space/hidden_space.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "base/size_text.h"
#include "platform/linux/scan/file_system.h"

namespace hl {

namespace {

// Returns the places below the mount's root where others are mounted, relative to it.
std::vector<std::string> placesCovered(const std::vector<Mount>& mounts, const Mount& mount) {
    std::vector<std::string> places;
    const std::size_t above = mount.mountPoint == "/" ? 0 : mount.mountPoint.size();
    for (const Mount& each : mounts)
        if (each.parent == mount.id && each.id != mount.id && each.mountPoint.size() > above + 1 &&
            isAtOrBelow(each.mountPoint, mount.mountPoint))
            places.push_back(each.mountPoint.substr(above + 1));
    // A place within another one is counted with it.
    std::sort(places.begin(), places.end());
    std::vector<std::string> outer;
    for (std::string& place : places) {
        const auto holds = [&](const std::string& folder) { return isAtOrBelow(place, folder); };
        if (std::none_of(outer.begin(), outer.end(), holds)) outer.push_back(std::move(place));
    }
    return outer;
}

Descriptor copyOf(const Descriptor& folder) {
    return Descriptor(static_cast<int>(
        ::syscall(SYS_open_tree, folder.number(), "", OPEN_TREE_CLONE | OPEN_TREE_CLOEXEC | AT_EMPTY_PATH)));
}

/// Counts a folder with all that lies below it.
class TreeCount {
  public:
    TreeCount(SpaceCount& count, Whereabouts& whereabouts) : count_(count), whereabouts_(whereabouts) {}

    void add(const std::string& folder) {
        ReadOptions options;
        options.wantLinks = options.wantSpace = true;
        options.wantFileNames = false;
        options.folderSpace = FolderSpace::kAlways;
        LinuxFileSystem disk(limitsOfThisMachine(true));
        reader_ = disk.read(folder, options, nullptr);
        enter();
        while (!levels_.empty()) step();
    }

  private:
    struct Level {
        std::unique_ptr<Listing> block;
        std::size_t next = 0;
    };
    void enter() {
        whereabouts_.at([] { return std::string(); });
        if (whereabouts_.unwanted()) throw LeftBehind();
        levels_.push_back({reader_->next()});
        if (const Listing& block = *levels_.back().block; block.ownBlocks) count_.addFolder(*block.ownBlocks);
    }
    void step() {
        Level& level = levels_.back();
        const Listing& block = *level.block;
        while (level.next < block.count) {
            const Entry& entry = block.entries[level.next];
            const std::uint64_t blocks = block.details[level.next++].blocks;
            if (entry.isEntered()) return enter();
            if ((entry.attributes & kAttributeDirectory) != 0) {
                count_.addFolder(blocks);
            } else {
                count_.addFile(entry, blocks);
            }
        }
        if (!block.more) return levels_.pop_back();
        level.block = reader_->next();
        level.next = 0;
    }

    SpaceCount& count_;
    Whereabouts& whereabouts_;
    std::unique_ptr<FolderReader> reader_;
    std::vector<Level> levels_;
};

void addFileAt(int folder, const std::string& name, SpaceCount& count) {
    struct stat facts;
    if (::fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return;
    Entry entry;
    entry.size = static_cast<std::uint64_t>(facts.st_size);
    entry.inode = facts.st_ino;
    entry.links = static_cast<std::uint32_t>(facts.st_nlink);
    count.addFile(entry, static_cast<std::uint64_t>(facts.st_blocks));
}

bool isFolderAt(int folder, const std::string& name) {
    struct stat facts;
    return ::fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(facts.st_mode);
}

}  // namespace

void findHidden(const std::vector<Mount>& mounts, const Mount& mount, const Descriptor& folder,
                Whereabouts& whereabouts, SpaceFacts& facts) {
    const std::vector<std::string> places = placesCovered(mounts, mount);
    facts.covered = static_cast<std::uint32_t>(places.size());
    if (places.empty()) return;
    const Descriptor copy = copyOf(folder);
    if (!copy.isOpen()) {
        facts.hiddenUnknown = errno == EPERM ? Unknown::kNeedsRoot : Unknown::kNotTold;
        return;
    }
    // The copy has no place, so paths into it begin at its descriptor.
    const std::string root = "/proc/self/fd/" + std::to_string(copy.number()) + "/";
    for (const std::string& place : places) {
        if (isFolderAt(copy.number(), place)) {
            TreeCount(facts.hidden, whereabouts).add(root + place);
        } else {
            addFileAt(copy.number(), place, facts.hidden);
        }
    }
    facts.hidden.finish();
}

}  // namespace hl
