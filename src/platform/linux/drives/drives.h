// The drives of a Linux machine: the mounted file systems that a user would call a drive. For the thread of
// the logic.
//
// These are:
// - file systems on a block device, except images that are mounted as parts of the system (squashfs);
// - file systems with a pool of devices of their own (btrfs, zfs, bcachefs, mergerfs);
// - network file systems, and folders of the host in a virtual machine;
// - a memory disk (tmpfs) where users keep files, which is not below /dev, /proc, /run, /sys or /var/lib;
// - whatever is mounted at "/", so also the overlay of a container or of a live system.
// A file that is mounted over a file is never one, nor is a mount that another one at the same place hides.
//
// A device is listed once, where it was mounted first. A pool of zfs is one device; so is each share, whoever
// serves it.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/drives.h"
#include "platform/linux/drives/drive_probe.h"
#include "platform/linux/drives/mount_table.h"

namespace hl {

struct DriveSources {
    /// Precedes /proc, /sys and /dev; empty for those of the system.
    std::string root;
    SpaceQuestion space = spaceAt;
    std::chrono::milliseconds limit = std::chrono::seconds(2);
};

class LinuxDrives final : public Drives {
  public:
    explicit LinuxDrives(DriveSources sources = {});

    std::vector<Drive> drives() override;
    std::optional<Drive> network(std::string_view unc) override;
    void ask(const Drive& drive, std::function<void(const DriveAnswer&)> answered) override;
    void takeAnswers() override { probe_.takeAnswers(); }
    int answersDescriptor() override { return probe_.descriptor(); }
    /// The number of threads that hang on dead drives.
    std::size_t hangingThreads() const { return probe_.hangingThreads(); }

  private:
    std::string root_;
    DriveProbe probe_;
};

}  // namespace hl
