#include "platform/linux/scan/block_reader.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <climits>
#include <cstddef>
#include <cstring>

#include "base/size_text.h"

namespace hl {

namespace {

constexpr std::size_t kRecordBytes = std::size_t{64} << 10;
// With less room than this a further call would bring too little.
constexpr std::size_t kLeastRoom = std::size_t{16} << 10;

std::uint32_t hiddenBit(std::string_view name) {
    return name.starts_with('.') ? kAttributeHidden : 0U;
}

std::uint32_t attributesOf(const struct statx& facts) {
    std::uint32_t bits = 0;
    if ((facts.stx_mode & S_IWUSR) == 0) bits |= kAttributeReadOnly;
    if ((facts.stx_attributes & STATX_ATTR_COMPRESSED) != 0) bits |= kAttributeCompressed;
    if ((facts.stx_attributes & STATX_ATTR_ENCRYPTED) != 0) bits |= kAttributeEncrypted;
    if (S_ISREG(facts.stx_mode) && facts.stx_blocks * kBlockBytes < facts.stx_size) bits |= kAttributeSparse;
    if (S_ISLNK(facts.stx_mode)) bits |= kAttributeReparse;
    return bits;
}

FileType typeOf(std::uint8_t record) {
    if (record == DT_REG) return FileType::kFile;
    return record == DT_LNK ? FileType::kLink : FileType::kOther;
}

FileType typeOf(const struct statx& facts) {
    if (S_ISREG(facts.stx_mode)) return FileType::kFile;
    return S_ISLNK(facts.stx_mode) ? FileType::kLink : FileType::kOther;
}

// The kernel's own device numbers have 12 and 20 bits.
std::uint32_t deviceNumber(const struct statx& facts) {
    return facts.stx_dev_major << 20 | facts.stx_dev_minor;
}

template <class T>
std::span<const T> copyTo(char*& place, const std::vector<T>& from) {
    auto* start = reinterpret_cast<T*>(place);
    if (!from.empty()) std::memcpy(start, from.data(), from.size() * sizeof(T));
    place += from.size() * sizeof(T);
    return {start, from.size()};
}

}  // namespace

BlockReader::BlockReader(DirectoryCalls& calls, LinkLook& links, const ReadOptions& options)
    : calls_(calls),
      links_(links),
      options_(options),
      mask_(STATX_TYPE | STATX_SIZE),
      records_(std::make_unique_for_overwrite<char[]>(kRecordBytes)) {
    if (options.wantLinks) mask_ |= STATX_NLINK | STATX_INO;
    if (options.wantSpace) mask_ |= STATX_BLOCKS | STATX_MTIME;
    if (options.wantTimes) mask_ |= STATX_MODE | STATX_BLOCKS | STATX_ATIME | STATX_MTIME | STATX_BTIME;
    if (options.wantOwners) mask_ |= STATX_UID;
}

BlockReader::Fill BlockReader::fill(int folder) {
    Fill result;
    length_ = 0;
    while (kRecordBytes - length_ >= kLeastRoom) {
        const long got = calls_.readEntries(folder, records_.get() + length_, kRecordBytes - length_);
        countAnswer();
        if (got < 0) result.error = static_cast<int>(-got);
        if (got <= 0) return result;
        length_ += static_cast<std::size_t>(got);
        result.nothing = false;
    }
    result.more = true;
    for (std::size_t at = 0; at < length_;) {
        const auto* record = folderRecord(records_.get(), at);
        result.cookie = record->cookie;
        at += record->length;
    }
    return result;
}

std::optional<std::uint64_t> BlockReader::ownBlocks(int folder) {
    struct statx facts;
    const bool known = calls_.look(folder, "", false, STATX_BLOCKS, facts) == 0;
    countAnswer();
    return known ? std::optional(facts.stx_blocks) : std::nullopt;
}

std::uint64_t BlockReader::folderInode() const {
    const auto* record = folderRecord(records_.get(), 0);
    return length_ > 0 && std::strcmp(record->name, ".") == 0 ? record->inode : 0;
}

// The tag may stand behind the records that were read; then the folder is asked for it by name.
bool BlockReader::isMarkedAsCache(int folder, bool more) {
    constexpr const char* kTag = "CACHEDIR.TAG";
    constexpr std::string_view kSignature = "Signature: 8a477f597d28d172789f06886806bc55";
    bool maybe = more;
    for (std::size_t at = 0; at < length_ && !maybe;) {
        const auto* record = folderRecord(records_.get(), at);
        at += record->length;
        maybe = std::strcmp(record->name, kTag) == 0;
    }
    if (!maybe) return false;
    std::array<char, kSignature.size()> begins = {};
    const long got = calls_.beginning(folder, kTag, begins.data(), begins.size());
    countAnswer();
    return got == static_cast<long>(begins.size()) &&
           std::string_view(begins.data(), begins.size()) == kSignature;
}

// The hot loop of a scan: for each entry that is no folder one statx relative to the open folder, and nothing
// else that enters the kernel. The type in the record saves the statx for folders. Where there are rules,
// they are asked before a file is looked at; without any, nothing here knows of them.
template <bool kRuled>
void BlockReader::takeRecords(int folder, const LinkLook::GoOn& goOn, const LeaveOut::Place* rulesPlace) {
    LinkLook::Place place{folder};
    const bool asksLinks = options_.choice == nullptr || options_.followLinks;
    for (std::size_t at = 0; at < length_;) {
        const auto* record = folderRecord(records_.get(), at);
        at += record->length;
        if (isDots(record->name)) continue;
        const std::size_t length = std::strlen(record->name);
        if constexpr (kRuled)
            if (isLeftOut(folder, *record, {record->name, length}, rulesPlace)) continue;
        if (record->type == DT_DIR) {
            addFolder({record->name, length}, record->inode, 0, kTagNone);
        } else if (record->type == DT_LNK && asksLinks) {
            addLink(place, *record, length, goOn);
        } else if (options_.choice != nullptr) {
            addChosen(folder, record->name, length, record->type);
        } else {
            addOther(folder, record->name, length);
        }
    }
}

// A folder that is left out becomes an entry here; a file or link is counted.
bool BlockReader::isLeftOut(int folder, const FolderRecord& record, std::string_view name,
                            const LeaveOut::Place* place) {
    bool isFolder = record.type == DT_DIR;
    if (record.type == DT_UNKNOWN) {  // The file system gives no types with names.
        struct statx facts;
        isFolder = calls_.look(folder, name.data(), false, STATX_TYPE, facts) == 0 && S_ISDIR(facts.stx_mode);
        countAnswer();
    }
    const std::int32_t rule = options_.leaveOut->ruleFor(place, name, isFolder);
    if (rule == LeaveOut::kNone) return false;
    if (!isFolder) return ++filesLeftOut_, true;
    Entry entry;
    entry.attributes = kAttributeDirectory | hiddenBit(name) | kLeftOutByRule;
    entry.links = static_cast<std::uint32_t>(rule);
    if (options_.folderFacts) entry.inode = record.inode;
    entry.nameLength = static_cast<std::uint16_t>(name.size());
    entry.nameOffset = keepName(name);
    entries_.push_back(entry);
    if (wantsDetails()) details_.emplace_back();
    return true;
}

std::shared_ptr<const Block> BlockReader::build(int folder, const LinkLook::GoOn& goOn, bool linkSpace,
                                                const LeaveOut::Place* place) {
    linkSpace_ = linkSpace && wantsDetails();
    entries_.clear();
    details_.clear();
    entered_.clear();
    names_.clear();
    entryError_ = 0;
    filesLeftOut_ = 0;
    if (options_.leaveOut == nullptr) {
        takeRecords<false>(folder, goOn, nullptr);
    } else {
        takeRecords<true>(folder, goOn, place);
    }
    return pack();
}

std::uint32_t BlockReader::keepName(std::string_view name) {
    const auto offset = static_cast<std::uint32_t>(names_.size());
    names_.append(name).push_back('\0');
    return offset;
}

void BlockReader::noteError(int error) {
    if (entryError_ == 0) entryError_ = error;
}

// Nothing else decides which entries are entered. What is another mount is known only when it is opened.
bool BlockReader::enters(std::uint32_t tag) const {
    return options_.recursive && (tag == kTagNone || options_.followLinks);
}

void BlockReader::addFolder(std::string_view name, std::uint64_t inode, std::uint32_t attributes,
                            std::uint32_t tag) {
    Entry entry;
    if (options_.folderFacts) entry.inode = inode;
    entry.attributes = kAttributeDirectory | attributes | hiddenBit(name);
    entry.tag = tag;
    entry.nameLength = static_cast<std::uint16_t>(name.size());
    entry.nameOffset = keepName(name);
    if (enters(tag)) {
        entry.attributes |= kEntered;
        entered_.push_back(static_cast<std::uint32_t>(entries_.size()));
    }
    entries_.push_back(entry);
    if (wantsDetails()) details_.emplace_back();
}

// A link is first asked where it leads; only one that leads to no folder needs a statx of its own. A long
// link takes a block.
void BlockReader::addLink(LinkLook::Place& place, const FolderRecord& record, std::size_t length,
                          const LinkLook::GoOn& goOn) {
    const char* name = record.name;
    const bool leadsToFolder = links_.leadsToFolder(place, name, goOn);
    countAnswer();
    if (!leadsToFolder) return addOther(place.folder, name, length);
    addFolder({name, length}, record.inode, kAttributeReparse, kTagSymbolicLink);
    if (linkSpace_ || options_.folderFacts) lookAtLink(place.folder, name);
    std::array<char, PATH_MAX> target;
    const long got = calls_.readLink(place.folder, name, target.data(), target.size());
    if (got <= 0) return;
    // The target is behind the name and its NUL; the length tells where it ends.
    entries_.back().targetLength = static_cast<std::uint16_t>(got);
    keepName({target.data(), static_cast<std::size_t>(got)});
}

// A link to a folder has details only if somebody wants what the link itself is.
void BlockReader::lookAtLink(int folder, const char* name) {
    const auto facts = factsOfFolder(calls_, folder, name);
    if (!facts) return;
    if (wantsDetails()) details_.back().blocks = facts->blocks;
    if (!options_.folderFacts) return;
    entries_.back().size = facts->size;
    if (!wantsDetails()) return;
    details_.back().written = facts->written;
    details_.back().owner = facts->owner;
}

// What the folder tells may be enough to know that nobody wants the file, or all that is wanted of it.
void BlockReader::addChosen(int folder, const char* name, std::size_t length, std::uint8_t type) {
    const std::string_view text(name, length);
    if (type != DT_UNKNOWN) {
        if (!options_.choice->mayTake(text, typeOf(type))) return;
        if (!options_.wantFacts) return addUnlooked(text);
    }
    addOther(folder, name, length);
}

void BlockReader::addUnlooked(std::string_view name) {
    Entry entry;
    entry.nameLength = static_cast<std::uint16_t>(name.size());
    entry.nameOffset = keepName(name);
    entries_.push_back(entry);
    if (wantsDetails()) details_.emplace_back();
}

void BlockReader::addOther(int folder, const char* name, std::size_t length) {
    struct statx facts;
    const int result = calls_.look(folder, name, false, mask_, facts);
    countAnswer();
    if (result == -ENOENT) return;  // It was removed since its name was read.
    const std::string_view text(name, length);
    if (result < 0) {
        noteError(-result);
        if (options_.choice != nullptr) return;
        facts = {};
        facts.stx_nlink = 1;
    } else if (S_ISDIR(facts.stx_mode)) {
        return addFolder(text, facts.stx_ino, 0, kTagNone);  // The file system gives no types with names.
    }
    addFile(facts, text);
}

void BlockReader::addFile(const struct statx& facts, std::string_view name) {
    Entry entry;
    entry.size = facts.stx_size;
    if (options_.wantLinks) {
        entry.inode = facts.stx_ino;
        entry.device = deviceNumber(facts);
        entry.links = facts.stx_nlink;
    }
    if (S_ISLNK(facts.stx_mode)) entry.tag = kTagSymbolicLink;
    if (options_.wantTimes) entry.attributes = attributesOf(facts) | hiddenBit(name);
    if (options_.wantSpace && (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0)
        entry.attributes |= kMountedFile;
    if (options_.wantTypes && !S_ISREG(facts.stx_mode) && !S_ISLNK(facts.stx_mode))
        entry.attributes |= kSpecialFile;
    const EntryDetails details = {facts.stx_mtime.tv_sec, facts.stx_btime.tv_sec, facts.stx_atime.tv_sec,
                                  facts.stx_blocks, facts.stx_uid};
    if (options_.choice != nullptr && !options_.choice->takes(name, typeOf(facts), entry, details)) return;
    if (wantsDetails()) details_.push_back(details);
    if (options_.wantFileNames) {
        entry.nameLength = static_cast<std::uint16_t>(name.size());
        entry.nameOffset = keepName(name);
    }
    entries_.push_back(entry);
}

std::shared_ptr<const Block> BlockReader::pack() {
    auto block = std::make_shared<Block>();
    const std::size_t bytes = entries_.size() * sizeof(Entry) + details_.size() * sizeof(EntryDetails) +
                              entered_.size() * sizeof(std::uint32_t) + names_.size();
    block->memory = std::make_unique_for_overwrite<char[]>(bytes);
    block->bytes = bytes + sizeof(Block);
    block->entryError = entryError_;
    block->filesLeftOut = filesLeftOut_;
    char* place = block->memory.get();
    block->entries = copyTo(place, entries_);
    block->details = copyTo(place, details_);
    block->entered = copyTo(place, entered_);
    std::memcpy(place, names_.data(), names_.size());
    block->names = place;
    return block;
}

}  // namespace hl
