// What a command has taken from the disk, and how report, drives, lists and preview come to show it: as after
// a fresh scan, but that lists only lose rows. Lives as long as the command. Thread of the logic only.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "fileops/file_run.h"

namespace hl {

class ReportChanges;

class Gone {
  public:
    /// `recycled`: files keep all their names, of which one lies in the trash now.
    Gone(const FileOps& ops, bool recycled) : ops_(ops), recycled_(recycled) {}

    /// To be called before it is removed, while it can still be looked at.
    void about(const std::string& path, bool folder);
    /// It is not there any more.
    void file(const std::string& path) { files_.insert(path); }
    void folder(const std::string& path) { folders_.insert(path); }
    /// It lies in the trash now, at this path (FileOperations::recycle), which the report may show.
    void trashed(const std::string& now, bool folder);
    /// The folder is there, and perhaps less in it.
    void part(const std::string& path) { parts_.insert(path); }
    /// Whether it went, by itself or with a folder above it.
    bool went(const std::string& path) const;

    /// Brings the report up to date. REQUIRES: the window is locked by a FileRun.
    void readWhatIsLeft();
    /// The rest, once the window is free. Messages run at its end.
    void show();

  private:
    using Paths = std::set<std::string, std::less<>>;

    void readTrash(ReportChanges& changes) const;
    static bool isIn(const Paths& folders, std::string_view path);
    bool nothing() const { return files_.empty() && folders_.empty() && parts_.empty(); }
    void takeNames();
    void followReport();
    Row nearestRow(std::string path) const;

    const FileOps& ops_;
    const bool recycled_;
    Paths files_, folders_, parts_;
    Paths trashes_, trashed_;  ///< The folders of the trash, and folders that lie in it now.
    /// Files that count once whatever their number of names, or folders with such files.
    Paths linked_;
    std::string current_;  ///< Folder of the row that was current; empty for none.
};

}  // namespace hl
