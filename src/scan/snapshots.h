// Decides which snapshots a report leaves out.
//
// A snapshot holds again what its origin held, without taking room for it. So a read-only one whose origin is
// in the same source is a row without files and folders, with a note that names the origin. Any other counts:
// one that can be written holds something of its own; without its origin it is all that shows what it holds.
//
// An origin may be met after its snapshot. Therefore the reader puts such snapshots off; once all else is
// read, those whose origin was not met are read into their rows, one after another, which is the same as if
// they had been read in their place. For one whose origin lies in a snapshot that is itself put off, what was
// met when its turn comes decides. For the thread of the logic.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "scan/scan_context.h"

namespace hl {

/// The reading of a folder or source, as far as subvolumes matter.
class SnapshotReading {
  public:
    struct PutOff {
        Row row = kNoRow;
        std::string path;  ///< With a separator at the end.
        Subvolume is;
    };

    /// `row` is what is read, and `path` its path with a separator at the end. Forgets what the source knows
    /// of subvolumes there. The context must outlive it.
    SnapshotReading(ScanContext& scan, Row row, std::string_view path);

    /// Sets what a reader is asked for.
    void choose(ReadOptions& options) const;
    /// A folder is entered: `block` is its first one, and `row` its row.
    void entered(const Listing& block, std::string_view path, Row row);
    /// Returns the next snapshot that has to be read after all; nothing at the end. Those before it are left
    /// out; after Stop the others are marked as incomplete.
    std::optional<PutOff> next();
    /// A snapshot was read into its row: adds what it holds to that row, to the rows between it and the one
    /// that is read, and to `totals`, which are those of that one.
    void wasRead(const PutOff& snapshot, const ScanTotals& found, ScanTotals& totals);
    /// The reading is over. If other snapshots of the source are to be left out than before, sets
    /// SnapshotState::moved.
    void finish();

  private:
    void leaveOut(const PutOff& snapshot, const std::string& origin);
    void countNotRead(Row row);

    ScanContext& scan_;
    const Row top_;
    const Row root_;
    const std::string folder_;  ///< What is read, without a separator at the end.
    const bool wanted_;
    PutOff reading_;  ///< The snapshot that is read after all; without a row before the first.
    SubvolumesMet before_;
    SubvolumesMet& met_;  ///< Those of the source; ScanState has them.
    std::deque<PutOff> putOff_;
};

/// Tells whether the row is that of a folder that is left out: a snapshot, or one that a rule names.
bool isLeftOut(const Grid& report, Row row);

/// A folder is gone from the source of `root`. Returns true if a snapshot has lost its origin, so that the
/// source has to be read again.
bool forgetSubvolumes(ScanContext& scan, Row root, std::string_view folder);
/// A folder has another path now, in all sources; the rows have it already.
void renameSubvolumes(ScanContext& scan, std::string_view from, std::string_view to);

}  // namespace hl
