// The interface between the program and the module with its window.
//
// The program loads the module when a window is to be shown and calls the one function that the module
// exports; it returns when the window is closed. The module is never unloaded. For the main thread.
#pragma once

#include <string>

#include "platform/fault_signals.h"
#include "platform/window.h"

namespace hl {

/// To be raised when either side of the interface changes; a module refuses a program with another number.
constexpr int kWindowModuleVersion = 6;
constexpr const char* kWindowModuleName = "harborlantern-gui.so";
constexpr const char* kWindowModuleFunction = "harborlanternWindow";

enum class WindowResult : int {
    kClosed,
    kNoDisplay,     ///< There is no screen for a window; nothing was called.
    kOtherVersion,  ///< Program and module do not belong together; nothing was called.
};

struct WindowStart {
    int version = kWindowModuleVersion;
    WindowParts& parts;
    WindowEvents& events;
    /// A descriptor that becomes readable when another start hands something over, and what to call then. -1
    /// for none.
    int handOverDescriptor = -1;
    std::function<void()> handOverReady;
    /// A descriptor that becomes readable when helper threads have answers, and what to call then. -1 for
    /// none.
    int answersDescriptor = -1;
    std::function<void()> answersReady;
    std::string executable;
    /// Counts the module's guarded routines with the program's counter; see GuardedRoutine.
    GuardedRoutine::Counter guardedDepth = GuardedRoutine::counter();
};

using WindowModuleFunction = WindowResult (*)(const WindowStart&);

}  // namespace hl
