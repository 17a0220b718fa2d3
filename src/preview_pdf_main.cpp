// This helper decodes pages of PDF documents for the preview. The file is open when it starts; requests come
// on standard input and answers go to standard output (platform/preview_protocol.h).
#include "platform/linux/preview/preview_confinement.h"
#include "platform/preview_protocol.h"
#include "platform/qt/preview/preview_pdf_decoder.h"

int main(int argc, char** argv) {
    constexpr std::uint64_t kMemory = std::uint64_t{1} << 30;
    constexpr unsigned kSeconds = 10;
    hl::confineHelper(kMemory);
    return hl::answerForPdf(argc, argv, hl::kHelperFile, [] { hl::allowSeconds(kSeconds); });
}
