// Opens files for the preview on disks that may not answer. For the thread of the logic only; each disk has
// one helper thread.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/preview_tools.h"

namespace hl {

class Descriptor;

std::unique_ptr<OpenFile> makeOpenFile(Descriptor file, std::uint64_t size);

/// Opens the file without changing its time of access. What is no regular file is kUnsuited.
Result<std::unique_ptr<OpenFile>> openForPreview(const std::string& path);

class PreviewOpenings {
  public:
    /// Larger files are not read into memory completely.
    static constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
    static constexpr std::uint64_t kBeginning = std::uint64_t{1} << 20;

    /// Begins to open a file. Earlier requests for the same disk are dropped, since nobody waits for them any
    /// more.
    std::unique_ptr<PreviewOpening> begin(std::uint64_t disk, const std::string& path, FilePart part);

  private:
    struct Request;
    struct Desk;
    class Opening;
    static void work(Desk& desk);

    std::map<std::uint64_t, std::shared_ptr<Desk>> desks_;  ///< The keys are the disks.
};

}  // namespace hl
