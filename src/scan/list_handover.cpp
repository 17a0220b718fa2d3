#include "scan/list_handover.h"

#include <algorithm>
#include <cstring>

#include "scan/records.h"

namespace hl {

namespace {

// The type is asked for before the row is added, because messages may run meanwhile.
Row addRow(ScanContext& scan, const ListTable& table, Grid& list, FoundFile file) {
    const std::string type =
        scan.types != nullptr ? scan.types->of(std::string(file.folder).append(file.name)) : std::string();
    file.type = type;
    const Row row = list.addRow(kNoRow, file.name);
    fillRow(table, list, row, file);
    return row;
}

void offerToTopList(ScanContext& scan, const FoundFile& file) {
    ScanState& state = scan.state;
    const SizeValue size = SizeValue::fromBytes(file.entry.size);
    if (state.top.count >= state.top.maxCount && size <= state.top.smallest) return;
    addRow(scan, kTopTable, scan.lvwTOP, file);
    state.top.count = addCount(state.top.count, 1);
    if (size > state.top.largest) {
        state.top.largest = size;
    } else if (size < state.top.smallest) {
        state.top.smallest = size;
    }
    if (state.top.count - kTopTrimSlack <= state.top.maxCount) return;
    trimTopList(scan);
    // A list whose wanted length is 0 has no last row: then only a file larger than all before is still
    // added.
    if (scan.lvwTOP.rowCount() == 0) {
        state.top.smallest = state.top.largest;
        return;
    }
    const Row last = scan.lvwTOP.rowAt(scan.lvwTOP.rowCount() - 1);
    state.top.smallest =
        SizeValue::fromBytes(static_cast<std::uint64_t>(scan.lvwTOP.number(last, kFileSize)));
}

}  // namespace

std::string linkKey(const Entry& entry) {
    std::string key(sizeof entry.device + sizeof entry.inode, '\0');
    std::memcpy(key.data(), &entry.device, sizeof entry.device);
    std::memcpy(key.data() + sizeof entry.device, &entry.inode, sizeof entry.inode);
    return key;
}

void handOverFile(ScanContext& scan, const FoundFile& file) {
    if (scan.options.CreateListTOP == 1) offerToTopList(scan, file);
    if (scan.options.CreateListHardlink != 1 || file.links <= 0) return;
    const Row row = addRow(scan, kHardlinksTable, scan.lvwHardlinks, file);
    scan.lvwHardlinks.setNumber(row, kFileDevice, static_cast<std::int32_t>(file.entry.device));
}

void handOverJunction(ScanContext& scan, std::string_view path, std::string_view target, std::uint32_t tag) {
    const Row row = scan.lvwJunctions.addRow(kNoRow, path);
    scan.lvwJunctions.setCellText(row, kJunctionTarget, target);
    const bool link = tag == kTagSymbolicLink;
    scan.lvwJunctions.setPicture(row, link ? kPictureLink : kPictureMountPoint);
    scan.lvwJunctions.setNumber(row, kJunctionType, link ? 0 : 1);
}

void sortHardlinks(Grid& lvwHardlinks) {
    LevelSort& sort = lvwHardlinks.levelSort(0);
    const LevelSort wanted = sort;
    if (wanted.key == kFileCells[kFileId].key) {
        sort = {.key = std::string(kFileCells[kFileDevice].key), .descending = wanted.descending};
        lvwHardlinks.sortLevels(0);
        sort = wanted;
        sort.keepsTies = true;
    }
    lvwHardlinks.sortLevels(0);
    sort = wanted;
}

std::string topTitle(const ScanContext& scan) {
    if (scan.state.top.source.empty()) return {};
    return scan.texts.TL(3723, "%1 größten Dateien von '%2'",
                         {formatCount(scan.lvwTOP.rowCount(), scan.numbers), visible(scan.state.top.source)});
}

void trimTopList(ScanContext& scan) {
    LevelSort& sort = scan.lvwTOP.levelSort(0);
    sort.keepsTies = true;  // Of files of the same size those found first stay.
    scan.lvwTOP.sortLevels(0);
    sort.keepsTies = false;
    scan.lvwTOP.removeFrom(static_cast<std::size_t>(std::max(0, scan.state.top.maxCount)));
}

}  // namespace hl
