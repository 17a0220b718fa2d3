// The parts of a file; a folder; the header; the tables; the check of the whole.
#include "scan/saved/scan_reader.h"

#include <algorithm>
#include <limits>
#include <unordered_set>

#include "base/base64.h"
#include "base/crc32.h"
#include "base/json_reader.h"
#include "base/leb128.h"
#include "base/text.h"

namespace hl {

namespace {

constexpr std::size_t kCrcBytes = 4;
constexpr std::uint64_t kMostCount = std::numeric_limits<std::int32_t>::max();
constexpr std::uint64_t kMostBytes = std::numeric_limits<std::int64_t>::max();

/// Takes numbers and texts off the front of the bytes; the first fault is kept.
class Taking {
  public:
    explicit Taking(std::string_view bytes) : rest_(bytes) {}

    std::uint64_t number(std::uint64_t most = std::numeric_limits<std::uint64_t>::max(),
                         ScanProblem beyond = ScanProblem::kTooLarge) {
        const auto taken = takeLeb(rest_);
        if (!taken) return fail(ScanProblem::kFolder), 0;
        if (*taken > most) return fail(beyond), 0;
        return *taken;
    }
    std::string_view text(std::size_t most) {
        const auto length = static_cast<std::size_t>(number(most, ScanProblem::kFolder));
        if (length > rest_.size()) return fail(ScanProblem::kFolder), std::string_view();
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return taken;
    }
    FileSums sums() {
        FileSums sums;
        sums.files = number();
        sums.bytes = number();
        sums.blocks = number();
        return sums;
    }
    void fail(ScanProblem problem) {
        if (problem_ == ScanProblem::kNone) problem_ = problem;
    }
    bool isFine() const { return problem_ == ScanProblem::kNone; }
    ScanProblem problem() const { return problem_; }
    std::string_view rest() const { return rest_; }

  private:
    std::string_view rest_;
    ScanProblem problem_ = ScanProblem::kNone;
};

// --- a folder

std::int64_t timeBefore(std::int64_t started, std::uint64_t written) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(started) -
                                     static_cast<std::uint64_t>(unzigzag(written)));
}

void takeCells(Taking& from, ScanRecord& record) {
    record.cells.clear();
    FileSums rest = record.own;
    for (std::uint64_t left = from.number(); left > 0 && from.isFine(); --left) {
        ScanCell& cell = record.cells.emplace_back();
        cell.ending = static_cast<std::uint32_t>(
            from.number(std::numeric_limits<std::uint32_t>::max(), ScanProblem::kIndex));
        cell.age = static_cast<std::uint8_t>(from.number(kAgeClasses - 1, ScanProblem::kIndex));
        cell.owner = static_cast<std::uint32_t>(
            from.number(std::numeric_limits<std::uint32_t>::max(), ScanProblem::kIndex));
        cell.sums = left == 1 ? rest : from.sums();
        const FileSums& sums = cell.sums;
        if (sums.files > rest.files || sums.bytes > rest.bytes || sums.blocks > rest.blocks)
            return from.fail(ScanProblem::kSums);
        rest = {rest.files - sums.files, rest.bytes - sums.bytes, rest.blocks - sums.blocks};
    }
}

void takeRecord(Taking& from, ScanRecord& record, std::int64_t started) {
    record.name = from.text(kMostNameBytes);
    record.flags = static_cast<std::uint32_t>(from.number(kAllScanFlags, ScanProblem::kFolder));
    const auto with = [&](ScanFlag flag, std::uint64_t most) {
        return (record.flags & flag) != 0 ? from.number(most) : 0;
    };
    record.error = static_cast<std::uint32_t>(with(kScanError, kMostCount));
    record.rule = with(kScanLeftOut, kMostCount);
    record.device = with(kScanOtherDevice, std::numeric_limits<std::uint64_t>::max());
    record.inode = from.number();
    record.created = 0;
    if ((record.flags & kScanCreated) != 0) record.created = timeBefore(started, from.number());
    record.children = from.number(kMostCount);
    record.own = {.files = from.number(kMostCount)};
    record.newest = 0;
    record.cells.clear();
    if (record.own.files == 0) return;
    record.own.bytes = from.number(kMostBytes);
    record.own.blocks = from.number(kMostBytes / kBlockBytes);
    record.newest = timeBefore(started, from.number());
    takeCells(from, record);
}

bool isName(std::string_view name, bool isSource) {
    if (isSource) return name.empty();
    return !name.empty() && name.find('/') == std::string_view::npos &&
           name.find('\0') == std::string_view::npos;
}

// --- the header

bool takeText(JsonReader& json, std::string& into) {
    if (json.next() != JsonReader::Piece::kString) return false;
    into = json.string();
    return true;
}

bool takeTime(JsonReader& json, std::int64_t& into) {
    if (json.next() != JsonReader::Piece::kNumber) return false;
    const auto number = json.whole();
    into = number.value_or(0);
    return number.has_value();
}

bool takeHeaderValue(JsonReader& json, const std::string& key, ScanHeader& header) {
    if (key == "program") return takeText(json, header.program);
    if (key == "version") return takeText(json, header.version);
    if (key == "host") return takeText(json, header.host);
    if (key == "source") return takeText(json, header.source);
    if (key == "started") return takeTime(json, header.started);
    if (key == "ended") return takeTime(json, header.ended);
    if (key == "source64") {
        std::string text;
        if (!takeText(json, text)) return false;
        const auto bytes = base64Bytes(text);
        header.source = bytes.value_or("");
        return bytes.has_value();
    }
    if (key == "device") {
        if (json.next() != JsonReader::Piece::kNumber) return false;
        header.device = json.unsignedWhole().value_or(0);
        return json.unsignedWhole().has_value();
    }
    if (key == "complete") {
        const JsonReader::Piece piece = json.next();
        header.complete = piece == JsonReader::Piece::kTrue;
        return header.complete || piece == JsonReader::Piece::kFalse;
    }
    const auto value = json.rawValue();
    if (value && key == "options") header.options = *value;
    return value.has_value();
}

// The source is a place where a row stands for it, so it is an absolute path.
bool takeHeader(std::string_view line, ScanHeader& header) {
    JsonReader json(line);
    if (json.next() != JsonReader::Piece::kObject) return false;
    for (JsonReader::Piece piece = json.next(); piece == JsonReader::Piece::kKey; piece = json.next())
        if (const std::string key = json.string(); !takeHeaderValue(json, key, header)) return false;
    return json.depth() == 0 && json.next() == JsonReader::Piece::kEnd && header.source.starts_with('/') &&
           header.source.find('\0') == std::string::npos && header.options.starts_with('{');
}

// --- the tables

void takeEndings(Taking& from, SavedScan& scan) {
    std::unordered_set<std::string_view> seen;
    for (std::uint64_t left = from.number(EndingNumbers::kMost); left > 0 && from.isFine(); --left) {
        const std::string_view ending = from.text(kMostEndingBytes);
        if (Ending("x." + std::string(ending)).text() != ending || ending.empty() ||
            !seen.insert(ending).second)
            return from.fail(ScanProblem::kFolder);
        scan.endings.emplace_back(ending);
    }
}

void takeOwners(Taking& from, SavedScan& scan) {
    std::unordered_set<std::uint32_t> seen;
    for (std::uint64_t left = from.number(); left > 0 && from.isFine(); --left) {
        const auto uid = static_cast<std::uint32_t>(from.number(std::numeric_limits<std::uint32_t>::max()));
        if (!seen.insert(uid).second) return from.fail(ScanProblem::kFolder);
        scan.owners.emplace_back(uid, from.text(kMostNameBytes));
    }
}

void takeLargest(Taking& from, SavedScan& scan, std::uint64_t records) {
    for (std::uint64_t left = from.number(kMostLargestFiles); left > 0 && from.isFine(); --left) {
        LargestRecord& file = scan.largest.emplace_back();
        file.record = from.number(records - 1, ScanProblem::kIndex);
        file.name = from.text(kMostNameBytes);
        file.bytes = from.number(kMostBytes);
        file.blocks = from.number(kMostBytes / kBlockBytes);
        file.written = unzigzag(from.number());
        const std::uint64_t owner = from.number();
        if (owner >= scan.owners.size()) return from.fail(ScanProblem::kIndex);
        file.owner = static_cast<std::uint32_t>(owner);
        if (!isName(file.name, false)) return from.fail(ScanProblem::kFolder);
    }
}

ScanSums takeSums(Taking& from) {
    ScanSums sums;
    for (std::uint64_t* sum : {&sums.folders, &sums.files, &sums.bytes, &sums.blocks, &sums.errors})
        *sum = from.number();
    return sums;
}

// --- the whole

/// Goes through all folders of a file once.
class Check {
  public:
    explicit Check(std::int64_t started) : started_(started) {}

    std::uint64_t count() const { return count_; }
    const ScanSums& sums() const { return sums_; }
    /// One more than the highest places of endings and owners that occur.
    std::uint64_t endings() const { return endings_; }
    std::uint64_t owners() const { return owners_; }

    void run(Taking& from) {
        do {
            takeRecord(from, record_, started_);
            if (from.isFine() && !isName(record_.name, count_ == 0)) from.fail(ScanProblem::kFolder);
            if (!from.isFine()) return;
            take(from);
        } while (!open_.empty() && from.isFine());
    }

  private:
    void take(Taking& from) {
        ++count_;
        add(from, sums_.files, record_.own.files, kMostCount);
        add(from, sums_.bytes, record_.own.bytes, kMostBytes);
        add(from, sums_.blocks, record_.own.blocks, kMostBytes / kBlockBytes);
        if (count_ > 1) add(from, sums_.folders, 1, kMostCount);
        if ((record_.flags & kScanError) != 0) ++sums_.errors;
        for (const ScanCell& cell : record_.cells) {
            endings_ = std::max<std::uint64_t>(endings_, std::uint64_t{cell.ending} + 1);
            owners_ = std::max<std::uint64_t>(owners_, std::uint64_t{cell.owner} + 1);
        }
        if (record_.children > 0) return open_.push_back(record_.children);
        while (!open_.empty() && --open_.back() == 0) open_.pop_back();
    }

    static void add(Taking& from, std::uint64_t& sum, std::uint64_t more, std::uint64_t most) {
        if (more > most - sum) return from.fail(ScanProblem::kTooLarge);
        sum += more;
    }

    const std::int64_t started_;
    ScanRecord record_;
    std::vector<std::uint64_t> open_;  ///< For each folder on the way down, how many children are to come.
    std::uint64_t count_ = 0, endings_ = kFirstEnding, owners_ = 0;
    ScanSums sums_;
};

ScanProblem frameProblem(std::string_view bytes) {
    if (!bytes.starts_with(kScanMagic))
        return !beginsLikeScan(bytes)              ? ScanProblem::kNoScan
               : bytes.size() >= kScanMagic.size() ? ScanProblem::kLaterVersion
                                                   : ScanProblem::kCut;
    if (!bytes.ends_with(kScanEnd) || bytes.size() < kScanMagic.size() + kCrcBytes + kScanEnd.size())
        return ScanProblem::kCut;
    bytes.remove_suffix(kScanEnd.size());
    std::uint32_t told = 0;
    for (std::size_t i = 0; i < kCrcBytes; ++i)
        told |= std::uint32_t{static_cast<unsigned char>(bytes[bytes.size() - kCrcBytes + i])} << (8 * i);
    bytes.remove_suffix(kCrcBytes);
    Crc32 crc;
    crc.add(bytes);
    return crc.value() == told ? ScanProblem::kNone : ScanProblem::kAltered;
}

ScanProblem checkBody(ScanFile& file, SavedScan& scan, std::string_view body) {
    Taking from(body);
    Check check(scan.header.started);
    check.run(from);
    if (from.isFine()) takeEndings(from, scan);
    if (from.isFine()) takeOwners(from, scan);
    if (from.isFine() &&
        (check.endings() > scan.endings.size() + kFirstEnding || check.owners() > scan.owners.size()))
        from.fail(ScanProblem::kIndex);
    if (from.isFine()) takeLargest(from, scan, check.count());
    if (from.isFine()) scan.sums = takeSums(from);
    if (from.isFine() && !from.rest().empty()) from.fail(ScanProblem::kFolder);
    if (from.isFine() && scan.sums != check.sums()) from.fail(ScanProblem::kSums);
    file.count = check.count();
    return from.problem();
}

}  // namespace

bool beginsLikeScan(std::string_view bytes) {
    constexpr std::string_view kWord = "HLSCAN";
    if (!bytes.starts_with(kWord)) return false;
    bytes.remove_prefix(kWord.size());
    if (bytes.empty() || bytes[0] < '1' || bytes[0] > '9') return bytes.empty();
    return bytes.size() == 1 || bytes[1] == '\n' || (bytes[1] >= '0' && bytes[1] <= '9');
}

ScanReading readScan(std::string bytes) {
    const auto failed = [](ScanProblem problem) { return ScanReading{.problem = problem}; };
    if (const ScanProblem problem = frameProblem(bytes); problem != ScanProblem::kNone)
        return failed(problem);
    auto scan = std::make_shared<SavedScan>();
    std::string_view body = bytes;
    body.remove_prefix(kScanMagic.size());
    body.remove_suffix(kCrcBytes + kScanEnd.size());
    const std::size_t line = body.substr(0, kMostHeaderBytes).find('\n');
    if (line == std::string_view::npos || !takeHeader(body.substr(0, line), scan->header))
        return failed(ScanProblem::kHeader);
    scan->headerLine = body.substr(0, line + 1);
    body.remove_prefix(line + 1);
    ScanReading reading;
    reading.file.records = kScanMagic.size() + line + 1;
    reading.problem = checkBody(reading.file, *scan, body);
    if (reading.problem != ScanProblem::kNone) return failed(reading.problem);
    reading.file.scan = std::move(scan);
    reading.file.bytes = std::move(bytes);
    return reading;
}

bool ScanRecords::next(ScanRecord& record) {
    if (left_ == 0) return false;
    --left_;
    Taking from(rest_);
    takeRecord(from, record, started_);
    rest_ = from.rest();
    return true;
}

}  // namespace hl
