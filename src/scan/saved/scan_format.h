// What a saved scan (.hlscan) holds: docs/scan-format.md tells how its bytes mean it. Pure data.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scan/statistics.h"

namespace hl {

inline constexpr std::string_view kScanMagic = "HLSCAN1\n";
inline constexpr std::string_view kScanEnd = "HLEND\n";
inline constexpr std::size_t kMostHeaderBytes = std::size_t{64} << 10;
inline constexpr std::size_t kMostNameBytes = 4096;
inline constexpr std::size_t kMostLargestFiles = 65'536;
inline constexpr std::size_t kMostEndingBytes = 16;

/// The bits of ScanRecord::flags.
enum ScanFlag : std::uint32_t {
    kScanLink = 1,      ///< A link to a folder, or a followed one.
    kScanMount = 2,     ///< The root of another mount.
    kScanError = 4,     ///< It could not be read, or not wholly.
    kScanSnapshot = 8,  ///< A snapshot that is not counted.
    kScanLeftOut = 16,  ///< A rule leaves it out.
    kScanStopped = 32,  ///< The reading was stopped in it.
    kScanOtherDevice = 64,
    kScanCreated = 128,  ///< Its creation time is known.
    kAllScanFlags = 255,
};

/// The files of one ending, one class of age and one owner. Ending and owner are places in the scan's tables;
/// the first two endings are none and other.
struct ScanCell {
    std::uint32_t ending = 0;
    std::uint8_t age = 0;
    std::uint32_t owner = 0;
    FileSums sums = {};
    bool operator==(const ScanCell&) const = default;
};
inline constexpr std::uint32_t kFirstEnding = 2;

/// A folder. `own` are the files directly in it.
struct ScanRecord {
    std::string_view name = {};  ///< Empty for the source.
    std::uint32_t flags = 0;
    std::uint32_t error = 0;     ///< The system's number; with kScanError.
    std::uint64_t rule = 0;      ///< Counted from 1; 0 is the mark of a cache. With kScanLeftOut.
    std::uint64_t device = 0;    ///< With kScanOtherDevice.
    std::uint64_t inode = 0;     ///< 0 if it is not known.
    std::int64_t created = 0;    ///< In seconds since 1970; with kScanCreated.
    std::uint64_t children = 0;  ///< Folders directly in it.
    FileSums own = {};
    std::int64_t newest = 0;  ///< In seconds since 1970; 0 if there are no files.
    std::vector<ScanCell> cells = {};
};

struct LargestRecord {
    std::uint64_t record = 0;  ///< The number of its folder, counted from 0.
    std::string name = {};
    std::uint64_t bytes = 0, blocks = 0;
    std::int64_t written = 0;
    std::uint32_t owner = 0;  ///< A place in the scan's table.
};

struct ScanSums {
    std::uint64_t folders = 0;  ///< Below the source.
    std::uint64_t files = 0, bytes = 0, blocks = 0;
    std::uint64_t errors = 0;  ///< Folders with kScanError.
    bool operator==(const ScanSums&) const = default;
};

struct ScanHeader {
    std::string program = {}, version = {};
    std::string host = {};    ///< May be empty.
    std::string source = {};  ///< The path, as bytes.
    std::int64_t started = 0, ended = 0;
    std::uint64_t device = 0;
    bool complete = false;
    std::string options = "{}";  ///< A JSON object.
};

/// All but the folders.
struct SavedScan {
    ScanHeader header = {};
    std::string headerLine = {};            ///< As it stands in the file, with its line feed.
    std::vector<std::string> endings = {};  ///< From kFirstEnding on.
    std::vector<std::pair<std::uint32_t, std::string>> owners = {};  ///< Uid and name; the name may be empty.
    std::vector<LargestRecord> largest = {};
    ScanSums sums = {};
};

/// Why a file is no scan that can be opened.
enum class ScanProblem : std::uint8_t {
    kNone,
    kNoScan,
    kLaterVersion,
    kCut,
    kAltered,
    kHeader,    ///< The first line is none that this program can read.
    kFolder,    ///< A folder, or a table, is not as it has to be.
    kIndex,     ///< Something refers to what is not there.
    kTooLarge,  ///< A number or a sum is beyond what this program can show.
    kSums,      ///< The sums of all folders are other ones than the file says.
};

}  // namespace hl
