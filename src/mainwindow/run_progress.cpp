#include "mainwindow/run_progress.h"

#include <algorithm>
#include <cmath>

#include "base/size_text.h"

namespace hl {

namespace {

constexpr double kMostShare = 0.99;              // Shown until the source is read to its end.
constexpr std::uint64_t kBeforeEstimate = 5000;  // Milliseconds.
constexpr std::uint64_t kBetweenEstimates = 1000;
constexpr double kSteady = 1.0 / 3;  // Two estimates that differ by less are worth showing.

std::string count(std::int64_t number, const NumberFormat& numbers) {
    return formatNumber(static_cast<double>(number), {}, numbers);
}

std::string sizeText(double bytes, const NumberFormat& numbers) {
    const double most = static_cast<double>(SizeValue::kMaxBytes);
    return FormatSizeAuto(SizeValue::fromBytes(static_cast<std::uint64_t>(std::min(bytes, most))), true,
                          numbers);
}

}  // namespace

void RunProgress::begin(std::uint64_t tick) {
    *this = {};
    began_ = sourceBegan_ = tick;
}

void RunProgress::beginSource(std::uint64_t tick) {
    sourceBegan_ = tick;
    now_ = {};
    allEntries_ = allBytes_ = 0;
    largestShare_ = 0;
    former_.reset();
    latest_.reset();
}

void RunProgress::expect(std::uint64_t entries, std::uint64_t bytes) {
    allEntries_ = entries;
    allBytes_ = bytes;
}

void RunProgress::found(const ScanCounts& counts, std::uint64_t tick) {
    now_ = counts;
    largestShare_ = std::max(largestShare_, share());
    if (largestShare_ <= 0 || tick < sourceBegan_ + kBeforeEstimate) return;
    if (latest_ && tick < latest_->tick + kBetweenEstimates) return;
    former_ = latest_;
    const auto elapsed = static_cast<double>(tick - sourceBegan_);
    latest_ = {tick, elapsed * (1 - largestShare_) / largestShare_};
}

void RunProgress::endSource(const ScanCounts& counts) {
    before_.files += counts.files;
    before_.folders += counts.folders;
    before_.bytes += counts.bytes;
    beginSource(sourceBegan_);
}

// Files with several names count once as an inode, so the walk may find more names than there are inodes.
double RunProgress::share() const {
    double share = 0;
    if (allEntries_ > 0)
        share = static_cast<double>(now_.files + now_.folders) / static_cast<double>(allEntries_);
    else if (allBytes_ > 0)
        share = now_.bytes / static_cast<double>(allBytes_);
    return std::min(share, kMostShare);
}

std::optional<int> RunProgress::percent() const {
    if (allEntries_ == 0 && allBytes_ == 0) return std::nullopt;
    return static_cast<int>(largestShare_ * 100);
}

std::optional<std::uint64_t> RunProgress::secondsLeft(std::uint64_t tick) const {
    if (!former_ || std::abs(latest_->left - former_->left) >= former_->left * kSteady) return std::nullopt;
    const double left = latest_->left - static_cast<double>(tick - latest_->tick);
    return static_cast<std::uint64_t>(std::ceil(std::max(left, 1.0) / 1000));
}

std::string RunProgress::running(std::uint64_t tick, const Texts& texts, const NumberFormat& numbers) const {
    const std::int64_t files = before_.files + now_.files;
    std::string text = texts.TL(9670, "%1 Dateien, %2, %3 s",
                                {count(files, numbers), sizeText(before_.bytes + now_.bytes, numbers),
                                 std::to_string((tick - began_) / 1000)});
    if (const auto part = percent()) text = texts.TL(9671, "%1, %2 %", {text, *part});
    if (const auto left = secondsLeft(tick))
        text = texts.TL(9672, "%1, noch etwa %2 s", {text, count(static_cast<std::int64_t>(*left), numbers)});
    return text;
}

std::string RunProgress::ended(std::uint64_t tick, bool stopped, const Texts& texts,
                               const NumberFormat& numbers) const {
    const std::string files = count(before_.files, numbers);
    const std::string seconds =
        formatNumber(static_cast<double>(tick - began_) / 1000, {.grouped = true, .decimals = 1}, numbers);
    return stopped ? texts.TL(9674, "Abgebrochen. %1 Dateien in %2 s", {files, seconds})
                   : texts.TL(9673, "OK. %1 Dateien in %2 s", {files, seconds});
}

}  // namespace hl
