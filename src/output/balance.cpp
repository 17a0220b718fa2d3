#include "output/balance.h"

#include <algorithm>
#include <utility>

namespace hl {

namespace {

std::int64_t signedBytes(std::uint64_t bytes) {
    return static_cast<std::int64_t>(bytes);
}

class Lines {
  public:
    void add(BalanceLine line, std::uint64_t bytes, Unknown unknown = Unknown::kNo) {
        put({.line = line, .bytes = signedBytes(bytes), .unknown = unknown});
    }
    /// Leaves the line out if there is nothing of it, as there hardly ever is.
    void addIfAny(BalanceLine line, std::uint64_t bytes, Unknown unknown = Unknown::kNo) {
        if (bytes != 0 || unknown != Unknown::kNo) add(line, bytes, unknown);
    }
    void put(BalanceEntry entry) {
        if (roleOf(entry.line) == BalanceRole::kAdded) sum_ += entry.bytes;
        if (roleOf(entry.line) == BalanceRole::kSubtracted) sum_ -= entry.bytes;
        entries_.push_back(std::move(entry));
    }
    void addRest(const std::optional<UsedSpace>& used) {
        const Unknown unknown = used ? Unknown::kNo : Unknown::kNotTold;
        const std::int64_t bytes = used ? signedBytes(used->used) : 0;
        put({.line = BalanceLine::kRest, .bytes = used ? bytes - sum_ : 0, .unknown = unknown});
        put({.line = BalanceLine::kUsed, .bytes = bytes, .unknown = unknown});
    }
    std::vector<BalanceEntry> take() { return std::move(entries_); }

  private:
    std::vector<BalanceEntry> entries_;
    std::int64_t sum_ = 0;
};

std::uint64_t sumOf(const std::vector<HeldFile>& held) {
    std::uint64_t sum = 0;
    for (const HeldFile& file : held) sum += file.bytes.value_or(0);
    return sum;
}

// One line for each process, and for each device of the kernel, the largest first.
void addPrograms(Lines& lines, std::vector<HeldFile> held) {
    std::vector<HeldFile> processes;
    for (HeldFile& file : held) {
        const auto same = std::ranges::find_if(processes, [&](const HeldFile& each) {
            return each.process == file.process && (file.process != 0 || each.program == file.program);
        });
        if (same == processes.end()) {
            processes.push_back(std::move(file));
        } else {
            same->bytes = same->bytes.value_or(0) + file.bytes.value_or(0);
        }
    }
    std::ranges::stable_sort(processes, std::greater<>(), &HeldFile::bytes);
    for (HeldFile& each : processes)
        lines.put({.line = BalanceLine::kHeldBy,
                   .bytes = signedBytes(each.bytes.value_or(0)),
                   .unknown = each.bytes ? Unknown::kNo : Unknown::kNotTold,
                   .program = std::move(each.program),
                   .process = each.process});
}

void addFacts(Lines& lines, const SpaceFacts& facts) {
    lines.addIfAny(BalanceLine::kHidden, facts.hidden.taken(), facts.hiddenUnknown);
    lines.addIfAny(BalanceLine::kHeld, sumOf(facts.held), facts.heldUnknown);
    addPrograms(lines, facts.held);
    lines.add(BalanceLine::kKept, facts.kept, facts.keptUnknown);
}

SpaceFacts nothingTold() {
    SpaceFacts facts;
    facts.hiddenUnknown = facts.heldUnknown = facts.keptUnknown = Unknown::kNotTold;
    return facts;
}

}  // namespace

BalanceRole roleOf(BalanceLine line) {
    switch (line) {
        case BalanceLine::kHoles:
        case BalanceLine::kFurtherNames:
        case BalanceLine::kTiny:
            return BalanceRole::kSubtracted;
        case BalanceLine::kHeldBy:
            return BalanceRole::kDetail;
        case BalanceLine::kUsed:
            return BalanceRole::kSum;
        case BalanceLine::kTrash:
        case BalanceLine::kNotRead:
        case BalanceLine::kSnapshots:
        case BalanceLine::kLeftOut:
            return BalanceRole::kOfWhich;
        case BalanceLine::kUsedBefore:
        case BalanceLine::kReserved:
            return BalanceRole::kBeside;
        default:
            return BalanceRole::kAdded;
    }
}

BalanceState balanceState(const SourceSpace& space) {
    if (!space.complete) return BalanceState::kStopped;
    return space.isWholeDisk ? BalanceState::kThere : BalanceState::kNoWholeDisk;
}

std::vector<BalanceEntry> balanceOf(const SourceSpace& space, const std::optional<SpaceFacts>& facts,
                                    const BalanceBesides& besides) {
    const SpaceCount& count = space.count;
    const SpaceFacts& told = facts ? *facts : nothingTold();
    Lines lines;
    lines.add(BalanceLine::kFound, count.apparent);
    lines.add(BalanceLine::kRoundedUp, count.roundedUp);
    lines.add(BalanceLine::kFolders, count.ofFolders);
    addFacts(lines, told);
    lines.add(BalanceLine::kHoles, count.holes);
    lines.add(BalanceLine::kFurtherNames, count.furtherNames);
    if (told.keepsTinyFiles) lines.addIfAny(BalanceLine::kTiny, count.tiny + told.hidden.tiny);
    lines.addRest(space.after);
    lines.addIfAny(BalanceLine::kTrash, besides.trash);
    if (besides.notRead > 0)
        lines.put({.line = BalanceLine::kNotRead, .unknown = Unknown::kNotTold, .folders = besides.notRead});
    if (besides.snapshots > 0)
        lines.put(
            {.line = BalanceLine::kSnapshots, .unknown = Unknown::kNotTold, .folders = besides.snapshots});
    if (besides.leftOutFolders > 0 || besides.leftOutFiles > 0)
        lines.put({.line = BalanceLine::kLeftOut,
                   .unknown = Unknown::kNotTold,
                   .folders = besides.leftOutFolders,
                   .files = besides.leftOutFiles});
    if (space.before) lines.add(BalanceLine::kUsedBefore, space.before->used);
    if (space.after) lines.add(BalanceLine::kReserved, space.after->reserved);
    return lines.take();
}

}  // namespace hl
