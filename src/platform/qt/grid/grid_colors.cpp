#include "platform/qt/grid/grid_colors.h"

#include <algorithm>
#include <cmath>

namespace hl {

namespace {

constexpr double kReadable = 4.5;
constexpr int kDimmed = 90;
// The largest distance of a grey from the base colour, of 255.
constexpr int kDeepestGrey = 80;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double brightness(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}  // namespace

QColor tintTowards(const QColor& color, const QColor& ground, int amount) {
    const auto mixed = [amount](int channel, int towards) {
        return std::min(255, channel * (255 - amount) / 255 + towards * amount / 255);
    };
    return {mixed(color.red(), ground.red()), mixed(color.green(), ground.green()),
            mixed(color.blue(), ground.blue())};
}

double contrast(const QColor& a, const QColor& b) {
    const double first = brightness(a), second = brightness(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor readableTint(const QColor& color, const QColor& ground, const QColor& ink, int amount) {
    const double wanted = std::min(kReadable, contrast(ground, ink));
    while (amount < 255 && contrast(tintTowards(color, ground, amount), ink) < wanted) ++amount;
    return tintTowards(color, ground, amount);
}

QColor dimmedOn(const QColor& ground, const QColor& ink) {
    int amount = kDimmed;
    while (amount > 0 && contrast(tintTowards(ink, ground, amount), ground) < kReadable) --amount;
    return tintTowards(ink, ground, amount);
}

QColor rowBackground(std::uint32_t rgb, const QPalette& palette) {
    const QColor own = QColor::fromRgb(0xFF000000 | rgb);
    if (own.red() != own.green() || own.green() != own.blue()) return own;
    const QColor base = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
    // The tint lies between the text's colour and the base.
    return readableTint(text, base, text, 255 - std::min(255 - own.red(), kDeepestGrey));
}

QColor readableOn(const QColor& ground, const QColor& wanted) {
    if (contrast(ground, wanted) >= kReadable) return wanted;
    return contrast(ground, Qt::black) >= contrast(ground, Qt::white) ? QColor(Qt::black) : QColor(Qt::white);
}

}  // namespace hl
