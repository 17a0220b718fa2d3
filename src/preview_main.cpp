// This helper decodes pictures for the preview. The file is open when it starts; requests come on standard
// input and answers go to standard output (platform/preview_protocol.h). It can also try out a page of the
// web (platform/qt/preview/preview_web.h).
#include <string_view>

#include "platform/linux/preview/preview_confinement.h"
#include "platform/preview_protocol.h"
#include "platform/qt/preview/preview_decoder.h"
#include "platform/qt/preview/preview_web.h"

int main(int argc, char** argv) {
    constexpr std::uint64_t kMemory = std::uint64_t{1} << 30;
    constexpr unsigned kSeconds = 10;
    /// The limit for a page that is tried out: the window lays it out once more and takes no clicks
    /// meanwhile.
    constexpr unsigned kPageMilliseconds = 300;
    hl::confineHelper(kMemory);
    if (argc > 1 && std::string_view(argv[1]) == hl::kTryPage)
        return hl::tryPage(argc, argv, hl::kHelperFile, [] { hl::endAfter(kPageMilliseconds); });
    return hl::answerForPictures(argc, argv, hl::kHelperFile, [] { hl::allowSeconds(kSeconds); });
}
