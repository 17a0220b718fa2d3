#include "scan/live_sources.h"

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

std::string fromFileText(const Texts& texts) {
    return texts.TL(9056, "Die Quelle kommt aus einer Datei; auf dem Datenträger geschieht nichts.");
}

}  // namespace hl
