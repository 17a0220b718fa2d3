// The real system calls, which take folders whose names begin with "sub" for roots of subvolumes.
#pragma once

#include <cstring>

#include "platform/linux/scan/subvolumes.h"
#include "support/recording_calls.h"

namespace hl::test {

/// "sub ro" is a read-only snapshot; any other can be written.
class SubvolumeCalls : public RecordingCalls {
  public:
    std::atomic<int> asked = 0;  ///< How often it was asked for a subvolume.

    long readEntries(int folder, void* buffer, std::size_t bytes) override {
        const long got = RecordingCalls::readEntries(folder, buffer, bytes);
        // The first record is that of the folder itself; it begins with the inode.
        if (got > 0 && nameOf(folder).starts_with("sub"))
            std::memcpy(buffer, &kSubvolumeInode, sizeof kSubvolumeInode);
        return got;
    }
    int subvolume(int folder, Subvolume& out) override {
        ++asked;
        out = {.id = {0, 1}, .origin = {0, 2}, .readOnly = nameOf(folder) == "sub ro"};
        return 0;
    }

  private:
    std::string nameOf(int folder) { return std::filesystem::path(pathOf(folder)).filename(); }
};

}  // namespace hl::test
