#include "scan/largest_files.h"

#include <algorithm>

namespace hl {

namespace {

bool isLargerFile(const LargestFile& a, const LargestFile& b) {
    return a.size > b.size;
}

bool isInEarlierFolder(const LargestFile& a, const LargestFile& b) {
    return a.folder != b.folder ? a.folder < b.folder : a.size > b.size;
}

}  // namespace

// --- what a reading finds

void LargestFiles::add(LargestFile file, std::string_view name) {
    if (files_.size() > most_ + most_ / 2) dropSmallest();
    setName(file, name);
    files_.push_back(file);
    ++version_;
}

// Half as many again are taken before the smallest are dropped at once: a heap, which drops one for each that
// comes, would read its memory in no order, and took 4 % of a scan.
void LargestFiles::dropSmallest() {
    if (files_.size() <= most_) return;
    const auto end = files_.begin() + static_cast<std::ptrdiff_t>(most_);
    std::nth_element(files_.begin(), end - 1, files_.end(), isLargerFile);
    for (auto file = end; file != files_.end(); ++file) unusedBytes_ += file->nameLength_;
    files_.erase(end, files_.end());
    sorted_ = 0;
    leftOut_ = true;
    least_ = bound_ = files_.back().size;
    packNames();
    ++version_;
}

void LargestFiles::setName(LargestFile& file, std::string_view name) {
    file.nameOffset_ = static_cast<std::uint32_t>(names_.size());
    file.nameLength_ = static_cast<std::uint16_t>(name.size());
    names_.append(name);
}

void LargestFiles::finish() {
    sortByFolder();
    files_.shrink_to_fit();
    names_.shrink_to_fit();
}

// Copies the names anew when most of them belong to no file any more.
void LargestFiles::packNames() {
    if (unusedBytes_ <= names_.size() / 2) return;
    std::string packed;
    packed.reserve(names_.size() - unusedBytes_);
    for (LargestFile& file : files_) {
        const std::string_view name = nameOf(file);
        file.nameOffset_ = static_cast<std::uint32_t>(packed.size());
        packed.append(name);
    }
    names_ = std::move(packed);
    unusedBytes_ = 0;
}

// --- what went

// A file that was left out may be as large as bound_, so smaller ones are left out from now on, too.
template <class Gone>
void LargestFiles::forgetIf(const Gone& gone) {
    std::size_t kept = 0, sorted = 0;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        if (gone(files_[i])) {
            unusedBytes_ += files_[i].nameLength_;
            continue;
        }
        if (i < sorted_) ++sorted;
        files_[kept++] = files_[i];
    }
    if (kept == files_.size()) return;
    files_.resize(kept);
    sorted_ = sorted;
    least_ = leftOut_ ? bound_ - 1 : 0;
    packNames();
    ++version_;
}

void LargestFiles::forgetOwn(Row folder) {
    forgetIf([&](const LargestFile& file) { return file.folder == folder; });
}

void LargestFiles::forgetBelow(const Grid& report, Row folder) {
    if (files_.empty()) return;
    std::vector<bool> isBelow(report.tree().limit());
    const std::uint32_t level = report.level(folder);
    Row row = folder;
    do {
        isBelow[row] = true;
        row = report.tree().following(row);
    } while (row != kNoRow && report.level(row) > level);
    forgetIf([&](const LargestFile& file) { return isBelow[file.folder]; });
}

void LargestFiles::rename(Row folder, std::string_view from, std::string_view to) {
    const Range range = of(folder);
    for (std::size_t i = range.first; i < range.end; ++i) {
        if (nameOf(files_[i]) != from) continue;
        unusedBytes_ += files_[i].nameLength_;
        setName(files_[i], to);
        packNames();
        ++version_;
        return;
    }
}

// --- questions

LargestFiles::Range LargestFiles::of(Row folder) {
    sortByFolder();
    const auto first = std::ranges::lower_bound(files_, folder, {}, &LargestFile::folder);
    auto end = first;
    while (end != files_.end() && end->folder == folder) ++end;
    return {static_cast<std::size_t>(first - files_.begin()), static_cast<std::size_t>(end - files_.begin())};
}

void LargestFiles::sortByFolder() {
    dropSmallest();
    if (sorted_ == files_.size()) return;
    const auto middle = files_.begin() + static_cast<std::ptrdiff_t>(sorted_);
    std::sort(middle, files_.end(), isInEarlierFolder);
    std::inplace_merge(files_.begin(), middle, files_.end(), isInEarlierFolder);
    sorted_ = files_.size();
    ++version_;
}

// --- all sources

LargestFiles* LargestOfSources::startReading(const Grid& report, Row row, std::size_t most,
                                             std::int64_t started) {
    if (report.parent(row) != kNoRow) return of(report, row);
    sources_.erase(row);
    return &sources_.try_emplace(row, most, started).first->second;
}

void LargestOfSources::forgetBelow(const Grid& report, Row row) {
    if (LargestFiles* files = of(report, row)) files->forgetBelow(report, row);
}

LargestFiles* LargestOfSources::of(const Grid& report, Row row) {
    const Row first = report.firstRoot();
    const bool isOnly = first != kNoRow && report.nextSibling(first) == kNoRow;
    const auto found = sources_.find(isOnly ? first : report.rootOf(row));
    return found != sources_.end() ? &found->second : nullptr;
}

}  // namespace hl
