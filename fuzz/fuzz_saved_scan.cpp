// Feeds any bytes as a saved scan. The checksum is put right first, or no input would get behind it. What is
// taken has to be written again as it was.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/crc32.h"
#include "require.h"
#include "scan/saved/scan_reader.h"
#include "scan/saved/scan_writer.h"

using hl::fuzz::require;

namespace {

std::string framed(std::string content) {
    hl::Crc32 crc;
    crc.add(content);
    for (unsigned shift = 0; shift < 32; shift += 8)
        content += static_cast<char>(crc.value() >> shift & 255U);
    return content.append(hl::kScanEnd);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string given(reinterpret_cast<const char*>(data), size);
    hl::readScan(given);
    const std::string bytes = framed(std::string(hl::kScanMagic) + given);
    const hl::ScanReading reading = hl::readScan(bytes);
    if (reading.problem != hl::ScanProblem::kNone) return 0;
    const hl::SavedScan& scan = *reading.file.scan;
    std::string again;
    hl::ScanWriter writer(scan.header.started);
    writer.begin(again, scan.headerLine);
    hl::ScanRecords records(reading.file);
    for (hl::ScanRecord record; records.next(record);) writer.folder(again, record);
    writer.end(again, scan);
    require(again == bytes);
    return 0;
}
