#include "mainwindow/find_run.h"

#include <algorithm>
#include <utility>

#include "base/date_format.h"
#include "base/path.h"
#include "base/text.h"
#include "mainwindow/main_form.h"

namespace hl {

namespace {

// In milliseconds. The rows are shown when the first is there, and then less and less often, since many rows
// take a while to show.
constexpr std::uint64_t kFindStatusInterval = 100;
constexpr std::uint64_t kFirstRows = 50;
constexpr std::uint64_t kRowsInterval = 500;
constexpr std::size_t kRowsPerMs = 1000;

}  // namespace

FindRun::FindRun(MainForm& form) : form_(form), list_(form.session.lvwFind) {}

FindEnd FindRun::run(const FindFilter& filter, const std::vector<FindPlace>& places) {
    const PathRules& paths = form_.services().paths;
    for (const FindPlace& place : places)
        for (const FindPlace& other : places)
            overlaps_ = overlaps_ || (&place != &other && liesIn(place.folder, other.folder, paths));
    list_.clear();
    if (form_.scan.types != nullptr) form_.scan.types->restart();
    form_.window->grid(GridId::kFind).refresh();
    list_.setAccess(GridAccess::kLooking);
    list_.setRedraw(false);
    nextShow_ = form_.services().pump.GetTickCount() + kFirstRows;
    const std::int64_t started = secondsNow();
    FindEnd end = FindEnd::kDone;
    for (const FindPlace& place : places) {
        if (end != FindEnd::kDone) break;
        end = findFiles(form_.scan, place.folder,
                        {.filter = filter,
                         .started = started,
                         .detail = FindDetail::kAll,
                         .level = place.level,
                         .elsewhere = place.elsewhere},
                        *this);
    }
    list_.sortLevels(0);
    return end;
}

bool FindRun::isKnown(const FoundFile& file) {
    return overlaps_ && !known_.insert(std::string(file.folder).append(file.name)).second;
}

// The types of files may be looked up in the files; messages run meanwhile.
bool FindRun::found(const FoundFile& file) {
    if (isKnown(file)) return true;
    if (list_.rowCount() >= FindControl::kMostRows) return false;
    const Services& services = form_.services();
    FoundFile row = file;
    const std::string type = form_.scan.types != nullptr
                                 ? form_.scan.types->of(std::string(file.folder).append(file.name))
                                 : std::string();
    const std::string owner = services.owners != nullptr ? services.owners->nameOf(file.details.owner)
                                                         : "#" + std::to_string(file.details.owner);
    row.type = type;
    row.owner = owner;
    fillRow(kFindTable, list_, list_.addRow(kNoRow, file.name), row);
    if (services.pump.GetTickCount() >= nextShow_) showRows();
    return true;
}

void FindRun::showRows() {
    list_.setRedraw(true);
    form_.window->grid(GridId::kFind).refresh();
    list_.setRedraw(false);
    form_.services().pump.PumpMessages();  // They are painted now.
    nextShow_ = form_.services().pump.GetTickCount() +
                std::max<std::uint64_t>(kRowsInterval, list_.rowCount() / kRowsPerMs);
}

void FindRun::folderEntered(std::string_view path) {
    const std::uint64_t tick = form_.services().pump.GetTickCount();
    if (tick >= lastStatusTick_ + kFindStatusInterval) {
        lastStatusTick_ = tick;
        form_.status.setFirst(std::string(path) + "*.*");
    }
    if (tick >= nextShow_ && list_.rowCount() > 0) showRows();
}

void FindRun::notRead(std::string_view path, const std::string& reason) {
    const Services& services = form_.services();
    services.log.LogProtokoll("ERROR: " + reason + " (" + visible(path) + ")");
    if (failure_.empty())
        failure_ = services.texts.TL(9022, "Nicht gelesen: %1: %2", {visible(path), reason});
}

}  // namespace hl
