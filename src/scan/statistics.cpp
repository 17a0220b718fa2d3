// Classes of age; endings; the cells of a folder; what the walk finds; the order of the cells; sums.
//
// The own cells of a folder are their number, and for each: ending, owner and age, files, bytes, blocks. All
// numbers are unsigned LEB128.
#include "scan/statistics.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

#include "scan/records.h"

namespace hl {

namespace {

constexpr std::int64_t kDay = 24LL * 60 * 60;
constexpr std::size_t kSearchedCells = 12;  // With more cells a table is faster than a search.
constexpr std::size_t kUsualCells = 8;
constexpr unsigned kLebBits = 7;
constexpr std::uint8_t kLebMore = 1U << kLebBits;
constexpr std::size_t kMostOfACell = std::size_t{10} * 5;  // Bytes.

std::uint64_t takeNumber(const std::uint8_t*& at) {
    std::uint64_t number = *at & (kLebMore - 1U);
    for (unsigned shift = kLebBits; (*at++ & kLebMore) != 0; shift += kLebBits)
        number |= static_cast<std::uint64_t>(*at & (kLebMore - 1U)) << shift;
    return number;
}

/// Returns where the number ends.
std::uint8_t* putNumber(std::uint8_t* to, std::uint64_t number) {
    for (; number >= kLebMore; number >>= kLebBits) *to++ = static_cast<std::uint8_t>(number | kLebMore);
    *to++ = static_cast<std::uint8_t>(number);
    return to;
}

struct PackedCell {
    std::uint32_t ending, ownerAndAge;
    FileSums sums;
};

PackedCell takeCell(const std::uint8_t*& at) {
    PackedCell cell{};
    cell.ending = static_cast<std::uint32_t>(takeNumber(at));
    cell.ownerAndAge = static_cast<std::uint32_t>(takeNumber(at));
    cell.sums.files = takeNumber(at);
    cell.sums.bytes = takeNumber(at);
    cell.sums.blocks = takeNumber(at);
    return cell;
}

/// Calls `tell` with each of a folder's own cells; returns where they end.
template <class Tell>
const std::uint8_t* forOwnCells(const std::uint8_t* at, const Tell& tell) {
    for (std::uint64_t left = takeNumber(at); left > 0; --left) tell(takeCell(at));
    return at;
}

bool isFolderRow(const Grid& report, Row row) {
    return report.number(row, kIsFolder) == 1;
}

}  // namespace

std::uint8_t ageClassOf(std::int64_t age) {
    if (age < 0) return kInTheFuture;
    const auto* border = std::ranges::upper_bound(kAgeBorders, age / kDay);
    return static_cast<std::uint8_t>(border - kAgeBorders.begin() - 1);
}

// --- endings

std::uint32_t EndingNumbers::of(std::string_view name) {
    return ofEnding(Ending(name).text());
}

std::uint32_t EndingNumbers::ofEnding(std::string_view wanted) {
    if (wanted.empty()) return kNone;
    const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(wanted[at]); };
    const std::size_t mixed = byte(0) + 5U * byte(wanted.size() / 2) + 19U * byte(wanted.size() - 1);
    std::uint32_t& recent = recent_[(mixed + 61U * wanted.size()) % recent_.size()];
    if (wanted == text(recent)) return recent;
    const auto found = numbers_.find(wanted);
    if (found != numbers_.end()) return recent = found->second;
    if (texts_.size() == kMost) return kRest;
    const auto added = numbers_.emplace(wanted, limit()).first;
    texts_.push_back(&added->first);
    kinds_.push_back(kindOfEnding(added->first));
    return recent = added->second;
}

// --- the cells of a folder

void FolderCells::add(std::uint32_t ending, std::uint32_t ownerAndAge, const FileSums& file) {
    const auto isIt = [&](const Cell& cell) {
        return cell.ending == ending && cell.ownerAndAge == ownerAndAge;
    };
    if (last_ >= cells_.size() || !isIt(cells_[last_])) last_ = placeOf(ending, ownerAndAge);
    if (last_ == cells_.size()) {
        if (cells_.empty()) cells_.reserve(kUsualCells);
        cells_.push_back({ending, ownerAndAge, {}});
    }
    cells_[last_].sums.add(file);
}

// Returns the number of cells for one that is not there yet; it is added there.
std::size_t FolderCells::placeOf(std::uint32_t ending, std::uint32_t ownerAndAge) {
    const auto key = [](std::uint32_t high, std::uint32_t low) { return std::uint64_t{high} << 32 | low; };
    if (places_ == nullptr) {
        std::size_t place = 0;
        while (place < cells_.size() &&
               (cells_[place].ending != ending || cells_[place].ownerAndAge != ownerAndAge))
            ++place;
        if (place < kSearchedCells) return place;
        places_ = std::make_unique<Places>();
        for (std::size_t i = 0; i < cells_.size(); ++i)
            places_->emplace(key(cells_[i].ending, cells_[i].ownerAndAge), i);
    }
    return places_->emplace(key(ending, ownerAndAge), cells_.size()).first->second;
}

// --- what the walk finds

void Statistics::dropSource(Row root) {
    forget(root);
    if (started_.erase(root) > 0) orderChanged();
}

std::optional<std::int64_t> Statistics::startOf(const Grid& report, Row row) const {
    const auto found = started_.find(report.rootOf(row));
    return found != started_.end() ? std::optional(found->second) : std::nullopt;
}

void Statistics::clear() {
    const std::uint64_t next = version_ + 1;
    *this = Statistics();
    version_ = next;
}

void Statistics::addFile(FolderCells& cells, std::string_view name, const EntryDetails& file,
                         std::int64_t started, const FileSums& sums) {
    cells.add(endings_.of(name), ownerAndAge(file.owner, ageClassOf(started - file.written)), sums);
}

std::uint32_t Statistics::ownerAndAge(std::uint32_t owner, std::uint8_t age) {
    if (lastOwner_ >= owners_.size() || owners_[lastOwner_] != owner) {
        const auto found = std::ranges::find(owners_, owner);
        lastOwner_ = static_cast<std::size_t>(found - owners_.begin());
        if (found == owners_.end()) owners_.push_back(owner);
    }
    return static_cast<std::uint32_t>(lastOwner_ * kAgeClasses + age);
}

void Statistics::addCell(FolderCells& cells, const OwnCell& cell) {
    cells.add(cell.ending, ownerAndAge(cell.owner, cell.age), cell.sums);
}

void Statistics::ownCells(Row row, std::vector<OwnCell>& cells) const {
    cells.clear();
    const Span span = spans_.valueOr(row, {});
    if (span.own == 0) return;
    forOwnCells(bytes_.data() + span.own - 1, [&](const PackedCell& cell) {
        cells.push_back({cell.ending, static_cast<std::uint8_t>(cell.ownerAndAge % kAgeClasses),
                         owners_[cell.ownerAndAge / kAgeClasses], cell.sums});
    });
}

void Statistics::leave(Row row, std::uint32_t first, const FolderCells& cells) {
    if (cells.cells_.size() >= (std::numeric_limits<std::uint32_t>::max() - bytes_.size()) / kMostOfACell)
        throw std::length_error("statistics");
    put(row, {first, place() + 1});
    std::array<std::uint8_t, kMostOfACell> packed;
    bytes_.insert(bytes_.end(), packed.data(), putNumber(packed.data(), cells.cells_.size()));
    for (const FolderCells::Cell& cell : cells.cells_) {
        std::uint8_t* end = putNumber(packed.data(), cell.ending);
        for (const std::uint64_t number :
             {std::uint64_t{cell.ownerAndAge}, cell.sums.files, cell.sums.bytes, cell.sums.blocks})
            end = putNumber(end, number);
        bytes_.insert(bytes_.end(), packed.data(), end);
    }
    ++version_;
}

void Statistics::replaceOwn(Row row, const FolderCells& cells) {
    leave(row, place(), cells);
    orderChanged();
}

void Statistics::forget(Row row) {
    if (has(row)) spans_[row] = {};
}

void Statistics::orderChanged() {
    isOrdered_ = false;
    ++version_;
}

void Statistics::put(Row row, const Span& span) {
    spans_.ensure(row);
    placedRows_ = std::max(placedRows_, (row / Column<Span>::kBlockRows + 1) * Column<Span>::kBlockRows);
    spans_[row] = span;
}

// --- the order of the cells

// Copies the cells of each folder behind those of everything below it. What belongs to no row is left behind.
void Statistics::inOrder(const Grid& report) {
    if (std::exchange(isOrdered_, true)) return;
    const std::vector<std::uint8_t> bytes = std::exchange(bytes_, {});
    const Column<Span> spans = std::exchange(spans_, {});
    bytes_.reserve(bytes.size());
    placedRows_ = 0;
    bool enters = true;
    for (Row row = report.firstRoot(); row != kNoRow;) {
        const std::uint32_t own = isFolderRow(report, row) ? spans.valueOr(row, {}).own : 0;
        if (enters && own != 0) put(row, {place(), 1});
        const Row below = enters ? report.firstChild(row) : kNoRow;
        if (below != kNoRow) {
            row = below;
            continue;
        }
        if (own != 0) {
            spans_[row].own = place() + 1;
            const std::uint8_t* begin = bytes.data() + own - 1;
            bytes_.insert(bytes_.end(), begin, forOwnCells(begin, [](const PackedCell&) {}));
        }
        enters = report.nextSibling(row) != kNoRow;
        row = enters ? report.nextSibling(row) : report.parent(row);
    }
    pack();
}

// --- sums

namespace {

/// Adds up cells by the numbers of endings and owners.
struct CellSums {
    CellSums(std::size_t endingCount, std::size_t ownerCount) : endings(endingCount), owners(ownerCount) {}

    std::vector<FileSums> endings, owners;
    StatisticsSums result;

    void add(const PackedCell& cell) {
        endings[cell.ending].add(cell.sums);
        result.ages[cell.ownerAndAge % kAgeClasses].add(cell.sums);
        owners[cell.ownerAndAge / kAgeClasses].add(cell.sums);
    }
};

}  // namespace

std::optional<StatisticsSums> Statistics::of(const Grid& report, Row row) {
    if (!startOf(report, row)) return std::nullopt;
    inOrder(report);
    const bool onlyOwn = !isFolderRow(report, row) && report.parent(row) != kNoRow;
    const Span span = spans_.valueOr(onlyOwn ? report.parent(row) : row, {});
    CellSums sums(endings_.limit(), owners_.size());
    if (span.own != 0) {
        const std::uint8_t* const own = bytes_.data() + span.own - 1;
        const auto add = [&](const PackedCell& cell) { sums.add(cell); };
        const std::uint8_t* at = onlyOwn ? own : bytes_.data() + span.first;
        while (at <= own) at = forOwnCells(at, add);
    }
    StatisticsSums& result = sums.result;
    for (const FileSums& age : result.ages) result.all.add(age);
    for (std::uint32_t i = 0; i < sums.endings.size(); ++i) {
        if (sums.endings[i].files == 0) continue;
        const std::string_view text = endings_.text(i);
        result.endings.push_back(
            {std::string(text), kindOfEnding(text), i == EndingNumbers::kRest, sums.endings[i]});
    }
    for (std::size_t i = 0; i < sums.owners.size(); ++i)
        if (sums.owners[i].files != 0) result.owners.push_back({owners_[i], sums.owners[i]});
    return std::move(result);
}

// --- the largest group

// Owners by their number, not by their uid.
std::uint32_t Statistics::groupOf(std::uint32_t ending, std::uint32_t ownerAndAge, FileGroups by) const {
    if (by == FileGroups::kKind) return static_cast<std::uint32_t>(endings_.kind(ending));
    return static_cast<std::uint32_t>(by == FileGroups::kAge ? ownerAndAge % kAgeClasses
                                                             : ownerAndAge / kAgeClasses);
}

std::optional<std::uint32_t> Statistics::largestGroup(const Grid& report, Row row,
                                                      const GroupQuestion& question, bool isReading) {
    if (isReading && !isOrdered_) return std::nullopt;
    inOrder(report);
    const Span span = spans_.valueOr(row, {});
    if (span.own == 0) return std::nullopt;
    groupSums_.assign(std::max({kFileKinds, kAgeClasses, owners_.size()}), 0);
    const std::uint8_t* const own = bytes_.data() + span.own - 1;
    const std::uint8_t* at = question.onlyOwn ? own : bytes_.data() + span.first;
    while (at <= own)
        at = forOwnCells(at, [&](const PackedCell& cell) {
            groupSums_[groupOf(cell.ending, cell.ownerAndAge, question.by)] +=
                question.onDisk ? cell.sums.blocks : cell.sums.bytes;
        });
    const auto largest = std::ranges::max_element(groupSums_);
    if (*largest == 0) return std::nullopt;
    const auto number = static_cast<std::uint32_t>(largest - groupSums_.begin());
    return question.by == FileGroups::kOwner ? owners_[number] : number;
}

}  // namespace hl
