// What a file is by the end of its name: its ending, and the kind that the ending stands for. The table is
// compiled in, so a run without a window tells the same. For any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace hl {

enum class FileKind : std::uint8_t {
    kPicture,
    kFilm,
    kSound,
    kDocument,
    kTable,
    kSlides,
    kBook,
    kArchive,
    kDiskImage,
    kPackage,
    kProgram,
    kLibrary,
    kSourceText,
    kData,
    kLog,
    kMail,
    kFont,
    kBackup,
    kCache,
    kOther,
};

inline constexpr std::size_t kFileKinds = static_cast<std::size_t>(FileKind::kOther) + 1;

/// The ending of a name, in lower case as far as it is ASCII.
class Ending {
  public:
    static constexpr std::size_t kLongest = 16;  ///< In bytes.

    /// It is what stands behind the last "." of the name, unless that is its first byte. It is empty if there
    /// is nothing, if it is longer than kLongest, or if it is no valid UTF-8.
    explicit Ending(std::string_view name);

    /// Points into this object.
    std::string_view text() const { return {bytes_.data(), length_}; }

  private:
    std::array<char, kLongest> bytes_{};
    std::uint8_t length_ = 0;
};

/// Returns kOther for an ending that the table does not have. REQUIRES: the ending is in lower case.
FileKind kindOfEnding(std::string_view ending);

/// Returns the English words for the kind, which command lines and saved lists use, such as "disk image".
std::string_view nameOf(FileKind kind);
/// Returns nothing if no kind is called so; ASCII case is ignored.
std::optional<FileKind> kindNamed(std::string_view name);

}  // namespace hl
