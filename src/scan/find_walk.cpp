// The choice that the reader asks; the walk; what it meets.
#include "scan/find_walk.h"

#include <algorithm>
#include <deque>
#include <exception>
#include <utility>
#include <vector>

#include "base/size_text.h"
#include "robustness/api_error_text.h"
#include "scan/file_system_calls.h"
#include "scan/left_out.h"
#include "scan/yield.h"

namespace hl {

namespace {

class FilterChoice final : public FileChoice {
  public:
    explicit FilterChoice(const FindOrder& order) : filter_(order.filter), started_(order.started) {}

    bool mayTake(std::string_view name, FileType type) const override {
        return filter_.mayTake({.name = name, .type = static_cast<char>(type)});
    }
    bool takes(std::string_view name, FileType type, const Entry& file,
               const EntryDetails& details) const override {
        return filter_.takes({.name = name,
                              .size = file.size,
                              .disk = details.blocks * kBlockBytes,
                              .age = started_ - details.written,
                              .owner = details.owner,
                              .type = static_cast<char>(type)});
    }

  private:
    const FindFilter filter_;
    const std::int64_t started_;
};

/// Esc ends a search, too, which does not end the reading of a report.
class FindWait final : public WaitCallback {
  public:
    FindWait(const ScanState& state, ReaderWait inner) : state_(state), inner_(std::move(inner)) {}
    void begins() { inner_.begins(); }
    bool goOnWaiting() override { return inner_.goOnWaiting() && state_.CancelState == kCancelNone; }

  private:
    const ScanState& state_;
    ReaderWait inner_;
};

class FindWalk {
  public:
    FindWalk(ScanContext& scan, const FindOrder& order, FindHost& host)
        : scan_(scan),
          order_(order),
          host_(host),
          met_(order.elsewhere),
          yield_(scan.state, scan.pump),
          wait_(scan.state, {yield_, scan.pump, [this] { tellOfWait(scan_, path_); }}) {}

    FindEnd run(const std::string& folder);

  private:
    struct Level {
        std::unique_ptr<Listing> block;
        std::size_t next = 0;  ///< The index of the next entry.
        std::size_t pathLength = 0;
        bool told = false;  ///< The user knows that something of the folder could not be read.
    };
    struct PutOff {
        std::string path;
        Subvolume is;
    };

    std::string sourceOf(std::string_view folder) const;
    ReadOptions optionsFor(const SubvolumeId& only) const;
    void read(const std::string& folder, const SubvolumeId& only);
    bool isStopped() const { return scan_.state.CancelState != kCancelNone; }
    std::unique_ptr<Listing> nextBlock();
    void enter();
    void take(Level& level, std::unique_ptr<Listing> block);
    void notRead(Level& level, const std::optional<Error>& error);
    void noteSubvolume(const Listing& block);
    void step();

    ScanContext& scan_;
    const FindOrder& order_;
    FindHost& host_;
    std::string source_;  ///< Rules count from here. With a separator at the end.
    SubvolumesMet met_;
    std::deque<PutOff> putOff_;
    Yield yield_;
    FindWait wait_;
    std::unique_ptr<FolderReader> reader_;
    std::string path_;  ///< Of the current level, with a separator at the end.
    std::vector<Level> levels_;
    FindEnd end_ = FindEnd::kDone;
};

// --- the walk

// An origin may be met after its snapshot, so snapshots come last.
FindEnd FindWalk::run(const std::string& folder) {
    source_ = sourceOf(folder);
    read(folder, {});
    while (end_ == FindEnd::kDone && !putOff_.empty()) {
        const PutOff snapshot = std::move(putOff_.front());
        putOff_.pop_front();
        if (met_.placeOf(snapshot.is.origin) == nullptr) read(snapshot.path, snapshot.is.id);
    }
    return end_;
}

std::string FindWalk::sourceOf(std::string_view folder) const {
    for (std::uint32_t level = 0; level < order_.level; ++level)
        folder = folder.substr(0, folder.substr(0, folder.size() - 1).rfind(scan_.paths.separator) + 1);
    return std::string(folder);
}

ReadOptions FindWalk::optionsFor(const SubvolumeId& only) const {
    const FindFilter& filter = order_.filter;
    const bool facts = order_.detail != FindDetail::kPath;
    ReadOptions options;
    options.followLinks = scan_.options.ScanHardlinks == 1;
    options.levelsAbove = order_.level;
    options.wantSpace = facts || filter.asksFor(FindField::kDisk) || filter.asksFor(FindField::kAge);
    options.wantOwners = facts || filter.asksFor(FindField::kOwner);
    options.wantTimes = order_.detail == FindDetail::kAll;
    options.wantFacts = options.wantSpace || options.wantOwners || filter.asksFor(FindField::kSize);
    options.wantSubvolumes = options.putOffSnapshots = scan_.options.CountSnapshots == 0;
    options.onlySubvolume = only;
    options.choice = std::make_shared<FilterChoice>(order_);
    return options;
}

void FindWalk::read(const std::string& folder, const SubvolumeId& only) {
    ReadOptions options = optionsFor(only);
    options.leaveOut = rulesOfFolder(scan_, source_, folder);
    reader_ = scan_.fileSystem.read(ToLongPath(folder, scan_.paths), options, &wait_);
    path_ = folder;
    enter();
    while (!levels_.empty() && end_ == FindEnd::kDone) step();
    levels_.clear();
    reader_.reset();
}

std::unique_ptr<Listing> FindWalk::nextBlock() {
    wait_.begins();
    std::unique_ptr<Listing> block = isStopped() ? nullptr : reader_->next();
    if (block == nullptr) end_ = FindEnd::kStopped;
    return block;
}

// Enters the folder of the path.
void FindWalk::enter() {
    host_.folderEntered(path_);
    std::unique_ptr<Listing> block = nextBlock();
    if (block == nullptr) return;
    noteSubvolume(*block);
    Level& level = levels_.emplace_back();
    level.pathLength = path_.size();
    take(level, std::move(block));
}

void FindWalk::take(Level& level, std::unique_ptr<Listing> block) {
    level.block = std::move(block);
    level.next = 0;
    yield_.perEntry();  // A block of files that nobody wants has no entries.
    Unshown& leftOut = scan_.state.leaving.ofSearch;
    leftOut.files += level.block->filesLeftOut;
    if (level.block->isCache) ++leftOut.folders;
    for (const Error& disk : level.block->silentMounts) host_.notRead(disk.name, ApiErrorText(true, disk));
    notRead(level, level.block->error);
    notRead(level, level.block->entryError);
    notRead(level, level.block->endError);
    if (level.block->failure != nullptr) std::rethrow_exception(level.block->failure);
}

// Until a folder is entered, or the level ends.
void FindWalk::step() {
    Level& level = levels_.back();
    while (level.next < level.block->count) {
        yield_.perEntry();
        if (isStopped()) {
            end_ = FindEnd::kStopped;
            return;
        }
        const std::size_t index = level.next++;
        const Entry& entry = level.block->entries[index];
        const std::string_view name = level.block->name(entry);
        if ((entry.attributes & kAttributeDirectory) != 0) {
            if (entry.isLeftOutByRule()) ++scan_.state.leaving.ofSearch.folders;
            if (!entry.isEntered()) continue;
            path_.append(name).push_back(scan_.paths.separator);
            return enter();
        }
        if (!host_.found({entry, level.block->detailsOf(index), name, path_})) {
            end_ = FindEnd::kEnough;
            return;
        }
    }
    if (level.block->more) {
        if (std::unique_ptr<Listing> block = nextBlock()) take(level, std::move(block));
        return;
    }
    levels_.pop_back();
    if (!levels_.empty()) path_.resize(levels_.back().pathLength);
}

// --- what it meets

// One line for a folder is enough, as for the report.
void FindWalk::notRead(Level& level, const std::optional<Error>& error) {
    if (!error || std::exchange(level.told, true)) return;
    host_.notRead(path_, ApiErrorText(true, *error));
}

void FindWalk::noteSubvolume(const Listing& block) {
    if (!block.subvolume) return;
    met_.add(*block.subvolume, path_.substr(0, std::max<std::size_t>(1, path_.size() - 1)));
    if (block.putOff) putOff_.push_back({path_, *block.subvolume});
}

}  // namespace

FindEnd findFiles(ScanContext& scan, const std::string& folder, const FindOrder& order, FindHost& host) {
    return FindWalk(scan, order, host).run(folder);
}

}  // namespace hl
