// The colours of a grid, which suit a light and a dark palette of the desktop. Pure functions.
#pragma once

#include <QColor>
#include <QPalette>
#include <cstdint>

namespace hl {

/// Returns `color` moved towards `ground`: each channel keeps (255 - amount) parts in 255. On white this
/// lightens it.
QColor tintTowards(const QColor& color, const QColor& ground, int amount);

/// Returns the ratio of the brightness of two colours, 1 to 21. From 4.5 on, text is easy to read.
double contrast(const QColor& a, const QColor& b);

/// Returns the tint nearest to this one, on the way to `ground`, on which `ink` is easy to read, or at least
/// not harder than on the ground.
QColor readableTint(const QColor& color, const QColor& ground, const QColor& ink, int amount);

/// Returns `ink` dimmed towards `ground`, as far as it stays easy to read on it.
QColor dimmedOn(const QColor& ground, const QColor& ink);

/// Returns a row's own background. A shade of grey is its distance from the view's base colour, so in a dark
/// palette it brightens where it darkens in a light one; it stops where text would be hard to read.
QColor rowBackground(std::uint32_t rgb, const QPalette& palette);

/// Returns `wanted` if it is readable on `ground`, else black or white.
QColor readableOn(const QColor& ground, const QColor& wanted);

}  // namespace hl
