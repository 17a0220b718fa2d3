// What one file adds; ranges that several files use.
#include "platform/freed_sum.h"

#include <algorithm>
#include <functional>
#include <queue>
#include <utility>

namespace hl {

namespace {

constexpr std::uint64_t kSectorBytes = 512;
constexpr std::uint32_t kSharedBit = std::uint32_t{1} << 31U;
constexpr std::uint64_t kMostRangeSectors = std::uint64_t{1} << 31U;

}  // namespace

void FreedSum::takeOpenFiles(const std::optional<OpenFilesAnswer>& open) {
    sum_.openFiles = OpenFilesKnown::kNoAnswer;
    if (open) {
        sum_.openFiles = open->sawAll ? OpenFilesKnown::kAll : OpenFilesKnown::kOwn;
        for (const HeldFile& file : open->files) addHolder(file);
    }
    for (const Early& file : std::exchange(early_, {})) {
        const auto held = holders_.find({file.id.device, file.id.inode});
        if (held == holders_.end()) continue;
        FreedAmount& before = file.isInline ? inline_ : sum_.now;
        before.bytes -= file.bytes;
        --before.files;
        addHeld(held->second, file.bytes);
    }
}

// Ranges of memory and descriptors of one process stand beside each other.
void FreedSum::addHolder(const HeldFile& file) {
    auto& holders = holders_[{file.id.device, file.id.inode}];
    if (holders.empty() || holders.back().process != file.process)
        holders.push_back({file.process, file.program});
}

// --- what one file adds

bool FreedSum::addName(const FreedName& name) {
    if (name.links <= 1) {
        sum_.all.bytes += name.bytes;
        ++sum_.all.files;
        return true;
    }
    const SeveralNames::Met met = names_.meet(name.id, name.links, name.bytes / kSectorBytes);
    const std::uint64_t told = met.sectors * kSectorBytes;
    if (met.first) {
        sum_.all.bytes += told;
        ++sum_.all.files;
        sum_.otherNames.bytes += told;
        ++sum_.otherNames.files;
    }
    if (met.last) {
        sum_.otherNames.bytes -= told;
        --sum_.otherNames.files;
    }
    return met.last;
}

void FreedSum::addFile(const FreedName& name, std::span<const SpecialExtent> special) {
    std::uint64_t elsewhere = 0;
    for (const SpecialExtent& extent : special) {
        keep(extent, files_);
        elsewhere += extent.length;
    }
    if (!special.empty()) ++files_;
    // What lies in no such range is the file's own, however the file system describes it.
    const std::uint64_t own = name.bytes > elsewhere ? name.bytes - elsewhere : 0;
    if (own == 0 && !special.empty()) return;
    addOwn({name.id, own, false});
}

void FreedSum::addInlineFile(const FreedName& name) {
    addOwn({name.id, name.bytes, true});
}

void FreedSum::addOwn(const Early& file) {
    if (sum_.openFiles == OpenFilesKnown::kNotYet) early_.push_back(file);
    const auto held = holders_.find({file.id.device, file.id.inode});
    if (held != holders_.end()) return addHeld(held->second, file.bytes);
    FreedAmount& amount = file.isInline ? inline_ : sum_.now;
    amount.bytes += file.bytes;
    ++amount.files;
}

void FreedSum::addUntoldFile(const FreedName& name) {
    sum_.unknown.bytes += name.bytes;
    ++sum_.unknown.files;
}

void FreedSum::addFolder(std::uint64_t bytes, bool told) {
    sum_.all.bytes += bytes;
    (told ? sum_.now : sum_.unknown).bytes += bytes;
}

void FreedSum::addHeld(const std::vector<FileHolder>& holders, std::uint64_t bytes) {
    auto& lines = sum_.whenClosed;
    auto line = std::find_if(lines.begin(), lines.end(),
                             [&](const FreedWhenClosed& each) { return each.holders == holders; });
    if (line == lines.end() && lines.size() > FreedWhenClosed::kMost) line = lines.end() - 1;
    if (line == lines.end())
        line =
            lines.insert(line, {lines.size() < FreedWhenClosed::kMost ? holders : std::vector<FileHolder>()});
    line->amount.bytes += bytes;
    ++line->amount.files;
}

void FreedSum::keep(const SpecialExtent& extent, std::uint32_t file) {
    std::vector<Range>& ranges = extent.encoded ? encoded_ : shared_;
    if (extent.encoded && extent.shared) file |= kSharedBit;
    std::uint64_t left = extent.length / kSectorBytes;
    for (std::uint64_t start = extent.start; left > 0;) {
        const std::uint64_t part = std::min(left, kMostRangeSectors);
        ranges.push_back({start, static_cast<std::uint32_t>(part), file});
        start += part * kSectorBytes;
        left -= part;
    }
}

// --- ranges that several files use

/// What the comparison finds; a file is in both lines if some of its ranges stay and some may go.
struct FreedSum::Sweep {
    explicit Sweep(std::uint32_t files) : stays(files), mayGo(files) {}

    std::vector<bool> stays, mayGo;  ///< By the number of the file.
    std::uint64_t staysBytes = 0, mayGoBytes = 0;
};

void FreedSum::sweep() {
    Sweep sweep(files_);
    sweepShared(sweep);
    sweepEncoded(sweep);
    const auto filesIn = [](const std::vector<bool>& marks) {
        return static_cast<std::uint64_t>(std::count(marks.begin(), marks.end(), true));
    };
    sum_.shared = {sweep.staysBytes, filesIn(sweep.stays)};
    sum_.perhaps = {sweep.mayGoBytes + inline_.bytes, filesIn(sweep.mayGo) + inline_.files};
}

// Nobody tells how many files share a range. One that is met once is shared with a file outside, so it stays.
// One that is met more often may be shared with others outside, or not. What overlaps is one group; where
// extents go as a whole, a part that is met twice may take all of its group with it.
void FreedSum::sweepShared(Sweep& sweep) {
    std::sort(shared_.begin(), shared_.end(),
              [](const Range& a, const Range& b) { return a.start < b.start; });
    for (std::size_t first = 0; first < shared_.size();) first = sweepGroup(sweep, first);
}

// Goes from one start or end to the next; `open` has the ranges there, by their ends. If there are several,
// all of them are marked, since each of them met one that was there.
std::size_t FreedSum::sweepGroup(Sweep& sweep, std::size_t first) {
    using End = std::pair<std::uint64_t, std::uint32_t>;  // The second is the file.
    std::priority_queue<End, std::vector<End>, std::greater<>> open;
    std::uint64_t once = 0, often = 0, from = shared_[first].start, groupEnd = from;
    const auto advance = [&](std::uint64_t to) {
        (open.size() > 1 ? often : once) += to - from;
        if (open.size() == 1 && to > from && !wholeExtents_) sweep.stays[open.top().second] = true;
        from = to;
    };
    std::size_t at = first;
    for (; at < shared_.size() && (at == first || shared_[at].start < groupEnd); ++at) {
        const Range& range = shared_[at];
        for (; !open.empty() && open.top().first <= range.start; open.pop()) advance(open.top().first);
        advance(range.start);
        if (!open.empty()) sweep.mayGo[range.file] = sweep.mayGo[open.top().second] = true;
        open.emplace(range.start + range.sectors * kSectorBytes, range.file);
        groupEnd = std::max(groupEnd, range.start + range.sectors * kSectorBytes);
    }
    for (; !open.empty(); open.pop()) advance(open.top().first);
    const bool together = wholeExtents_ && often > 0;
    for (std::size_t i = first; wholeExtents_ && i < at; ++i)
        (together ? sweep.mayGo : sweep.stays)[shared_[i].file] = true;
    sweep.staysBytes += together ? 0 : once;
    sweep.mayGoBytes += together ? once + often : often;
    return at;
}

// An encoded extent that is not shared comes back, but not by its length. A file may have several parts of
// it.
void FreedSum::sweepEncoded(Sweep& sweep) {
    std::sort(encoded_.begin(), encoded_.end(), [](const Range& a, const Range& b) {
        return std::pair(a.start, a.file) < std::pair(b.start, b.file);
    });
    for (std::size_t first = 0, at = 0; first < encoded_.size(); first = at) {
        std::uint64_t sectors = 0;
        bool shared = false, several = false;
        const auto fileOf = [&](std::size_t i) { return encoded_[i].file & ~kSharedBit; };
        for (; at < encoded_.size() && encoded_[at].start == encoded_[first].start; ++at) {
            sectors = std::max<std::uint64_t>(sectors, encoded_[at].sectors);
            shared = shared || (encoded_[at].file & kSharedBit) != 0;
            several = several || fileOf(at) != fileOf(first);
        }
        const bool stays = shared && !several;
        (stays ? sweep.staysBytes : sweep.mayGoBytes) += sectors * kSectorBytes;
        for (std::size_t i = first; i < at; ++i) (stays ? sweep.stays : sweep.mayGo)[fileOf(i)] = true;
    }
}

}  // namespace hl
