// Which folders are the same; what has changed.
#include "scan/saved/compare.h"

#include <unordered_map>

namespace hl {

namespace {

constexpr std::uint32_t kNone = FolderList::kNone;

/// Nobody knows what lies in such a folder, or not all of it.
bool isUnread(const ListedFolder& folder) {
    return (folder.flags & (kScanMount | kScanError | kScanSnapshot | kScanLeftOut | kScanStopped)) != 0;
}

class Comparing {
  public:
    Comparing(const FolderList& before, const FolderList& after)
        : before_(before),
          after_(after),
          toAfter_(before.size(), kNone),
          toBefore_(after.size(), kNone),
          moved_(after.size(), false) {}

    ScanChanges run() {
        if (before_.size() > 0 && after_.size() > 0) pairTree(0, 0, false);
        pairByIdentity();
        // What was made anew in a renamed folder under a name that was there before is the same, too.
        for (std::uint32_t i = 0; i < after_.size(); ++i)
            if (moved_[i]) pairTree(toBefore_[i], i, true);
        for (std::uint32_t i = 0; i < after_.size(); ++i) takeAfter(i);
        for (std::uint32_t i = 0; i < before_.size(); ++i) takeGone(i);
        takeOwn();
        return std::move(changes_);
    }

  private:
    struct Pair {
        std::uint32_t before, after;
    };

    void pairTree(std::uint32_t before, std::uint32_t after, bool moved);
    void pairChildren(Pair of);
    void pairByIdentity();
    bool isRenamed(std::uint32_t place) const;
    bool isSame(std::uint32_t before, std::uint32_t after) const;
    void takeAfter(std::uint32_t place);
    void takeGone(std::uint32_t place);
    void takeOwn();
    static FileSums sumOf(const FolderList& list, std::uint32_t place,
                          const std::vector<std::uint32_t>& partners);

    const FolderList& before_;
    const FolderList& after_;
    std::vector<std::uint32_t> toAfter_, toBefore_;  ///< The same folder in the other list.
    std::vector<bool> moved_;                        ///< Folders of the later list that had another path.
    std::vector<Pair> open_;
    ScanChanges changes_;
};

// --- which folders are the same

// Both are the same folder, and so is what has the same name in both, on all levels.
void Comparing::pairTree(std::uint32_t before, std::uint32_t after, bool moved) {
    open_.push_back({before, after});
    while (!open_.empty()) {
        const Pair next = open_.back();
        open_.pop_back();
        toAfter_[next.before] = next.after;
        toBefore_[next.after] = next.before;
        moved_[next.after] = moved;
        pairChildren(next);
    }
}

void Comparing::pairChildren(Pair of) {
    std::uint32_t left = of.before + 1, right = of.after + 1;
    const std::uint32_t leftEnd = before_.at(of.before).end, rightEnd = after_.at(of.after).end;
    while (left < leftEnd && right < rightEnd) {
        const int order = before_.name(left).compare(after_.name(right));
        const bool isFree = toAfter_[left] == kNone && toBefore_[right] == kNone;
        if (order == 0 && isFree) open_.push_back({left, right});
        const std::uint32_t nextLeft = before_.at(left).end, nextRight = after_.at(right).end;
        if (order <= 0) left = nextLeft;
        if (order >= 0) right = nextRight;
    }
}

// Folders come in front of what lies in them, so a renamed tree is found at its top first.
void Comparing::pairByIdentity() {
    std::unordered_multimap<std::uint64_t, std::uint32_t> gone;
    for (std::uint32_t i = 0; i < before_.size(); ++i)
        if (toAfter_[i] == kNone && before_.at(i).inode != 0) gone.emplace(before_.at(i).inode, i);
    if (gone.empty()) return;
    for (std::uint32_t i = 0; i < after_.size(); ++i) {
        if (toBefore_[i] != kNone || after_.at(i).inode == 0) continue;
        const auto [first, end] = gone.equal_range(after_.at(i).inode);
        for (auto candidate = first; candidate != end; ++candidate) {
            const std::uint32_t before = candidate->second;
            if (toAfter_[before] != kNone || !isSame(before, i)) continue;
            toAfter_[before] = i;
            toBefore_[i] = before;
            moved_[i] = true;
            break;
        }
    }
}

// A folder that came along with the one above is not called renamed itself.
bool Comparing::isRenamed(std::uint32_t place) const {
    if (!moved_[place]) return false;
    const std::uint32_t before = toBefore_[place];
    return toBefore_[after_.at(place).parent] != before_.at(before).parent ||
           after_.name(place) != before_.name(before);
}

bool Comparing::isSame(std::uint32_t before, std::uint32_t after) const {
    const ListedFolder& was = before_.at(before);
    const ListedFolder& is = after_.at(after);
    const bool sameParent = is.parent != kNone && moved_[is.parent] && toBefore_[is.parent] == was.parent;
    if (!(was.onSourceDisk && is.onSourceDisk) && !sameParent) return false;
    const bool wasKnown = (was.flags & kScanCreated) != 0, isKnown = (is.flags & kScanCreated) != 0;
    if (wasKnown || isKnown) return wasKnown && isKnown && was.created == is.created;
    return was.own.files == is.own.files && was.own.bytes == is.own.bytes && was.own.files != 0 &&
           was.own.bytes != 0;
}

// --- what has changed

void Comparing::takeAfter(std::uint32_t place) {
    FolderChange change{.before = toBefore_[place], .after = place};
    const ListedFolder& folder = after_.at(place);
    if (change.before != kNone) {
        const ListedFolder& was = before_.at(change.before);
        if (isRenamed(place)) change.kind = FolderChange::Kind::kRenamed;
        if (!isUnread(was) && !isUnread(folder)) {
            change.was = was.own;
            change.is = folder.own;
        }
        changes_.was.add(change.was);
        changes_.is.add(change.is);
        if (change.bytes() != 0 || change.kind == FolderChange::Kind::kRenamed)
            changes_.folders.push_back(change);
        return;
    }
    // The top of a new tree stands for all of it.
    const std::uint32_t parent = toBefore_[folder.parent];
    if (parent == kNone || isUnread(before_.at(parent))) return;
    change.kind = FolderChange::Kind::kNew;
    change.is = sumOf(after_, place, toBefore_);
    changes_.is.add(change.is);
    changes_.folders.push_back(change);
}

void Comparing::takeGone(std::uint32_t place) {
    if (toAfter_[place] != kNone || place == 0) return;
    const std::uint32_t parent = toAfter_[before_.at(place).parent];
    if (parent == kNone || isUnread(after_.at(parent))) return;
    FolderChange change{.kind = FolderChange::Kind::kGone, .before = place, .after = parent};
    change.was = sumOf(before_, place, toAfter_);
    changes_.was.add(change.was);
    changes_.folders.push_back(change);
}

// A folder comes in front of what lies in it, so the top of a new tree tells for all of it whether it is
// known to be new.
void Comparing::takeOwn() {
    changes_.own.resize(after_.size());
    std::vector<bool> isNew(after_.size(), false);
    for (std::uint32_t i = 0; i < after_.size(); ++i) {
        const ListedFolder& folder = after_.at(i);
        const std::uint32_t before = toBefore_[i];
        if (before == kNone) {
            const std::uint32_t above = toBefore_[folder.parent];
            isNew[i] = above == kNone ? isNew[folder.parent] : !isUnread(before_.at(above));
            if (isNew[i]) changes_.own[i] = {0, folder.own.bytes};
        } else if (!isUnread(before_.at(before)) && !isUnread(folder)) {
            changes_.own[i] = {before_.at(before).own.bytes, folder.own.bytes};
        }
    }
}

// Sums the tree without those that are elsewhere in the other list, and without what lies in these; a folder
// below them that is new stands for itself.
FileSums Comparing::sumOf(const FolderList& list, std::uint32_t place,
                          const std::vector<std::uint32_t>& partners) {
    FileSums sum;
    const std::uint32_t end = list.at(place).end;
    for (std::uint32_t i = place; i < end;) {
        if (partners[i] != kNone) {
            i = list.at(i).end;
            continue;
        }
        sum.add(list.at(i).own);
        ++i;
    }
    return sum;
}

}  // namespace

ScanChanges compareScans(const FolderList& before, const FolderList& after) {
    return Comparing(before, after).run();
}

}  // namespace hl
