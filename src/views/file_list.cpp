#include "views/file_list.h"

#include "base/scope_exit.h"
#include "robustness/trap.h"
#include "scan/file_columns.h"
#include "scan/yield.h"

namespace hl {

namespace {

void addFileRow(Grid& list, const Listing& listing, std::size_t index, const std::string& type) {
    static constexpr EntryDetails kNoDetails;
    const Entry& entry = listing.entries[index];
    const FoundFile file = {.entry = entry,
                            .details = listing.details == nullptr ? kNoDetails : listing.details[index],
                            .name = listing.name(entry),
                            .folder = {},
                            .type = type};
    fillRow(kFilesTable, list, list.addRow(kNoRow, file.name), file);
}

/// One filling of the list; messages run while it reads or waits. Esc and Stop end it, and so does a later
/// filling, because then the list has other rows.
class Filling final : public WaitCallback {
  public:
    explicit Filling(ScanContext& scan)
        : state_(scan.state), run_(++scan.state.fileList.run), yield_(scan.state, scan.pump) {}

    bool isLatest() const { return state_.fileList.run == run_; }
    bool goesOn() {
        yield_.perEntry();
        return isLatest() && state_.CancelState == kCancelNone;
    }
    bool goOnWaiting() override {
        return yield_.goOnWaiting() && isLatest() && state_.CancelState == kCancelNone;
    }

  private:
    ScanState& state_;
    const std::uint64_t run_;
    Yield yield_;
};

// Returns true if all files were read.
bool readRows(ScanContext& scan, Grid& list, const std::string& folder, Filling& filling, SizeValue& total) {
    const auto reader = scan.fileSystem.read(
        folder, {.recursive = false, .wantTimes = true, .wantFileNames = true}, &filling);
    while (const auto listing = reader->next()) {
        for (std::size_t i = 0; i < listing->count; ++i) {
            if (!filling.goesOn()) return false;
            const Entry& entry = listing->entries[i];
            if ((entry.attributes & kAttributeDirectory) != 0) continue;
            // Messages may have run while the file was looked into.
            std::string type;
            if (scan.types != nullptr)
                type = scan.types->of(std::string(folder).append(listing->name(entry)));
            if (!filling.isLatest()) return false;
            addFileRow(list, *listing, i, type);
            total += SizeValue::fromBytes(entry.size);
        }
        if (!listing->more) return !listing->endError && !listing->error;
    }
    return false;
}

}  // namespace

bool List_Files_ScanFolderR(ScanContext& scan, Grid& lvwFiles, const std::string& path,
                            SizeValue& FilesTotalSize) {
    return guarded(scan.diagnostics, [&] {
        scan.state.CancelState = kCancelNone;
        Filling filling(scan);
        FilesTotalSize = SizeValue();
        lvwFiles.setRedraw(false);
        // The rows must be seen even if another reading, which this one interrupted, has switched redraw off.
        const ScopeExit on([&] { lvwFiles.setRedraw(true); });
        lvwFiles.clear();
        if (scan.types != nullptr) scan.types->restart();
        const bool all = readRows(scan, lvwFiles, path, filling, FilesTotalSize);
        if (filling.isLatest()) lvwFiles.sortLevels(0);
        return all && filling.isLatest();
    });
}

}  // namespace hl
