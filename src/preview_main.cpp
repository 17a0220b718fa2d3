// The helper that decodes pictures for the preview: the file is open when it starts, requests come on
// standard input, answers go to standard output (platform/preview_protocol.h).
#include "platform/linux/preview_confinement.h"
#include "platform/preview_protocol.h"
#include "platform/qt/preview_decoder.h"

int main(int argc, char** argv) {
    constexpr std::uint64_t kMemory = std::uint64_t{1} << 30;
    constexpr unsigned kSeconds = 10;
    hl::confineHelper(kMemory);
    return hl::answerForPictures(argc, argv, hl::kHelperFile, [] { hl::allowSeconds(kSeconds); });
}
