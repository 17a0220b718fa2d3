// The window's place in the section "Form" of the settings, where lengths are in twips (15 to a pixel). For
// the thread of the logic.
#pragma once

#include "app/ini_file.h"
#include "app/settings.h"
#include "platform/window.h"

namespace hl {

constexpr int kTwipsPerPixel = 15;

/// In pixels.
struct WindowPlace {
    Rect rect;
    int splitter = 0;  ///< The position of splMain.
};

/// Returns the saved place, adapted to this screen. Without one, the window takes 80
/// percent of the screen, at most 1280 by 800, and is centred. A left or upper edge
/// outside of the screen is moved to the screen's edge; a splitter beyond the window goes to 2190 twips. What
/// is no number, or no possible size of a window, counts as not saved.
WindowPlace savedPlace(const IniText& settings, const Rect& screen);

/// Returns the state for the first activation. A window that was closed minimised opens normally.
WindowState savedState(const IniText& settings);

/// Saves where the window is. `normal` is its place in pixels when it is neither minimised nor maximised.
void FensterpositionSpeichern(SettingsStore& settings, WindowState state, const Rect& normal, int splMain);

}  // namespace hl
