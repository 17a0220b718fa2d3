// Formats sizes and attributes for everything but grids: status line, log, saved reports, error report.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/number_format.h"
#include "base/size_unit.h"
#include "base/size_value.h"

namespace hl {

/// Formats a size in a unit of the table; a mode without one gives an empty text. kModeDynamic always appends
/// a unit, whatever `withUnit` says, and has no step for terabytes; kModeAuto without a unit means bytes.
/// `shortBytes` writes the unit of bytes as "BS".
std::string FormatSizeForMode(int mode, SizeValue value, bool withUnit, bool shortBytes,
                              const NumberFormat& format);

/// Tells whether a size above 0 is less than half of the last digit that a unit shows with 0 or 2 decimals.
bool isBelowLastDigit(int mode, SizeValue value, int decimals);
/// Returns what views show for such a size, without a unit: "< 0.01", or "< 1" without decimals.
std::string belowLastDigit(int decimals, const NumberFormat& format);

/// Returns the mode that FormatSizeAuto writes a size in.
int fittingMode(SizeValue value);
/// Formats a size in the unit that fits it, terabytes included; the unit is shown only with `withUnit`.
/// Larger units than bytes show 0 or 2 decimals.
std::string FormatSizeAuto(SizeValue value, bool withUnit, const NumberFormat& format, int decimals = 2);

/// Formats a size for saved reports: blanks in front fill it up to `width` characters, and it is never cut.
/// Mode 4 and any unknown one give nothing but blanks. Decimals are shown if `decimals` is 1 and the mode is
/// not bytes.
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

/// Returns one letter for each set bit, in a fixed order, or an empty text for kAttributesInvalid. With
/// `brackets` and at least one letter the result is `prefix`, "<", the letters and ">".
std::string xFormatFileAttribute(std::uint32_t attributes, bool brackets, std::string_view prefix);

}  // namespace hl
