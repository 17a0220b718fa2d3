// Colours of a grid that suit the palette of the desktop, a light one and a dark one.
#pragma once

#include <QColor>
#include <QPalette>
#include <cstdint>

namespace hl {

/// `color` moved towards `ground`: each channel keeps (255 - amount) parts in 255. On white this lightens.
QColor tintTowards(const QColor& color, const QColor& ground, int amount);

/// Ratio of the brightness of two colours, 1 to 21. Text is read with ease from 4.5 on.
double contrast(const QColor& a, const QColor& b);

/// The tint nearest to this one, on the way to `ground`, on which `ink` can be read with ease.
QColor readableTint(const QColor& color, const QColor& ground, const QColor& ink, int amount);

/// A row's own background. Shades of grey are how far a row is from the view's base colour, so in a dark
/// palette they brighten where in a light one they darken; they stop where text would be hard to read.
QColor rowBackground(std::uint32_t rgb, const QPalette& palette);

/// `wanted` if it can be read on `ground`, else black or white.
QColor readableOn(const QColor& ground, const QColor& wanted);

}  // namespace hl
