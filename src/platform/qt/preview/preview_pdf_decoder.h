// Draws pages of a PDF as pictures, for the helper. It needs Qt's PDF library. For the helper's only thread.
#pragma once

#include <QFile>
#include <QPdfDocument>

#include "platform/qt/preview/preview_decoder.h"

namespace hl {

class PdfDecoder final : public PreviewDecoder {
  public:
    /// `descriptor` is open for reading and stays the caller's.
    explicit PdfDecoder(int descriptor);
    std::vector<PageSize> pages(std::string& error) override;
    DecodedPicture decode(const PreviewRequest& request) override;

  private:
    QFile file_;
    QPdfDocument document_;
};

/// Does everything that main() of the helper for PDF does, as answerForPictures does it for pictures.
/// `beforeEach` also runs before the document is opened, which reads much of it.
int answerForPdf(int argc, char** argv, int descriptor, const std::function<void()>& beforeEach);

}  // namespace hl
