#include "views/cell_text.h"

#include <algorithm>
#include <cmath>

#include "app/simple_value.h"
#include "base/size_text.h"
#include "base/text.h"
#include "views/size_display.h"

namespace hl {

namespace {

// Returns the text up to the next semicolon; `rest` keeps what follows that.
std::string_view takeSection(std::string_view& rest) {
    const std::size_t length = std::min(rest.find(';'), rest.size());
    const std::string_view section = rest.substr(0, length);
    rest.remove_prefix(std::min(length + 1, rest.size()));
    return section;
}

std::string_view sectionOf(std::string_view mask, double value) {
    const std::string_view above = takeSection(mask);
    const std::string_view below = takeSection(mask);
    return value > 0 ? above : value < 0 ? below : takeSection(mask);
}

}  // namespace

ColumnText::ColumnText(const Grid& grid, std::size_t column, const NumberFormat& numbers)
    : grid_(grid),
      column_(grid.columns().at(column)),
      numbers_(numbers),
      cell_(grid.cell(column_.key)),
      mask_(parseMask(column_.mask)) {}

std::string ColumnText::of(Row row) const {
    if (column_.key.empty()) return visible(grid_.text(row));
    if (cell_ == kNoCell) return {};
    if (grid_.cells().isText(cell_)) return visible(grid_.cellText(row, cell_));
    const double value = grid_.number(row, cell_);
    if (column_.showsSign) return difference(value);
    if (grid_.cells().isDate(cell_) && mask_)
        return value == 0 ? std::string() : maskedDate(*mask_, localTime(static_cast<std::int64_t>(value)));
    return sizeText(value);
}

std::string ColumnText::sizeText(double bytes) const {
    if (column_.unit == kModeAuto && mask_ && bytes > 0)
        return FormatSizeAuto(SizeValue::fromBytes(static_cast<std::uint64_t>(bytes)), true, numbers_,
                              mask_->number.decimals);
    if (isBelowLastDigit(bytes)) return belowLastDigit(mask_->number.decimals, numbers_) + mask_->suffix;
    return ofNumber(inUnit(bytes));
}

std::string ColumnText::difference(double bytes) const {
    if (bytes == 0 || !std::isfinite(bytes)) return {};
    return withSign(bytes > 0, sizeText(std::abs(bytes)));
}

double ColumnText::number(Row row) const {
    return inUnit(grid_.number(row, cell_));
}

double ColumnText::inUnit(double value) const {
    if (sizeUnit(column_.unit).divisor == 1) return value;
    const double inUnit = value / static_cast<double>(sizeUnit(column_.unit).divisor);
    return column_.roundsUnit ? roundToHundredths(inUnit) : inUnit;
}

bool ColumnText::isBelowLastDigit(double bytes) const {
    return mask_ && bytes > 0 &&
           hl::isBelowLastDigit(column_.unit, SizeValue::fromBytes(static_cast<std::uint64_t>(bytes)),
                                mask_->number.decimals);
}

std::string ColumnText::ofNumber(double value) const {
    if (mask_) return maskedNumber(*mask_, value, numbers_);
    if (column_.mask.find(';') != std::string::npos) return std::string(sectionOf(column_.mask, value));
    return SimpleValue(value).text();
}

}  // namespace hl
