// Where the window stands, in the section "Form" of the settings: lengths there in twips, 15 to a pixel.
#pragma once

#include "app/ini_file.h"
#include "app/settings.h"
#include "platform/window.h"

namespace hl {

constexpr int kTwipsPerPixel = 15;

/// In pixels.
struct WindowPlace {
    Rect rect;
    int splitter = 0;  ///< Position of splMain.
};

/// The place that was saved, on this screen. A window without one stands in the middle. One whose left or
/// upper edge would lie outside of the screen has that edge at the screen's; a splitter beyond the window
/// stands at 2190 twips. What is no number, or no size of a window, counts as not saved.
WindowPlace savedPlace(const IniText& settings, const Rect& screen);

/// The state for the first activation. A window that was closed minimised opens normal.
WindowState savedState(const IniText& settings);

/// Saves where the window is: `normal` is its place when it is neither minimised nor maximised, in pixels.
void FensterpositionSpeichern(SettingsStore& settings, WindowState state, const Rect& normal, int splMain);

}  // namespace hl
