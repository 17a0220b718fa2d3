#include "platform/linux/scan/open_folders.h"

#include <errno.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace hl {

namespace {
constexpr unsigned kMostLevelsAtOnce = 1000;  // Keeps a path of ".." below the kernel's limit of 4096 bytes.
}

bool isShortage(int result) {
    return result == -EMFILE || result == -ENFILE;
}

Folder* OpenFolders::make(Folder* parent, std::string name, bool throughLink) {
    auto* folder = new Folder;
    folder->parent_ = parent;
    folder->name_ = std::move(name);
    if (parent != nullptr) {
        folder->depth_ = parent->depth_ + 1;
        folder->linksAbove_ = parent->linksAbove_ + (throughLink ? 1 : 0);
        folder->canHang = parent->canHang;
        addReference(parent);
    }
    return folder;
}

void OpenFolders::release(Folder* folder) {
    while (folder != nullptr && --folder->references_ == 0) {
        Folder* parent = folder->parent_;
        if (folder->descriptor_ >= 0) detach(folder);
        delete folder;
        folder = parent;
    }
}

void OpenFolders::attach(Folder* folder, int descriptor, bool asOldest) {
    folder->descriptor_ = descriptor;
    folder->olderOpen_ = asOldest ? nullptr : newest_;
    folder->newerOpen_ = asOldest ? oldest_ : nullptr;
    (folder->olderOpen_ != nullptr ? folder->olderOpen_->newerOpen_ : oldest_) = folder;
    (folder->newerOpen_ != nullptr ? folder->newerOpen_->olderOpen_ : newest_) = folder;
    mostOpen_ = std::max(mostOpen_, ++openCount_);
}

void OpenFolders::detach(Folder* folder) {
    (folder->olderOpen_ != nullptr ? folder->olderOpen_->newerOpen_ : oldest_) = folder->newerOpen_;
    (folder->newerOpen_ != nullptr ? folder->newerOpen_->olderOpen_ : newest_) = folder->olderOpen_;
    folder->olderOpen_ = folder->newerOpen_ = nullptr;
    if (folder->canHang) {
        closable_.push_back(folder->descriptor_);
    } else {
        calls_.close(folder->descriptor_);
    }
    folder->descriptor_ = -1;
    --openCount_;
}

void OpenFolders::opened(Folder* folder, int descriptor) {
    while (openCount_ >= budget_ && closeOne()) {
    }
    attach(folder, descriptor, false);
}

bool OpenFolders::closeOne() {
    for (Folder* folder = oldest_; folder != nullptr; folder = folder->newerOpen_) {
        if (folder->pins_ > 0 || folder->parent_ == nullptr) continue;
        if (!folder->canHang && calls_.identity(folder->descriptor_, folder->id_) < 0) continue;
        detach(folder);
        return true;
    }
    return false;
}

bool OpenFolders::someOpenCanHang() const {
    const Folder* folder = oldest_;
    while (folder != nullptr && !folder->canHang) folder = folder->newerOpen_;
    return folder != nullptr || hasClosable();
}

void OpenFolders::closeClosable(Lock& lock) {
    const std::vector<int> closable = std::exchange(closable_, {});
    lock.unlock();
    for (const int descriptor : closable) calls_.close(descriptor);
    lock.lock();
}

void OpenFolders::closeIfDone(Folder* folder) {
    if (folder->needs_ == 0 && folder->pins_ == 0 && folder->descriptor_ >= 0) detach(folder);
}

void OpenFolders::dropNeed(Folder* folder) {
    --folder->needs_;
    closeIfDone(folder);
}

int OpenFolders::pin(Folder* folder, Lock* lock) {
    if (folder->descriptor_ < 0) {
        int result = folder->lost_;
        if (result == 0) result = stepDown(folder, lock);
        while (isShortage(result) && closeOne()) {
            if (folder->canHang && lock != nullptr) closeClosable(*lock);
            result = stepDown(folder, lock);
        }
        if (result < 0 && !isShortage(result)) folder->lost_ = result;
        if (result < 0) return result;
    }
    ++folder->pins_;
    return folder->descriptor_;
}

void OpenFolders::unpin(Folder* folder) {
    --folder->pins_;
    closeIfDone(folder);
}

bool OpenFolders::isSame(int descriptor, const Folder* folder) {
    FolderId id;
    return calls_.identity(descriptor, id) == 0 && id == folder->id_;
}

void OpenFolders::reopenFromBelow(Folder* above, Folder* below) {
    if (above->descriptor_ >= 0 || above->lost_ < 0 || below->canHang) return;
    int at = below->descriptor_;
    for (std::uint32_t left = below->depth_ - above->depth_; left > 0 && at >= 0;) {
        const unsigned levels = std::min(left, kMostLevelsAtOnce);
        const int next = calls_.openAbove(at, levels);
        if (at != below->descriptor_) calls_.close(at);
        at = next;
        left -= levels;
    }
    if (at < 0) return;
    if (!isSame(at, above)) {
        calls_.close(at);  // Something was moved; it may still be found by name when its turn comes.
        return;
    }
    reattach(above, at);
}

void OpenFolders::reattach(Folder* folder, int descriptor) {
    if (folder->cookie != 0) calls_.seek(descriptor, folder->cookie);
    while (openCount_ >= budget_ && closeOne()) {
    }
    attach(folder, descriptor, true);
}

// Goes down from the deepest open folder above, by the names that were read; the identity is checked at the
// end.
int OpenFolders::stepDown(Folder* folder, Lock* lock) {
    if (folder->descriptor_ >= 0) return 0;  // Another thread was faster while the lock was released.
    std::vector<const Folder*> steps;
    Folder* start = folder;
    for (; start->descriptor_ < 0; start = start->parent_) {
        if (start->parent_ == nullptr) return -ESTALE;
        steps.push_back(start);
    }
    if (!folder->canHang || lock == nullptr) {
        const int result = openByNames(start, steps);
        if (result >= 0) reattach(folder, result);
        return std::min(result, 0);
    }
    ++start->pins_;
    lock->unlock();
    const int result = openByNames(start, steps);
    lock->lock();
    unpin(start);
    if (result < 0) return result;
    if (folder->descriptor_ < 0) {
        reattach(folder, result);
    } else {
        closable_.push_back(result);  // Another thread was faster.
    }
    return 0;
}

int OpenFolders::openByNames(Folder* start, const std::vector<const Folder*>& steps) {
    int at = start->descriptor_;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        const int next = calls_.openChild(at, (*step)->name_.c_str(), (*step)->throughLink(), true);
        if (at != start->descriptor_) calls_.close(at);
        if (next < 0) return next;
        at = next;
    }
    if (isSame(at, steps.front())) return at;
    calls_.close(at);
    return -ESTALE;
}

}  // namespace hl
