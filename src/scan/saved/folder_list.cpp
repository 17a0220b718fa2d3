#include "scan/saved/folder_list.h"

#include <algorithm>

namespace hl {

FolderList FolderList::of(const ScanFile& file) {
    FolderList list;
    list.folders_.reserve(file.count);
    struct Open {
        std::uint32_t place;
        std::uint64_t left;  ///< Folders directly in it that are still to come.
    };
    std::vector<Open> open;
    ScanRecords records(file);
    for (ScanRecord record; records.next(record);) {
        const std::uint32_t place = list.size();
        list.add(record, open.empty() ? kNone : open.back().place, file.scan->header.device);
        if (!open.empty() && --open.back().left == 0) open.pop_back();
        if (record.children > 0) open.push_back({place, record.children});
    }
    list.sortByNames();
    list.closeTrees();
    return list;
}

FolderList FolderList::of(const ScanContext& scan, Row source) {
    const SourceFacts* facts = scan.facts->sourceOf(source);
    FolderList list;
    std::vector<std::uint32_t> open;
    ReportRecords records(scan, source, nullptr, RecordOrder::kByName);
    for (ScanRecord record; records.next(record);) {
        open.resize(records.level());
        const std::uint32_t place = list.size();
        list.add(record, open.empty() ? kNone : open.back(), facts == nullptr ? 0 : facts->device);
        list.folders_.back().row = records.row();
        open.push_back(place);
    }
    list.closeTrees();
    return list;
}

void FolderList::add(const ScanRecord& record, std::uint32_t parent, std::uint64_t disk) {
    if (parent != kNone) disk = disks_[parent];
    if ((record.flags & kScanOtherDevice) != 0) disk = record.device;
    ListedFolder& folder = folders_.emplace_back();
    folder.inode = record.inode;
    folder.created = record.created;
    folder.own = record.own;
    folder.flags = record.flags;
    folder.parent = parent;
    folder.nameOffset = names_.size();
    folder.nameLength = static_cast<std::uint16_t>(record.name.size());
    names_ += record.name;
    disks_.push_back(disk);
    folder.onSourceDisk = disk == disks_.front();
}

// Puts the folders in the order of their paths; a folder is already in front of what lies in it.
void FolderList::sortByNames() {
    std::vector<std::uint32_t> first(folders_.size() + 1, 0), children(folders_.size());
    for (const ListedFolder& folder : folders_)
        if (folder.parent != kNone) ++first[folder.parent + 1];
    for (std::size_t i = 1; i < first.size(); ++i) first[i] += first[i - 1];
    std::vector<std::uint32_t> next(first.begin(), first.end() - 1);
    for (std::uint32_t i = 0; i < size(); ++i)
        if (folders_[i].parent != kNone) children[next[folders_[i].parent]++] = i;
    const auto byName = [this](std::uint32_t a, std::uint32_t b) { return name(a) > name(b); };
    for (std::uint32_t i = 0; i < size(); ++i)
        std::sort(children.begin() + first[i], children.begin() + first[i + 1], byName);

    std::vector<ListedFolder> sorted;
    sorted.reserve(folders_.size());
    std::vector<std::uint32_t> places(folders_.size());
    std::vector<std::uint32_t> open;  // Those whose names come first are at its end.
    if (size() > 0) open.push_back(0);
    while (!open.empty()) {
        const std::uint32_t from = open.back();
        open.pop_back();
        places[from] = static_cast<std::uint32_t>(sorted.size());
        ListedFolder& folder = sorted.emplace_back(folders_[from]);
        if (folder.parent != kNone) folder.parent = places[folder.parent];
        open.insert(open.end(), children.begin() + first[from], children.begin() + first[from + 1]);
    }
    folders_ = std::move(sorted);
}

void FolderList::closeTrees() {
    for (std::uint32_t i = size(); i-- > 0;) {
        ListedFolder& folder = folders_[i];
        folder.end = std::max(folder.end, i + 1);
        // A mount with something in it was read.
        if (folder.end > i + 1 || folder.own.files > 0) folder.flags &= ~std::uint32_t{kScanMount};
        if (folder.parent == kNone) continue;
        ListedFolder& parent = folders_[folder.parent];
        parent.end = std::max(parent.end, folder.end);
    }
    disks_ = {};
}

std::string FolderList::path(std::uint32_t place) const {
    std::vector<std::uint32_t> way;
    for (; place != 0; place = folders_[place].parent) way.push_back(place);
    std::string path;
    for (auto part = way.rbegin(); part != way.rend(); ++part) {
        if (!path.empty()) path += '/';
        path += name(*part);
    }
    return path;
}

}  // namespace hl
