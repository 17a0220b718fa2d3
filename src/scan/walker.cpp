// The walk: its levels, a folder entry, a file entry, and the end of a level.
//
// The reader must be asked for the next block exactly when the walk enters a folder, or has used up a block
// that announces another one. A level that a fault has ended is therefore still read to its end, without
// making rows.
#include "scan/walker.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "base/size_text.h"
#include "base/text.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
#include "scan/left_out.h"
#include "scan/list_handover.h"
#include "scan/records.h"
#include "scan/rollup.h"
#include "scan/snapshots.h"
#include "scan/walk_facts.h"
#include "scan/walk_options.h"
#include "scan/walk_statistics.h"
#include "scan/yield.h"

namespace hl {

namespace {

class FolderWalk final : public ScanProgress {
  public:
    /// The folder is read into `row`; `rules`, which may be null, say what is left out below it. `before` was
    /// found in the source already.
    FolderWalk(ScanContext& scan, const std::string& path, Row row, std::shared_ptr<const Rules> rules,
               SnapshotReading& snapshots, const ScanTotals& before = {})
        : scan_(scan),
          rules_(std::move(rules)),
          snapshots_(snapshots),
          before_{before.files, before.folders, before.size.asDouble()},
          yield_(scan.state, scan.pump),
          wait_(yield_, scan.pump, [this] { tellOfWait(scan_, path_); }),
          filesText_(scan.tvwPL.keepText(scan.texts.TL(3514, "Dateien"))),
          path_(path),
          level_(scan.tvwPL.level(row)),
          follow_(scan.options.ScanHardlinks == 1),
          listLinks_(scan.options.CreateListJunction == 1 && !scan.state.SilentRun),
          skipLinks_(scan.options.NoHardlinks != 0),
          statistics_(scan, row),
          facts_(scan) {
        ReadOptions options = optionsOfWalk(scan, level_);
        options.leaveOut = rules_;
        snapshots.choose(options);
        statistics_.choose(options);
        facts_.choose(options);
        reader_ = scan.fileSystem.read(ToLongPath(path, scan.paths), options, &wait_);
    }

    ScanTotals run(Row row);
    ScanCounts soFar() const override;
    std::size_t showSoFar(bool sort) const override;

  private:
    struct Level {
        Row row = kNoRow;      ///< kNoRow if the folder's row is folded, and for one that is drained.
        bool ended = false;    ///< True if a fault ended the level, or one above it.
        bool drained = false;  ///< True if it was one above: then its blocks are only taken.
        bool isReparse = false;
        std::string target = {};  ///< The target of a link that was followed.
        std::unique_ptr<Listing> block = {};
        std::size_t next = 0;  ///< The index of the next entry.
        std::size_t pathLength = 0;
        std::optional<Error> error = {};
        ScanTotals files = {};   ///< Of the files directly in the folder.
        ScanTotals totals = {};  ///< Of what lies below it; when the level ends, of its files too.
        std::uint64_t disk = 0;
        /// Counts for the balance. Null if nobody does, and behind a link or mount that was followed, since
        /// what lies there is found elsewhere or is on another disk.
        SpaceCount* space = nullptr;
        WalkStatistics::Folder statistics = {};
    };

    std::unique_ptr<Listing> nextListing();
    void enterSource(Row row);
    void step();
    bool nextBlock(Level& level);
    void enter(Level entered, std::unique_ptr<Listing> block);
    void folderEntry(const Entry& entry);
    void drainFolder(const Entry& entry);
    void leaveOut(Row row, std::int32_t rule);
    bool isFolded(std::size_t depth) const { return level_ + depth > scan_.state.deepestRows; }
    Row unfoldedRow();
    Row rowToTell() { return scan_.facts != nullptr ? unfoldedRow() : levels_.back().row; }
    Row addFolderRow(Row parent, std::string_view name, std::uint32_t tag, std::string_view target);
    void fileEntry(Level& level, const Entry& entry);
    bool sizeCounts(const Entry& entry, std::int32_t links);
    void takeBlock(Level& level, std::unique_ptr<Listing> block);
    void leave(bool cutShort);
    void showSource();
    void accessError(Level& level);
    void folderDone(Row row, bool isReparse, std::string_view target);
    void endByFault();

    ScanContext& scan_;
    const std::shared_ptr<const Rules> rules_;
    SnapshotReading& snapshots_;
    const ScanCounts before_;
    Yield yield_;
    ReaderWait wait_;
    std::unique_ptr<FolderReader> reader_;
    const TextRef filesText_;
    std::string path_;  ///< The path of the current level, with a trailing separator; an entry's name may
                        ///< follow it.
    const std::uint32_t level_;  ///< That of the row which is read into.
    const bool follow_;
    const bool listLinks_;
    const bool skipLinks_;
    WalkStatistics statistics_;
    WalkFacts facts_;
    // The tag of the entry read last, on any level. A followed folder is added to the junctions only after
    // its walk, and so gets the tag of the last entry below it.
    std::uint32_t lastTag_ = kTagNone;
    std::unique_ptr<Listing> pending_;  ///< The first block of the folder about to be entered.
    std::vector<Level> levels_;
    ScanTotals result_;
    bool cut_ = false;      ///< Stop ended the walk.
    bool faulted_ = false;  ///< A fault ended some level.
};

// --- the walk's levels

ScanTotals FolderWalk::run(Row row) {
    bool entered = false;
    bool done = false;
    while (!done) {
        done = guarded(scan_.diagnostics, {.routine = "Report_ScanFolders"}, [&] {
            if (!std::exchange(entered, true)) enterSource(row);
            while (!levels_.empty()) step();
            return true;
        });
        if (!done) endByFault();
    }
    if (cut_) Report_MarkIncomplete(scan_, row);
    if (SourceSpace* counting = scan_.state.balance.current; counting != nullptr && (cut_ || faulted_))
        counting->complete = false;
    return result_;
}

std::unique_ptr<Listing> FolderWalk::nextListing() {
    wait_.begins();
    std::unique_ptr<Listing> block = reader_->next();
    if (block == nullptr) return block;
    for (const Error& disk : block->silentMounts) tellOfSilence(scan_, disk, follow_);
    // If what is shown fails, the walk must not lose this block, which the reader has handed out.
    guarded(scan_.diagnostics, {.routine = "entriesCame"}, [&] { scan_.host.entriesCame(*this); });
    return block;
}

ScanCounts FolderWalk::soFar() const {
    ScanCounts sum = before_;
    for (const Level& level : levels_)
        for (const ScanTotals* part : {&level.files, &level.totals}) {
            sum.files += part->files;
            sum.folders += part->folders;
            sum.bytes += static_cast<double>(part->size.bytes());
        }
    return sum;
}

// What lies below the folder of the first level that is being walked is in the sums of the deeper levels.
std::size_t FolderWalk::showSoFar(bool sort) const {
    if (levels_.empty() || levels_.front().row == kNoRow) return 0;
    Grid& report = scan_.tvwPL;
    ScanTotals sum;
    for (std::size_t i = levels_.size(); i-- > 0;) {
        const Row row = levels_[i].row;
        addTotals(sum, levels_[i].files);
        addTotals(sum, levels_[i].totals);
        if (i <= 1 && row != kNoRow) Report_SetTotals(report, row, sum);
    }
    const Row top = levels_.front().row;
    Report_ChangePercentValue(scan_, top);
    if (sort) report.sortChildren(top);
    std::size_t children = 0;
    for (Row row = report.firstChild(top); row != kNoRow; row = report.nextSibling(row)) ++children;
    return children;
}

void FolderWalk::enterSource(Row row) {
    scan_.tvwPL.setMark(row, 0);
    scan_.host.folderEntered(path_);
    std::unique_ptr<Listing> first = nextListing();
    const Grid& report = scan_.tvwPL;
    if (first != nullptr && report.parent(row) == kNoRow) {
        scan_.state.sourceIds.insert_or_assign(std::string(report.text(row)), first->source);
        if (scan_.state.balance.current != nullptr)
            scan_.state.balance.current->isWholeDisk = first->ownBlocks.has_value();
    }
    if (first != nullptr) snapshots_.entered(*first, path_, row);
    const std::uint64_t disk = first != nullptr ? facts_.begin(report, row, *first) : 0;
    enter({.row = row}, std::move(first));
    if (!levels_.empty()) levels_.back().disk = disk;
}

void FolderWalk::enter(Level entered, std::unique_ptr<Listing> block) {
    if (block == nullptr) {  // Stopped while the source itself was waited for.
        cut_ = true;
        return;
    }
    SpaceCount* space = levels_.empty() ? countOf(scan_.state.balance.current) : levels_.back().space;
    if (entered.isReparse) space = nullptr;
    Level& level = levels_.emplace_back(std::move(entered));
    level.space = space;
    level.statistics = statistics_.enter();
    if (space != nullptr && block->ownBlocks) space->addFolder(*block->ownBlocks);
    level.pathLength = path_.size();
    level.error = block->error;
    if (!block->error) lastTag_ = kTagNone;  // The folder's "." and ".." count as read.
    takeBlock(level, std::move(block));
}

void FolderWalk::takeBlock(Level& level, std::unique_ptr<Listing> block) {
    level.block = std::move(block);
    level.next = 0;
    level.files.leftOut.files += level.block->filesLeftOut;
    if (!level.error) level.error = level.block->entryError;
    if (level.block->endError) {
        facts_.notRead(rowToTell(), *level.block->endError);
        const std::string reason = ApiErrorText(true, *level.block->endError);
        scan_.log.LogDebug("Report_ScanFolders\\next", {reason, visible(path_)});
        scan_.host.notRead(path_, reason);
    }
    if (level.block->failure != nullptr) std::rethrow_exception(level.block->failure);
}

// Reads files until a folder is entered, the level ends, or Stop is pressed. Each file costs one addition to
// a sum and to a count, and where space is wanted another sum and a comparison; all else is decided outside
// of the loop or by options that do not change.
void FolderWalk::step() {
    Level& level = levels_.back();
    if (level.next == level.block->count) {
        if (!level.block->more) return leave(false);
        if (!nextBlock(level)) return leave(true);
        return;
    }
    while (level.next < level.block->count) {
        yield_.perEntry();
        if (scan_.state.CancelState == kCancelStop) return leave(true);
        const Entry& entry = level.block->entries[level.next++];
        if ((entry.attributes & kAttributeDirectory) != 0)
            return level.ended ? drainFolder(entry) : folderEntry(entry);
        if (!level.ended) fileEntry(level, entry);
    }
}

bool FolderWalk::nextBlock(Level& level) {
    if (scan_.state.CancelState == kCancelStop) return false;
    std::unique_ptr<Listing> block = nextListing();
    if (block == nullptr) return false;
    takeBlock(level, std::move(block));
    return true;
}

// The current level stays in the list until its blocks are used up, but makes no more rows.
void FolderWalk::endByFault() {
    if (levels_.empty()) return;
    levels_.back().ended = true;
    faulted_ = true;
    path_.resize(levels_.back().pathLength);
    if (pending_ == nullptr) return;
    pending_->failure = nullptr;
    enter({.ended = true, .drained = true}, std::move(pending_));
}

// --- a folder entry

void FolderWalk::folderEntry(const Entry& entry) {
    Level& level = levels_.back();
    const std::string_view name = level.block->name(entry);
    const std::string_view target = level.block->target(entry);
    const bool isLink = (entry.attributes & kAttributeReparse) != 0;
    path_.append(name).push_back(scan_.paths.separator);
    if (isLink && level.space != nullptr)
        level.space->addFolder(level.block->detailsOf(level.next - 1).blocks);

    // Only its first block tells whether a folder is the root of another mount.
    if (entry.isEntered()) {
        scan_.host.folderEntered(path_);
        pending_ = nextListing();
        if (pending_ == nullptr) {
            path_.resize(level.pathLength);
            return leave(true);
        }
    }
    const bool isCache = pending_ != nullptr && pending_->isCache;
    const bool isRead = pending_ != nullptr && !pending_->leftOut && !isCache;
    const bool isMount = !isLink && pending_ != nullptr && pending_->kind == FolderKind::kMountRoot;
    const bool isReparse = isLink || isMount;
    const std::string leadsTo(isMount ? std::string_view(pending_->mountSource) : target);
    lastTag_ = isMount ? kTagMountPoint : entry.tag;
    if (isReparse && !isRead && skipLinks_) return folderDone(kNoRow, true, leadsTo);

    level.totals.folders = addCount(level.totals.folders, 1);
    // A snapshot that is put off is read into its row later.
    const bool needsRow = !isFolded(levels_.size()) || (pending_ != nullptr && pending_->putOff);
    const Row row =
        needsRow ? addFolderRow(unfoldedRow(), name, isReparse ? lastTag_ : kTagNone, leadsTo) : kNoRow;
    const std::uint64_t disk = facts_.rowAdded(row, entry, pending_.get(), level.disk);
    if (isCache) leaveOut(row, LeaveOut::kCacheTag);
    if (entry.isLeftOutByRule()) leaveOut(row, static_cast<std::int32_t>(entry.links));
    if (!isRead) return folderDone(row, isReparse, leadsTo);
    snapshots_.entered(*pending_, path_, row);
    enter({.row = row, .isReparse = isReparse, .target = leadsTo}, std::move(pending_));
    levels_.back().disk = disk;
}

void FolderWalk::leaveOut(Row row, std::int32_t rule) {
    ++levels_.back().totals.leftOut.folders;
    if (row == kNoRow) return;
    facts_.leftOut(row, rule);
    Report_MarkLeftOut(scan_, row, *rules_, rule);
}

// Takes and drops the blocks below a level that has ended, because the reader returns them in its order.
void FolderWalk::drainFolder(const Entry& entry) {
    if (!entry.isEntered()) return;
    std::unique_ptr<Listing> block = nextListing();
    if (block == nullptr) return leave(true);
    enter({.ended = true, .drained = true}, std::move(block));
}

// Returns the row of the current folder. If it is folded, it is made with those above it, whose names stand
// in the path. Nobody looks at such rows, so they say nothing of links.
Row FolderWalk::unfoldedRow() {
    if (levels_.back().ended || levels_.back().row != kNoRow) return levels_.back().row;
    std::size_t depth = levels_.size() - 1;
    while (levels_[depth].row == kNoRow) --depth;
    for (; depth + 1 < levels_.size(); ++depth) {
        const std::size_t from = levels_[depth].pathLength;
        const std::size_t length = levels_[depth + 1].pathLength - from - 1;
        levels_[depth + 1].row =
            addFolderRow(levels_[depth].row, std::string_view(path_).substr(from, length), kTagNone, {});
    }
    return levels_.back().row;
}

Row FolderWalk::addFolderRow(Row parent, std::string_view name, std::uint32_t tag, std::string_view target) {
    Grid& report = scan_.tvwPL;
    const Row row = report.addRow(parent, name);
    statistics_.rowAdded(row);
    Report_Shade(scan_, row);
    scan_.state.DeepestLevel = std::max(scan_.state.DeepestLevel, report.level(row));
    report.setNumber(row, kIsFolder, 1);
    Report_ShowFolderKind(report, row, tag, target);
    return row;
}

// Ends the work on a folder's entry, whether the folder was walked or not.
void FolderWalk::folderDone(Row row, bool isReparse, std::string_view target) {
    if (row != kNoRow && scan_.tvwPL.level(row) == 1) scan_.host.firstLevelFolderDone();
    if (isReparse && listLinks_)
        handOverJunction(scan_, std::string_view(path_).substr(0, path_.size() - 1), target, lastTag_);
    path_.resize(levels_.back().pathLength);
    pending_.reset();
}

// --- a file entry

void FolderWalk::fileEntry(Level& level, const Entry& entry) {
    const SizeValue size = SizeValue::fromBytes(entry.size);
    lastTag_ = entry.tag;
    level.files.files = addCount(level.files.files, 1);
    const std::int32_t links =
        scan_.state.links.needCount && entry.links != 1 ? static_cast<std::int32_t>(entry.links) : 0;
    const bool counts = sizeCounts(entry, links);
    if (counts) level.files.size += size;
    const EntryDetails& known = level.block->detailsOf(level.next - 1);
    if (scan_.state.NeedSpace) addSpace(level.files, known, scan_.state.Started, counts);
    if (level.space != nullptr) level.space->addFile(entry, known.blocks);
    const std::string_view name = level.block->name(entry);
    statistics_.addFile(level.statistics, level.row, name, entry.size, known, counts);
    if (!scan_.state.SilentRun) handOverFile(scan_, {entry, known, name, path_, links});
}

// The name of a file that is met first counts; further names within the same source do not.
bool FolderWalk::sizeCounts(const Entry& entry, std::int32_t links) {
    if (scan_.options.AddHardlinksOnlyOnce == 0 || links < 1) return true;
    return scan_.state.links.seen.Add("", linkKey(entry)) != 0;
}

// --- the end of a level

// `cutShort` means that Stop ended it; the parts of the folder then do not add up to its size.
void FolderWalk::leave(bool cutShort) {
    {
        Level& level = levels_.back();
        cut_ |= cutShort;
        if (cutShort) facts_.stopped(level.row);
        if (level.row != kNoRow)
            scan_.tvwPL.setMark(level.row, static_cast<std::uint32_t>(level.totals.errors));
        if (!level.ended && !cutShort) {
            if (level.error) accessError(level);
            if (level.row != kNoRow && level.totals.folders > 0)
                Report_AddFilesRow(scan_, level.row, level.files, filesText_);
        }
    }
    Level level = std::move(levels_.back());
    levels_.pop_back();
    addTotals(level.totals, level.files);
    statistics_.leave(level.row, level.statistics);
    if (levels_.empty()) {
        statistics_.finish();
        result_ = level.totals;
        return;
    }
    if (level.drained) return;
    if (level.row != kNoRow) {
        Report_SetTotals(scan_.tvwPL, level.row, level.totals);
        Report_ChangePercentValue(scan_, level.row);
    }
    addTotals(levels_.back().totals, level.totals);
    if (levels_.size() == 1 && !scan_.state.SilentRun) showSource();
    folderDone(level.row, level.isReparse, level.target);
}

// A source must not look smaller than a folder in it that is done.
void FolderWalk::showSource() {
    const Level& source = levels_.front();
    if (source.row == kNoRow) return;
    ScanTotals sum = source.totals;
    addTotals(sum, source.files);
    Report_SetTotals(scan_.tvwPL, source.row, sum);
}

void FolderWalk::accessError(Level& level) {
    const std::string text = ApiErrorText(true, *level.error);
    if (const Row row = rowToTell(); row != kNoRow) {
        facts_.notRead(row, *level.error);
        scan_.tvwPL.setPicture(row, kPictureAccessError);
        scan_.tvwPL.setRowNote(row, text);
    }
    scan_.log.LogProtokoll("ERROR: " + text + " (" + visible(path_) + ")");
    level.totals.errors = addCount(level.totals.errors, 1);
    scan_.host.notRead(path_, text);
}

}  // namespace

void Report_ScanFolders(ScanContext& scan, const std::string& path, Row row, ScanTotals& totals) {
    SnapshotReading snapshots(scan, row, path);
    const RowRules rules = rulesOfRow(scan, row);
    if (Report_LeaveOut(scan, row, rules)) {
        totals = {};
        return snapshots.finish();
    }
    totals = FolderWalk(scan, path, row, rules.rules, snapshots).run(row);
    while (const auto putOff = snapshots.next()) {
        FolderWalk walk(scan, putOff->path, putOff->row, rulesOfRow(scan, putOff->row).rules, snapshots,
                        totals);
        snapshots.wasRead(*putOff, walk.run(putOff->row), totals);
    }
    snapshots.finish();
}

}  // namespace hl
