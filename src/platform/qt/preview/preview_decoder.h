// The helper's side of the preview: reads a file from a stranger, and answers requests for pictures of it. It
// runs in a process of its own, without a window and without a QGuiApplication.
#pragma once

#include <QImage>
#include <functional>
#include <string>
#include <vector>

#include "platform/preview_protocol.h"

class QIODevice;

namespace hl {

struct DecodedPicture {
    QImage image;       ///< Null if decoding failed.
    PictureSize drawn;  ///< In units of the request's box.
    std::string error;
};

class PreviewDecoder {
  public:
    virtual ~PreviewDecoder() = default;
    /// Returns the sizes of the pages, if there are any. `error` receives why there is nothing to show at
    /// all.
    virtual std::vector<PageSize> pages(std::string& error) = 0;
    virtual DecodedPicture decode(const PreviewRequest& request) = 0;
};

/// Decodes bmp gif ico cur jpeg png and similar formats, recognised by their content; none of them can name
/// other files. `file` must outlive the call. The picture is reduced while it is read, if its format allows
/// that.
DecodedPicture decodePicture(QIODevice& file, const PreviewRequest& request);

/// Answers the requests that come as lines on standard input, until that ends or a line makes no sense.
/// Returns the status for main(). `beforeEach` runs before the sizes of the pages are asked for and before
/// each request.
int answerRequests(PreviewDecoder& decoder, const std::function<void()>& beforeEach);

/// Does everything that main() of the helper for pictures does. `beforeEach` is called as in answerRequests.
int answerForPictures(int argc, char** argv, int descriptor, const std::function<void()>& beforeEach);

}  // namespace hl
