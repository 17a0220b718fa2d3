// The helper's side of the preview: reads a file of a stranger, and answers requests for pictures of it. Runs
// in a process of its own, with no window and no QGuiApplication.
#pragma once

#include <QImage>
#include <functional>
#include <string>
#include <vector>

#include "platform/preview_protocol.h"

class QIODevice;

namespace hl {

struct DecodedPicture {
    QImage image;       ///< Null if it failed.
    PictureSize drawn;  ///< In units of the request's box.
    std::string error;
};

class PreviewDecoder {
  public:
    virtual ~PreviewDecoder() = default;
    /// Sizes of the pages; none for what has no pages. `error` says why there is nothing to show at all.
    virtual std::vector<PageSize> pages(std::string& error) = 0;
    virtual DecodedPicture decode(const PreviewRequest& request) = 0;
};

/// bmp gif ico cur jpeg png and what is like them, by their content; nothing that could name other files.
/// `file` outlives it. The picture is made smaller while it is read, where its format allows that.
DecodedPicture decodePicture(QIODevice& file, const PreviewRequest& request);

/// Answers the requests that come as lines on standard input, until that ends or a line makes no sense. The
/// status for main(). `beforeEach` runs before the sizes of the pages are asked for and in front of each
/// request.
int answerRequests(PreviewDecoder& decoder, const std::function<void()>& beforeEach);

/// All that main() of the helper for pictures does. `beforeEach` as above.
int answerForPictures(int argc, char** argv, int descriptor, const std::function<void()>& beforeEach);

}  // namespace hl
