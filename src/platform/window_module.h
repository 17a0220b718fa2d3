// The border between the program and the module with its window.
//
// The program loads the module when a window is to be shown and calls the one function it exports; it comes
// back when the window is closed. The module is never unloaded.
#pragma once

#include <string>

#include "platform/fault_signals.h"
#include "platform/window.h"

namespace hl {

/// Raised when either side of the border changes; a module refuses a program with another number.
constexpr int kWindowModuleVersion = 5;
constexpr const char* kWindowModuleName = "harborlantern-gui.so";
constexpr const char* kWindowModuleFunction = "harborlanternWindow";

enum class WindowResult : int {
    kClosed,
    kNoDisplay,     ///< No screen to show a window on; nothing was called.
    kOtherVersion,  ///< Program and module do not belong together; nothing was called.
};

struct WindowStart {
    int version = kWindowModuleVersion;
    WindowParts& parts;
    WindowEvents& events;
    /// A descriptor that becomes readable when another start has something to hand over, and what to call
    /// then. -1 for none.
    int handOverDescriptor = -1;
    std::function<void()> handOverReady;
    /// The same for what helper threads found.
    int answersDescriptor = -1;
    std::function<void()> answersReady;
    std::string executable;
    /// For the faults of the module; see GuardedRoutine.
    GuardedRoutine::Counter guardedDepth = GuardedRoutine::counter();
};

using WindowModuleFunction = WindowResult (*)(const WindowStart&);

}  // namespace hl
