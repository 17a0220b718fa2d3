// Sizes and attributes as text, outside the grids: status line, log, saved reports, error report.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/number_format.h"
#include "base/size_value.h"

namespace hl {

/// The unit a size is shown in. The bars offer bytes to gigabytes; the other two exist in these routines
/// only.
enum SizeMode : int {
    kModeBytes = 0,
    kModeKilobytes = 1,
    kModeMegabytes = 2,
    kModeGigabytes = 3,
    kModeDynamic = 4,
    kModeTerabytes = 5,
};

/// Bytes in one unit of the mode; 0 for kModeDynamic and for any other number.
std::int64_t divisorOf(int mode);
/// "Bytes", "KB", "MB", "GB", "TB"; empty for any other mode.
std::string_view unitOf(int mode);

/// A size in a given mode, 0 to 5; empty for any other. kModeDynamic always appends a unit, whatever
/// `withUnit` says, and has no step for terabytes. `shortBytes` writes the unit of bytes as "BS".
std::string FormatSizeForMode(int mode, SizeValue value, bool withUnit, bool shortBytes,
                              const NumberFormat& format);

/// Whether a size above 0 is less than half of the last digit that a unit shows with 0 or 2 decimals.
bool isBelowLastDigit(int mode, SizeValue value, int decimals);
/// What views show for it: "< 0.01", or "< 1" without decimals. No unit.
std::string belowLastDigit(int decimals, const NumberFormat& format);

/// A size in the unit that fits it, terabytes included; the unit only with `withUnit`.
std::string FormatSizeAuto(SizeValue value, bool withUnit, const NumberFormat& format);

/// A size in a view's mode, two decimals in the modes 1 to 3 whatever the view's decimals flag says. With
/// `pad`, blanks in front up to the mode's width. " Bytes" needs both `withUnit` and `withBytesUnit`.
std::string formatViewSize(int mode, SizeValue value, bool withUnit, bool pad, bool withBytesUnit,
                           const NumberFormat& format);

/// Fixed-width text for saved reports: blanks in front up to `width` characters; never cut. Empty text
/// (padded) for mode 4 and for any other number. Decimals are shown when `decimals` is 1 and the mode is not
/// bytes.
std::string xFormatFileSizeWithSpacer(int mode, SizeValue value, std::size_t width, bool withUnit,
                                      int decimals, const NumberFormat& format);

/// Attribute bits of an entry, as the file system interface reports them.
enum AttributeBits : std::uint32_t {
    kAttributeReadOnly = 0x1,
    kAttributeHidden = 0x2,
    kAttributeSystem = 0x4,
    kAttributeDirectory = 0x10,
    kAttributeArchive = 0x20,
    kAttributeTemporary = 0x100,
    kAttributeSparse = 0x200,
    kAttributeReparse = 0x400,
    kAttributeCompressed = 0x800,
    kAttributeOffline = 0x1000,
    kAttributeNotIndexed = 0x2000,
    kAttributeEncrypted = 0x4000,
    kAttributesInvalid = 0xFFFFFFFF,
};

/// One letter for each set bit, in a fixed order; empty for kAttributesInvalid. With `brackets` and at least
/// one letter: `prefix`, "<", the letters, ">".
std::string xFormatFileAttribute(std::uint32_t attributes, bool brackets, std::string_view prefix);

}  // namespace hl
