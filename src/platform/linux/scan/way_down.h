// Knows which folders are on the way down to a folder, to recognise a circle of followed links and mounts.
// begin() runs before any helper reads; leadsBack() needs the lock of OpenFolders.
//
// The kernel recognises such a circle only along one path, while a scan opens its folders one by one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/scan/open_folders.h"

namespace hl {

class WayDown {
  public:
    /// Learns the `levels` folders right above the source, which belong to every way down. `source` is an
    /// absolute path.
    void begin(DirectoryCalls& calls, std::string source, std::uint32_t levels);
    /// Tells whether a folder above has the device and inode of this one. REQUIRES: all of them have their
    /// ids.
    bool leadsBack(const Folder* folder) const;

  private:
    std::vector<FolderId> aboveSource_;
};

}  // namespace hl
