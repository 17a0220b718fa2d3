#include "fileops/recycle_texts.h"

#include <algorithm>
#include <iterator>

namespace hl {

namespace {

struct CodeText {
    int code;
    const char* text;
};

// 0x83 has no entry, because the text of 0x82 covers both.
constexpr CodeText kTexts[] = {
    {0x71, "The source and destination files are the same file."},
    {0x72, "Multiple file paths were specified in the source buffer, but only one destination file path."},
    {0x73,
     "Rename operation was specified but the destination path is a different directory. Use the move "
     "operation instead."},
    {0x74, "The source is a root directory, which cannot be moved or renamed."},
    {0x75,
     "The operation was cancelled by the user, or silently cancelled if the appropriate flags were supplied "
     "to SHFileOperation."},
    {0x76, "The destination is a subtree of the source."},
    {0x78, "Security settings denied access to the source."},
    {0x79, "The source or destination path exceeded or would exceed MAX_PATH."},
    {0x7A,
     "The operation involved multiple destination paths, which can fail in the case of a move operation."},
    {0x7C, "The path in the source or destination or both was invalid."},
    {0x7D, "The source and destination have the same parent folder."},
    {0x7E, "The destination path is an existing file."},
    {0x80, "The destination path is an existing folder."},
    {0x81, "The name of the file exceeds MAX_PATH."},
    {0x82,
     "The destination is a read-only CD-ROM, possibly unformatted.DE_DEST_IS_DVD 0x83  The destination is a "
     "read-only DVD, possibly unformatted."},
    {0x84, "The destination is a writable CD-ROM, possibly unformatted."},
    {0x85, "The file involved in the operation is too large for the destination media or file system."},
    {0x86, "The source is a read-only CD-ROM, possibly unformatted."},
    {0x87, "The source is a read-only DVD, possibly unformatted."},
    {0x88, "The source is a writable CD-ROM, possibly unformatted."},
    {0xB7, "MAX_PATH was exceeded during the operation."},
    {0x402,
     "An unknown error occurred. This is typically due to an invalid path in the source or destination."},
    {0x10000, "An unspecified error occurred on the destination."},
    {0x10074, "Destination is a root directory and cannot be renamed."},
};

}  // namespace

std::string xGetErrorTextFromSH(int code, bool withNumber) {
    const auto* known = std::find_if(std::begin(kTexts), std::end(kTexts),
                                     [code](const CodeText& each) { return each.code == code; });
    std::string text = known != std::end(kTexts) ? known->text : "Unknown error.";
    if (withNumber) text += " - " + std::to_string(code);
    return text;
}

}  // namespace hl
