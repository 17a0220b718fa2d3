// Remembers what a command took from the disk, and makes the report, drives, lists and preview show it. The
// result is that of a fresh scan, except that lists only lose rows. Lives as long as the command. For the
// thread of the logic only.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "fileops/file_run.h"
#include "fileops/undo_steps.h"

namespace hl {

class ReportChanges;

class Gone {
  public:
    /// With `recycled`, files keep all their names, one of which is in the trash now.
    /// `ops` must outlive it.
    Gone(const FileOps& ops, bool recycled) : ops_(ops), recycled_(recycled) {}

    /// Is called before the path is removed, while it can still be looked at.
    void about(const std::string& path, bool folder);
    /// Notes that the file or folder is no longer there.
    void file(const std::string& path) { files_.insert(path); }
    void folder(const std::string& path) { folders_.insert(path); }
    /// Notes that it is now in the trash, a place that the report may show.
    void trashed(TrashedItem item);
    /// Notes that the folder is still there, but perhaps with less in it.
    void part(const std::string& path) { parts_.insert(path); }
    /// Tells whether the path went, by itself or with a folder above it.
    bool went(const std::string& path) const;

    /// Notes that what is in the trash had the name that this has now.
    void renamed(RenamedItem item) { step_.renamed = std::move(item); }
    /// Returns the folder of the trash that something went to last; empty if nothing did.
    const std::string& trash() const { return trash_; }

    /// Brings the report up to date; what went to the trash is a step of `ops.undo` then. REQUIRES: the
    /// window is locked by a FileRun.
    void readWhatIsLeft();
    /// Updates the lists, panels and preview; the window must be free. Messages run at its end.
    void show();

  private:
    using Paths = std::set<std::string, std::less<>>;

    void readTrash(ReportChanges& changes) const;
    static bool isIn(const Paths& folders, std::string_view path);
    bool nothing() const { return files_.empty() && folders_.empty() && parts_.empty(); }
    void findNext(Row current);
    void takeNames();
    void followReport();
    Row nearestRow(std::string path) const;

    const FileOps& ops_;
    const bool recycled_;
    Paths files_, folders_, parts_;
    Paths trashes_, trashed_;  ///< The folders of the trash, and folders that are in it now.
    /// Files that count only once however many names they have, or folders with such files.
    Paths linked_;
    std::string current_;  ///< The folder of the row that was current; empty for none.
    std::string next_;     ///< The folder whose row is current then; empty for the one above.
    UndoStep step_;
    std::string trash_;
};

}  // namespace hl
