#include "mainwindow/saved_files.h"

#include <utility>

#include "base/text.h"
#include "robustness/api_error_text.h"
#include "scan/saved/open_foreign.h"
#include "scan/saved/open_scan.h"

namespace hl {

namespace {

constexpr std::size_t kMostBytes = std::size_t{16} << 30;
constexpr std::string_view kZstd = "\x28\xB5\x2F\xFD", kGzip = "\x1F\x8B",
                           kXz =
                               "\xFD"
                               "7zXZ";

std::string compressedText(const Texts& texts, const std::string& path, std::string_view bytes) {
    const std::string tool = bytes.starts_with(kZstd) ? "zstd" : bytes.starts_with(kGzip) ? "gzip" : "xz";
    return texts.TL(9048, "sie ist gepackt; so geht es: %1",
                    {tool + " -dc " + visible(path) + " | harborlantern --open -"});
}

std::string failedText(const Texts& texts, const std::string& path, const std::string& reason) {
    const std::string name = path == kStandardOutput ? texts.TL(9049, "(Standardeingabe)") : visible(path);
    return texts.TL(9046, "%1 kann nicht geöffnet werden: %2", {name, reason});
}

Result<std::string> bytesOf(const Services& services, const std::string& path, WaitCallback* wait) {
    return path == kStandardOutput ? services.files.readInput(kMostBytes, wait)
                                   : services.files.readWhole(path, kMostBytes);
}

/// The result is a scan, or why there is none.
std::variant<ScanFile, std::string> scanOf(const Texts& texts, std::string bytes) {
    ScanReading reading = readScan(std::move(bytes));
    if (reading.problem != ScanProblem::kNone) return scanProblemText(texts, reading.problem);
    return std::move(reading.file);
}

SavedFile contentOf(const Texts& texts, const std::string& path, std::string bytes) {
    for (const std::string_view magic : {kZstd, kGzip, kXz})
        if (bytes.starts_with(magic)) return compressedText(texts, path, bytes);
    if (beginsLikeScan(bytes)) {
        auto scan = scanOf(texts, std::move(bytes));
        if (auto* reason = std::get_if<std::string>(&scan)) return std::move(*reason);
        return std::get<ScanFile>(std::move(scan));
    }
    const char first = bytes.empty() ? '\0' : bytes.front();
    const bool isListing = first >= '0' && first <= '9';
    if (first != '[' && !isListing)
        return texts.TL(9050, "weder ein gespeicherter Scan noch JSON von ncdu noch eine Liste von find");
    ForeignTree tree;
    const ForeignProblem problem = isListing ? readListing(bytes, tree) : readNcdu(bytes, tree);
    if (problem != ForeignProblem::kNone) return foreignProblemText(texts, problem);
    return tree;
}

}  // namespace

SavedFile readSavedFile(const Services& services, const std::string& path, WaitCallback* wait) {
    Result<std::string> bytes = bytesOf(services, path, wait);
    if (!bytes) return failedText(services.texts, path, ApiErrorText(false, bytes.error()));
    SavedFile file = contentOf(services.texts, path, *std::move(bytes));
    if (const auto* reason = std::get_if<std::string>(&file))
        return failedText(services.texts, path, *reason);
    return file;
}

std::variant<ScanFile, std::string> readScanFile(const Services& services, const std::string& path,
                                                 WaitCallback* wait) {
    Result<std::string> bytes = bytesOf(services, path, wait);
    if (!bytes) return failedText(services.texts, path, ApiErrorText(false, bytes.error()));
    auto scan = scanOf(services.texts, *std::move(bytes));
    if (const auto* reason = std::get_if<std::string>(&scan))
        return failedText(services.texts, path, *reason);
    return scan;
}

Row openSavedFile(ScanContext& scan, const SavedFile& file) {
    if (const auto* tree = std::get_if<ForeignTree>(&file)) return openForeignTree(scan, *tree);
    return openSavedScan(scan, std::get<ScanFile>(file));
}

}  // namespace hl
