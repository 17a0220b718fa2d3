#include "scan/on_disk.h"

#include "scan/records.h"

namespace hl {

namespace {

Row liveFrom(const ScanContext& scan, Row source) {
    while (source != kNoRow && isFromFile(scan, source)) source = scan.tvwPL.nextSibling(source);
    return source;
}

}  // namespace

bool isFromFile(const ScanContext& scan, Row row) {
    if (scan.facts == nullptr || row == kNoRow) return false;
    const SourceFacts* source = scan.facts->sourceOf(scan.tvwPL.rootOf(row));
    return source != nullptr && source->saved != nullptr;
}

Row firstLiveSource(const ScanContext& scan) {
    return liveFrom(scan, scan.tvwPL.firstRoot());
}

Row nextLiveSource(const ScanContext& scan, Row source) {
    return liveFrom(scan, scan.tvwPL.nextSibling(source));
}

bool isGone(const Grid& report, Row row) {
    return report.picture(row) == kPictureGone;
}

bool isOnDisk(const ScanContext& scan, Row row) {
    return !isFromFile(scan, row) && !isGone(scan.tvwPL, row);
}

std::string notOnDiskText(const ScanContext& scan, Row row) {
    if (!isFromFile(scan, row)) return scan.texts.TL(9080, "Den Ordner gibt es nicht mehr.");
    return scan.texts.TL(9056, "Die Quelle kommt aus einer Datei; auf dem Datenträger geschieht nichts.");
}

}  // namespace hl
