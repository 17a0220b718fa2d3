// What passes between the window and the helper that decodes pictures and pages: requests as lines of text,
// answers as a header with bytes behind it. Both sides are on one machine and of one build. The window trusts
// no number of an answer before it has compared it with what it asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/picture_size.h"

namespace hl {

constexpr const char* kPictureHelper = "harborlantern-preview";
constexpr const char* kPagesHelper = "harborlantern-preview-pdf";
/// Where a helper finds the file.
constexpr int kHelperFile = 3;

/// Bytes of one picture that passes, and sides of it.
constexpr std::uint32_t kMaxPictureBytes = 96U << 20;
constexpr int kMaxPictureSide = 32767;
/// Pages of a document that are shown.
constexpr std::uint32_t kMaxPages = 100'000;
/// Of a page so many units of the box are shown, and drawn; the rest of a higher one is squeezed into them.
constexpr int kHighestPage = 20'000;

/// A picture: `box` is the room for it, and `scale` the device's pixels in one unit of the box, in
/// thousandths. A page: the width of the box counts alone.
struct PreviewRequest {
    std::uint32_t page = 0;
    PictureSize box;
    int scale = 1000;
    bool trimmed = false;  ///< Of a picture: without what is of one colour around it.
};
std::string requestLine(const PreviewRequest& request);
/// Nothing for a line that is none, or that asks for sizes below 1 or above the largest.
std::optional<PreviewRequest> requestOf(std::string_view line);

enum class PreviewAnswer : std::uint32_t {
    kFailed,   ///< `bytes` of text: why. Of a page alone if others can follow.
    kPicture,  ///< Pixels, 0xAARRGGBB premultiplied, rows without gaps.
    kPages,    ///< PageSize for each page.
};

struct AnswerHeader {
    PreviewAnswer kind = PreviewAnswer::kFailed;
    std::uint32_t page = 0;
    std::int32_t width = 0, height = 0;            ///< Pixels.
    std::int32_t drawnWidth = 0, drawnHeight = 0;  ///< Units of the box.
    std::uint32_t bytes = 0;                       ///< That follow.
};

struct PageSize {
    float width = 0, height = 0;  ///< Points.
};

/// Whether the numbers of the header make sense with each other.
bool isSound(const AnswerHeader& header);

}  // namespace hl
