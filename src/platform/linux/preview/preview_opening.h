// Opens files for the preview on disks that may not answer. Thread of the logic only; one helper a disk stays
// behind it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/preview_tools.h"

namespace hl {

class Descriptor;

std::unique_ptr<OpenFile> makeOpenFile(Descriptor file, std::uint64_t size);

/// The file, opened for a look. Null with the system's error code, or with 0 for what is no regular file.
std::unique_ptr<OpenFile> openForPreview(const std::string& path, int& error);

class PreviewOpenings {
  public:
    /// Larger files are not read whole.
    static constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
    static constexpr std::uint64_t kBeginning = std::uint64_t{1} << 20;

    /// What was asked of the same disk before is dropped: nobody looks at it any more.
    std::unique_ptr<PreviewOpening> begin(std::uint64_t disk, const std::string& path, bool beginning);

  private:
    struct Request;
    struct Desk;
    class Opening;
    static void work(Desk& desk);

    std::map<std::uint64_t, std::shared_ptr<Desk>> desks_;  ///< By disk.
};

}  // namespace hl
