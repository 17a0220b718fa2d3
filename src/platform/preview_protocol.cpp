#include "platform/preview_protocol.h"

#include <cstdio>

namespace hl {

namespace {

constexpr std::uint32_t kMaxReason = 4096;
constexpr int kMaxScale = 16'000;

bool isSide(int side) {
    return side >= 1 && side <= kMaxPictureSide;
}

}  // namespace

std::string requestLine(const PreviewRequest& request) {
    return std::to_string(request.page) + " " + std::to_string(request.box.width) + " " +
           std::to_string(request.box.height) + " " + std::to_string(request.scale) +
           (request.trimmed ? " 1\n" : " 0\n");
}

std::optional<PreviewRequest> requestOf(std::string_view line) {
    PreviewRequest request;
    int trimmed = 0;
    const int read = std::sscanf(std::string(line).c_str(), "%u %d %d %d %d", &request.page,
                                 &request.box.width, &request.box.height, &request.scale, &trimmed);
    request.trimmed = trimmed == 1;
    const bool sound = read == 5 && isSide(request.box.width) && isSide(request.box.height) &&
                       request.scale >= 100 && request.scale <= kMaxScale;
    return sound ? std::optional(request) : std::nullopt;
}

bool isSound(const AnswerHeader& header) {
    switch (header.kind) {
        case PreviewAnswer::kFailed:
            return header.bytes <= kMaxReason;
        case PreviewAnswer::kPages:
            return header.bytes % sizeof(PageSize) == 0 && header.bytes / sizeof(PageSize) <= kMaxPages;
        case PreviewAnswer::kPicture:
            break;
    }
    return header.kind == PreviewAnswer::kPicture && isSide(header.width) && isSide(header.height) &&
           isSide(header.drawnWidth) && isSide(header.drawnHeight) && header.bytes <= kMaxPictureBytes &&
           std::uint64_t{4} * static_cast<std::uint32_t>(header.width) *
                   static_cast<std::uint32_t>(header.height) ==
               header.bytes;
}

}  // namespace hl
