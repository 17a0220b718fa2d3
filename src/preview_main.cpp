// The helper that decodes pictures for the preview: the file is open when it starts, requests come on
// standard input, answers go to standard output (platform/preview_protocol.h). Another thing it does is to
// try a page of the web out (platform/qt/preview_web.h).
#include <string_view>

#include "platform/linux/preview_confinement.h"
#include "platform/preview_protocol.h"
#include "platform/qt/preview_decoder.h"
#include "platform/qt/preview_web.h"

int main(int argc, char** argv) {
    constexpr std::uint64_t kMemory = std::uint64_t{1} << 30;
    constexpr unsigned kSeconds = 10;
    /// The window lays a page out once more, and takes no clicks meanwhile.
    constexpr unsigned kPageMilliseconds = 300;
    hl::confineHelper(kMemory);
    if (argc > 1 && std::string_view(argv[1]) == hl::kTryPage)
        return hl::tryPage(argc, argv, hl::kHelperFile, [] { hl::endAfter(kPageMilliseconds); });
    return hl::answerForPictures(argc, argv, hl::kHelperFile, [] { hl::allowSeconds(kSeconds); });
}
