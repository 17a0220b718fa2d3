// What the window and the helper that decodes pictures and pages send each other: requests are lines of text;
// answers are a header followed by bytes. Both sides are on one machine and from one build. The window trusts
// no number in an answer before comparing it with its request.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/picture_size.h"

namespace hl {

constexpr const char* kPictureHelper = "harborlantern-preview";
constexpr const char* kPagesHelper = "harborlantern-preview-pdf";
/// The descriptor of the file in a helper.
constexpr int kHelperFile = 3;

/// The limits of one picture that is sent: its bytes, and each of its sides in pixels.
constexpr std::uint32_t kMaxPictureBytes = 96U << 20;
constexpr int kMaxPictureSide = 32767;
/// The largest number of pages of a document that is shown.
constexpr std::uint32_t kMaxPages = 100'000;
/// The largest height of a page, in units of the box; a higher page is squeezed into it.
constexpr int kHighestPage = 20'000;

/// For a picture, `box` is the room for it, and `scale` is the number of device pixels in one unit of the
/// box, in thousandths. For a page, only the width of the box counts.
struct PreviewRequest {
    std::uint32_t page = 0;
    PictureSize box;
    int scale = 1000;
    bool trimmed = false;  ///< For a picture: leave out a border of a single colour.
};
std::string requestLine(const PreviewRequest& request);
/// Returns nothing for a line that is no request, or that asks for sizes below 1 or above the largest.
std::optional<PreviewRequest> requestOf(std::string_view line);

enum class PreviewAnswer : std::uint32_t {
    kFailed,   ///< `bytes` of text tell why. Concerns only the page if others can follow.
    kPicture,  ///< The pixels, 0xAARRGGBB premultiplied, in rows without gaps.
    kPages,    ///< One PageSize for each page.
};

struct AnswerHeader {
    PreviewAnswer kind = PreviewAnswer::kFailed;
    std::uint32_t page = 0;
    std::int32_t width = 0, height = 0;            ///< In pixels.
    std::int32_t drawnWidth = 0, drawnHeight = 0;  ///< In units of the box.
    std::uint32_t bytes = 0;                       ///< The number of bytes that follow.
};

struct PageSize {
    float width = 0, height = 0;  ///< In points.
};

/// Tells whether the numbers of the header are consistent.
bool isSound(const AnswerHeader& header);

}  // namespace hl
