// The tree; the disk that has it. The texts are read in foreign_texts.cpp.
#include "scan/saved/foreign_tree.h"

#include <utility>

#include "base/size_text.h"

namespace hl {

namespace {

using Kind = ForeignEntry::Kind;

struct TreeListing final : Listing {
    std::vector<Entry> entryList;
    std::vector<EntryDetails> detailList;
    std::string nameBytes;
};

/// Hands out a folder at a time, in the order of the walk.
class TreeReader final : public FolderReader {
  public:
    TreeReader(const ForeignTree& tree, const ReadOptions& options) : tree_(tree), options_(options) {}

    std::unique_ptr<Listing> next() override {
        const std::uint32_t folder = nextFolder();
        return folder == ForeignEntry::kNone ? nullptr : listing(folder);
    }

  private:
    std::uint32_t nextFolder() {
        if (!std::exchange(begun_, true)) {
            if (tree_.count() == 0) return ForeignEntry::kNone;
            open_.push_back(tree_.at(0).firstChild);
            return 0;
        }
        while (!open_.empty()) {
            const std::uint32_t place = open_.back();
            if (place == ForeignEntry::kNone) {
                open_.pop_back();
                continue;
            }
            open_.back() = tree_.at(place).next;
            if (!tree_.at(place).isFolder()) continue;
            open_.push_back(tree_.at(place).firstChild);
            return place;
        }
        return ForeignEntry::kNone;
    }

    std::unique_ptr<Listing> listing(std::uint32_t folder) const {
        const ForeignEntry& is = tree_.at(folder);
        auto block = std::make_unique<TreeListing>();
        block->facts = FolderFacts{.id = {is.device, is.inode},
                                   .size = is.size,
                                   .blocks = is.blocks,
                                   .written = is.written,
                                   .owner = is.owner};
        block->source = {is.device, is.inode};
        if (is.kind == Kind::kUnread) block->error = Error{.text = "It could not be read"};
        block->leftOut = is.kind == Kind::kOtherMount;
        if (block->leftOut) block->kind = FolderKind::kMountRoot;
        for (std::uint32_t i = is.firstChild; i != ForeignEntry::kNone; i = tree_.at(i).next) add(*block, i);
        block->entries = block->entryList.data();
        block->count = block->entryList.size();
        block->details = block->detailList.data();
        block->names = block->nameBytes.data();
        return block;
    }

    void add(TreeListing& block, std::uint32_t place) const {
        const ForeignEntry& from = tree_.at(place);
        Entry entry;
        if (from.isFolder()) entry.attributes = kAttributeDirectory | kEntered;
        if (!from.isFolder()) entry.size = from.size;
        if (options_.wantLinks && !from.isFolder()) {
            entry.inode = from.inode;
            entry.device = static_cast<std::uint32_t>(from.device);
            entry.links = from.links;
        }
        entry.nameOffset = static_cast<std::uint32_t>(block.nameBytes.size());
        entry.nameLength = from.nameLength;
        block.nameBytes.append(tree_.name(place)).push_back('\0');
        block.entryList.push_back(entry);
        block.detailList.push_back({.written = from.written, .blocks = from.blocks, .owner = from.owner});
    }

    const ForeignTree& tree_;
    const ReadOptions options_;
    bool begun_ = false;
    std::vector<std::uint32_t> open_;  ///< For each folder on the way down, the entry that comes next.
};

}  // namespace

std::uint32_t ForeignTree::add(std::uint32_t parent, const ForeignEntry& entry, std::string_view name) {
    const std::uint32_t place = count();
    ForeignEntry& made = entries_.emplace_back(entry);
    made.nameOffset = names_.size();
    made.nameLength = static_cast<std::uint16_t>(name.size());
    names_ += name;
    if (parent == ForeignEntry::kNone) return place;
    ForeignEntry& above = entries_[parent];
    (above.lastChild == ForeignEntry::kNone ? above.firstChild : entries_[above.lastChild].next) = place;
    above.lastChild = place;
    return place;
}

std::unique_ptr<FolderReader> ForeignDisk::read(std::string_view /*source*/, const ReadOptions& options,
                                                WaitCallback* /*wait*/) {
    return std::make_unique<TreeReader>(tree_, options);
}

Result<PathFacts> ForeignDisk::look(std::string_view /*path*/) {
    return PathFacts{.isFolder = true};
}

Result<std::string> ForeignDisk::target(std::string_view /*path*/) {
    return Error{.kind = ErrorKind::kNotFound};
}

}  // namespace hl
