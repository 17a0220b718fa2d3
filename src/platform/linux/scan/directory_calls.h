// The system calls that reading folders consists of.
//
// Everything is relative to an open folder; no call gets a path that grows with the depth. Tests wrap it to
// record calls, to make them fail, and to change something between two calls. Safe from several threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/folder_reader.h"
#include "platform/subvolume.h"

struct statx;

namespace hl {

class DirectoryCalls {
  public:
    virtual ~DirectoryCalls() = default;
    // Each returns a negative system error code if it fails.

    /// Opens the source of a scan; links and mounts are followed. The path may have any length.
    virtual int openSource(const std::string& path);
    /// Opens `name` below the open folder `parent`. A link is an error (-ELOOP or -ENOTDIR) unless
    /// `followLinks`; the root of another mount is -EXDEV unless `crossMounts`.
    virtual int openChild(int parent, const char* name, bool followLinks, bool crossMounts);
    /// Opens the folder `levels` levels above the open folder. REQUIRES: levels is 1 to 1000.
    virtual int openAbove(int folder, unsigned levels);
    /// Fills `buffer` with records of the kernel's form (linux_dirent64); returns 0 at the end.
    virtual long readEntries(int folder, void* buffer, std::size_t bytes);
    /// Calls statx for an entry of the open folder, or for the folder itself if the name is empty.
    virtual int look(int folder, const char* name, bool followLinks, unsigned mask, struct statx& out);
    /// Returns the path of the open folder, by names that are no links; empty if it is too long for the
    /// system. No file system is asked.
    std::string pathOf(int folder);
    /// Reads the first bytes of a regular file of the open folder; a link is not followed. Returns how many
    /// were read.
    virtual long beginning(int folder, const char* name, char* buffer, std::size_t bytes);
    virtual long readLink(int folder, const char* name, char* buffer, std::size_t bytes);
    /// Tells whether `name` leads to a folder, links followed, if nothing on the way leaves the mount of the
    /// open folder: 1 or 0. Otherwise, and where the system cannot tell, it is -EXDEV.
    virtual int leadsToFolderHere(int folder, const char* name);
    virtual int identity(int folder, FolderId& id);
    /// As subvolumeOf(), for a folder with the inode kSubvolumeInode.
    virtual int subvolume(int folder, Subvolume& out);
    /// Continues reading entries behind the one with this cookie.
    virtual int seek(int folder, std::int64_t cookie);
    virtual void close(int folder);
    /// Returns how often this thread has waited for something (a disk, a server) so far.
    virtual std::uint64_t timesWaited();
};

/// Looks at an entry of the open folder, or at the folder itself if the name is empty. Returns nothing if
/// that fails.
std::optional<FolderFacts> factsOfFolder(DirectoryCalls& calls, int folder, const char* name);

}  // namespace hl
