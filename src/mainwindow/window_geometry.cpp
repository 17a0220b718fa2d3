#include "mainwindow/window_geometry.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "app/setting_keys.h"
#include "base/text.h"

namespace hl {

namespace {

constexpr int kFirstShare = 80;                        // Percent of the screen that the first window takes.
constexpr int kFirstWidth = 1280, kFirstHeight = 800;  // In pixels; it is not larger.
constexpr int kSplitterInside = 2190;                  // Twips.
constexpr double kLargest = 32767.0 * kTwipsPerPixel;  // In twips; no window system takes more pixels.

// Returns a number of twips that can be a window's place, or nothing.
std::optional<double> twips(const IniText& settings, std::string_view key) {
    const auto number = parseNumber(settings.find(kSectionForm, key).value_or(""));
    if (!number || !(std::abs(*number) <= kLargest)) return std::nullopt;
    return number;
}

// Returns a width or height in twips. `most` and `screen` are in pixels.
double size(const IniText& settings, std::string_view key, int most, int screen) {
    const double stored = twips(settings, key).value_or(0);
    if (stored >= kTwipsPerPixel) return stored;
    return std::min(most, screen * kFirstShare / 100) * kTwipsPerPixel;
}

int pixels(double twips) {
    return static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

// Returns one edge in pixels; `start` and `length` are those of the screen.
int edge(std::optional<double> stored, double windowTwips, int start, int length) {
    const int centred = start + pixels(length * kTwipsPerPixel / 2.0 - windowTwips / 2);
    const int wanted = stored ? pixels(*stored) : centred;
    return wanted < start || wanted >= start + length ? start : wanted;
}

}  // namespace

WindowPlace savedPlace(const IniText& settings, const Rect& screen) {
    const double height = size(settings, kKeyHeight, kFirstHeight, screen.height);
    const double width = size(settings, kKeyWidth, kFirstWidth, screen.width);
    const double stored = twips(settings, kKeySplitter.key).value_or(kKeySplitter.defaultValue);
    const double splitter = stored > width || stored < 0 ? kSplitterInside : stored;
    return {{.left = edge(twips(settings, kKeyLeft), width, screen.left, screen.width),
             .top = edge(twips(settings, kKeyTop), height, screen.top, screen.height),
             .width = pixels(width),
             .height = pixels(height)},
            pixels(splitter)};
}

WindowState savedState(const IniText& settings) {
    const auto stored = parseInteger(settings.find(kSectionForm, kKeyWindowState.key).value_or(""));
    return stored == static_cast<int>(WindowState::kMaximized) ? WindowState::kMaximized
                                                               : WindowState::kNormal;
}

void FensterpositionSpeichern(SettingsStore& settings, WindowState state, const Rect& normal, int splMain) {
    settings.change([&](IniText& ini) {
        const auto set = [&ini](std::string_view key, std::int64_t value) {
            ini.set(kSectionForm, key, std::to_string(value));
        };
        set(kKeyWindowState.key, static_cast<int>(state));
        set(kKeyLeft, std::int64_t{normal.left} * kTwipsPerPixel);
        set(kKeyTop, std::int64_t{normal.top} * kTwipsPerPixel);
        set(kKeyWidth, std::int64_t{normal.width} * kTwipsPerPixel);
        set(kKeyHeight, std::int64_t{normal.height} * kTwipsPerPixel);
        set(kKeySplitter.key, std::int64_t{splMain} * kTwipsPerPixel);
    });
}

}  // namespace hl
