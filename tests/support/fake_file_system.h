// A tree of folders in memory behind the interface of the file system, with a record of the questions to it.
#pragma once

#include "base/fault.h"
#include "base/size_text.h"
#include "platform/folder_reader.h"
#include "platform/linux/process/system_error.h"

namespace hl::test {

/// An entry, and for a folder everything below it.
struct Item {
    std::string name;
    Entry facts = {};  ///< The size, inode, links, attributes and tag.
    EntryDetails details = {};
    std::string target = {};  ///< The target of a link, or what is mounted.
    bool isMount = false;
    std::optional<std::int64_t> created = {};  ///< Of a folder.
    std::optional<Subvolume> subvolume = {};   ///< Set if it is the root of one.
    std::vector<Item> items = {};
    // How the folder is read.
    int error = 0;
    int entryError = 0;
    int endError = 0;
    std::size_t failingBlock = 0;   ///< Counted from 1; the block's entries are lost.
    std::size_t blockEntries = 99;  ///< The number of entries in a block.

    bool isFolder() const { return (facts.attributes & kAttributeDirectory) != 0; }
    bool isLink() const { return (facts.attributes & kAttributeReparse) != 0; }
};

inline Item file(std::string name, std::uint64_t size, std::uint64_t inode = 0, std::uint32_t links = 1) {
    return {.name = std::move(name), .facts = {.size = size, .inode = inode, .links = links}};
}
inline Item linkToFile(std::string name) {
    return {.name = std::move(name), .facts = {.size = 1, .tag = kTagSymbolicLink}};
}
inline Item folder(std::string name, std::vector<Item> items = {}) {
    return {.name = std::move(name), .facts = {.attributes = kAttributeDirectory}, .items = std::move(items)};
}
inline Item linkTo(std::string name, std::string target, std::vector<Item> items = {}) {
    Item item = folder(std::move(name), std::move(items));
    item.facts.attributes |= kAttributeReparse;
    item.facts.tag = kTagSymbolicLink;
    item.target = std::move(target);
    return item;
}
inline Item mountOf(std::string name, std::string source, std::vector<Item> items = {}) {
    Item item = folder(std::move(name), std::move(items));
    item.isMount = true;
    item.target = std::move(source);
    return item;
}
/// Returns the item with one field set, as in with(folder("a"), &Item::error, 13).
template <class T>
Item with(Item item, T Item::*field, std::type_identity_t<T> value) {
    item.*field = value;
    return item;
}

class FakeFileSystem : public FileSystem {
  public:
    /// They are named by their full paths, without a separator at the end.
    std::vector<Item> sources;
    char separator = '/';
    /// What happens when the n-th block is asked for, counted from 1.
    std::map<int, std::function<void()>> at;
    int waitsAt = 0;                  ///< The block for which the reader has to wait, counted from 1.
    int waits = 1;                    ///< How often it asks whether to go on while it waits.
    std::vector<Error> silentMounts;  ///< These are told with the next block.
    std::map<std::string, int, std::less<>> lookErrors;

    // The record of questions.
    std::vector<std::string> reads;
    ReadOptions lastOptions;
    std::vector<std::string> folders;  ///< The names, in the order of their first blocks.
    int blocks = 0;
    int unread = 0;  ///< The blocks that a reader still had when it was destroyed.

    std::unique_ptr<FolderReader> read(std::string_view source, const ReadOptions& options,
                                       WaitCallback* wait) override;
    Result<PathFacts> look(std::string_view path) override {
        if (const auto error = lookErrors.find(path); error != lookErrors.end())
            return systemError(error->second);
        const Item* item = find(path);
        if (item == nullptr) return systemError(ENOENT);
        return PathFacts{item->isFolder() && !item->isLink(), item->facts.inode, item->facts.links,
                         item->facts.size};
    }
    Result<std::string> target(std::string_view path) override {
        const Item* item = find(path);
        if (item == nullptr || item->target.empty()) return systemError(item == nullptr ? ENOENT : EINVAL);
        return item->target;
    }

    bool countsBeforeCompression(std::string_view) override { return false; }

    /// Returns the item of a full path; null if there is none.
    Item* find(std::string_view path) {
        if (path.starts_with("\\\\?\\")) path.remove_prefix(4);
        if (path.size() > 1 && path.ends_with(separator)) path.remove_suffix(1);
        for (Item& source : sources) {
            if (path == source.name) return &source;
            const std::string base = source.name.back() == separator ? source.name : source.name + separator;
            if (path.starts_with(base)) return findBelow(source, path.substr(base.size()));
        }
        return nullptr;
    }

  private:
    Item* findBelow(Item& parent, std::string_view path) {
        const std::string_view name = path.substr(0, path.find(separator));
        for (Item& item : parent.items) {
            if (item.name != name) continue;
            return name == path ? &item : findBelow(item, path.substr(name.size() + 1));
        }
        return nullptr;
    }
};

class FakeReader : public FolderReader {
  public:
    FakeReader(FakeFileSystem& disk, const Item& source, const ReadOptions& options, WaitCallback* wait)
        : disk_(disk), options_(options), wait_(wait) {
        open_.push_back({&source});
    }
    ~FakeReader() override {
        while (deliver() != nullptr) ++disk_.unread;
    }

    std::unique_ptr<Listing> next() override {
        ++disk_.blocks;
        if (const auto act = disk_.at.find(disk_.blocks); act != disk_.at.end()) act->second();
        for (int i = 0; disk_.blocks == disk_.waitsAt && wait_ != nullptr && i < disk_.waits; ++i)
            if (!wait_->goOnWaiting()) return nullptr;
        auto block = deliver();
        if (block != nullptr) block->silentMounts = std::exchange(disk_.silentMounts, {});
        if (block == nullptr) ADD_FAILURE() << "asked for a block beyond the last";
        if (block != nullptr && first_) disk_.folders.push_back(open_.back().item->name);
        return block;
    }

  private:
    struct Open {
        const Item* item;
        bool started = false;
        std::size_t next = 0;  ///< The entry that the walk meets next.
        std::size_t end = 0;   ///< The end of the entries that were delivered.
        std::size_t block = 0;
    };

    struct Block : Listing {
        std::vector<Entry> entryList;
        std::vector<EntryDetails> detailList;
        std::string nameBytes;
    };

    bool isEntered(const Item& item) const {
        return item.isFolder() && options_.recursive && (!item.isLink() || options_.followLinks);
    }
    bool isLeftOut(const Open& open) const {
        return open.item->isMount && open_.size() > 1 && !options_.followLinks;
    }
    bool isPutOff(const Open& open) const {
        const Item& item = *open.item;
        return options_.putOffSnapshots && item.subvolume && item.subvolume->readOnly &&
               item.subvolume->isSnapshot() && !item.isLink() && (open_.size() > 1 || options_.putOffSource);
    }
    bool isShut(const Open& open) const { return open.item->error != 0 || isLeftOut(open) || isPutOff(open); }
    std::size_t entriesOf(const Open& open) const { return isShut(open) ? 0 : open.item->items.size(); }

    /// Returns null after the last block.
    std::unique_ptr<Listing> deliver() {
        while (!open_.empty()) {
            Open& open = open_.back();
            first_ = !std::exchange(open.started, true);
            if (first_) return blockOf(open);
            while (open.next < open.end) {
                const Item& entry = open.item->items[open.next++];
                if (!isEntered(entry)) continue;
                open_.push_back({&entry, true});
                first_ = true;
                return blockOf(open_.back());
            }
            if (open.end < entriesOf(open)) return blockOf(open);
            open_.pop_back();
        }
        return nullptr;
    }

    std::unique_ptr<Listing> blockOf(Open& open) {
        const Item& item = *open.item;
        auto block = std::make_unique<Block>();
        const std::size_t end = std::min(open.end + item.blockEntries, entriesOf(open));
        if (++open.block == item.failingBlock) {
            block->failure = std::make_exception_ptr(Fault(kFaultProcessor, "reader", "bad block"));
            open.next = open.end = end;
        }
        for (; open.end < end; ++open.end) add(*block, item.items[open.end]);
        block->more = open.end < entriesOf(open);
        if (open.block == 1 && item.error != 0) block->error = systemError(item.error);
        if (item.entryError != 0) block->entryError = systemError(item.entryError);
        if (!block->more && item.endError != 0) block->endError = systemError(item.endError);
        block->leftOut = isLeftOut(open);
        block->putOff = isPutOff(open);
        if (options_.wantSubvolumes && open.block == 1) block->subvolume = item.subvolume;
        if (options_.folderFacts && open.block == 1)
            block->facts = {.id = {item.facts.device, item.facts.inode}, .created = item.created};
        if (item.isMount && open_.size() > 1) {
            block->kind = FolderKind::kMountRoot;
            block->mountSource = item.target;
        }
        block->entries = block->entryList.data();
        block->count = block->entryList.size();
        block->details = options_.wantTimes || options_.wantSpace || options_.wantOwners
                             ? block->detailList.data()
                             : nullptr;
        block->names = block->nameBytes.data();
        return block;
    }

    void add(Block& block, const Item& item) {
        Entry entry = item.facts;
        if (isEntered(item)) entry.attributes |= kEntered;
        if (!options_.wantLinks) entry.device = 0, entry.links = 1;
        if (item.isFolder() ? !options_.folderFacts : !options_.wantLinks) entry.inode = 0;
        const bool named = item.isFolder() || options_.wantFileNames;
        entry.nameOffset = static_cast<std::uint32_t>(block.nameBytes.size());
        entry.nameLength = static_cast<std::uint16_t>(named ? item.name.size() : 0);
        entry.targetLength = static_cast<std::uint16_t>(item.isLink() ? item.target.size() : 0);
        block.nameBytes += (named ? item.name : "") + '\0' + (item.isLink() ? item.target + '\0' : "");
        block.entryList.push_back(entry);
        block.detailList.push_back(item.details);
    }

    FakeFileSystem& disk_;
    const ReadOptions options_;
    WaitCallback* wait_;
    std::vector<Open> open_;
    bool first_ = false;
};

inline std::unique_ptr<FolderReader> FakeFileSystem::read(std::string_view source, const ReadOptions& options,
                                                          WaitCallback* wait) {
    static const Item kGone = {.name = "gone", .error = 2};
    reads.emplace_back(source);
    lastOptions = options;
    const Item* item = find(source);
    return std::make_unique<FakeReader>(*this, item == nullptr ? kGone : *item, options, wait);
}

}  // namespace hl::test
