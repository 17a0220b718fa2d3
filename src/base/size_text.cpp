#include "base/size_text.h"

#include "base/text.h"

namespace hl {

namespace {

// A value that equals a step keeps the smaller unit. Gigabytes begin early, so that no text that chooses its
// unit by itself shows more than 999.00 MB.
int fitting(SizeValue value, bool terabytes) {
    const std::int64_t bytes = value.bytes();
    const auto above = [bytes](SizeMode mode) { return bytes > sizeUnit(mode).divisor; };
    if (terabytes && above(kModeTerabytes)) return kModeTerabytes;
    if (bytes > 999 * sizeUnit(kModeMegabytes).divisor) return kModeGigabytes;
    if (above(kModeMegabytes)) return kModeMegabytes;
    if (above(kModeKilobytes)) return kModeKilobytes;
    return kModeBytes;
}

// Formats a value in one unit; bytes never show decimals. A mode without a unit gives an empty text.
std::string inUnit(int mode, SizeValue value, int decimals, bool withUnit, const NumberFormat& format,
                   std::string_view bytesUnit = "Bytes") {
    const SizeUnit unit = sizeUnit(mode);
    if (unit.divisor == 0) return {};
    const Picture picture{.grouped = true, .decimals = unit.decimals ? decimals : 0};
    std::string text = formatQuotient(value, unit.divisor, picture, format);
    if (withUnit) text.append(" ").append(mode == kModeBytes ? bytesUnit : unit.name);
    return text;
}

std::string padded(const std::string& text, std::size_t width) {
    const std::size_t length = characterCount(text);
    return length < width ? std::string(width - length, ' ') + text : text;
}

struct AttributeLetter {
    char letter;
    std::uint32_t bit;
};

constexpr AttributeLetter kLetters[] = {
    {'A', kAttributeArchive},    {'S', kAttributeSystem},     {'H', kAttributeHidden},
    {'R', kAttributeReadOnly},   {'E', kAttributeEncrypted},  {'L', kAttributeReparse},
    {'T', kAttributeTemporary},  {'C', kAttributeCompressed}, {'O', kAttributeOffline},
    {'I', kAttributeNotIndexed}, {'P', kAttributeSparse},
};

}  // namespace

bool isBelowLastDigit(int mode, SizeValue value, int decimals) {
    const std::int64_t halves = value.bytes() * (decimals == 0 ? 2 : 200);
    return sizeUnit(mode).decimals && value.bytes() > 0 && halves < sizeUnit(mode).divisor;
}

std::string belowLastDigit(int decimals, const NumberFormat& format) {
    return "< " + formatNumber(decimals == 0 ? 1 : 0.01, {.grouped = true, .decimals = decimals}, format);
}

std::string FormatSizeForMode(int mode, SizeValue value, bool withUnit, bool shortBytes,
                              const NumberFormat& format) {
    if (mode == kModeAuto && withUnit) return FormatSizeAuto(value, true, format);
    const bool dynamic = mode == kModeDynamic;
    return inUnit(dynamic ? fitting(value, false) : mode, value, 2, withUnit || dynamic, format,
                  shortBytes ? "BS" : "Bytes");
}

int fittingMode(SizeValue value) {
    return fitting(value, true);
}

std::string FormatSizeAuto(SizeValue value, bool withUnit, const NumberFormat& format, int decimals) {
    return inUnit(fittingMode(value), value, decimals, withUnit, format);
}

std::string xFormatFileSizeWithSpacer(int mode, SizeValue value, std::size_t width, bool withUnit,
                                      int decimals, const NumberFormat& format) {
    return padded(inUnit(mode, value, decimals == 1 ? 2 : 0, withUnit, format), width);
}

std::string xFormatFileAttribute(std::uint32_t attributes, bool brackets, std::string_view prefix) {
    if (attributes == kAttributesInvalid) return {};
    std::string letters;
    for (const auto& [letter, bit] : kLetters) {
        if ((attributes & bit) != 0) letters += letter;
    }
    if (!brackets || letters.empty()) return letters;
    return std::string(prefix) + "<" + letters + ">";
}

}  // namespace hl
