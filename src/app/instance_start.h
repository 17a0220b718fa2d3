// Decides whether a start of the program opens a window, or hands its command line to an instance that runs
// already. For the main thread.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "app/settings.h"
#include "platform/instances.h"
#include "platform/message_pump.h"

namespace hl {

/// Returns the name by which instances find one another: the executable's, without folder and extension.
std::string AppExeName(std::string_view executable);

/// Tells whether the settings want one instance only, which is the default.
bool singleInstanceWanted(const SettingsStore& settings);

enum class StartDecision {
    kShow,        ///< This process opens a window.
    kHandedOver,  ///< The first instance has taken the line; this process ends.
    kNoAnswer,    ///< The first instance does not answer; this process ends.
};

/// Decides for a start with a window. This process becomes the first instance whenever there is none, even if
/// several instances are wanted. A line with "-RESTART" always opens a window, and so
/// does one that opens what standard input brings.
StartDecision CheckVBinstance(const std::string& commandLine, bool singleInstance, Instances& instances);

/// Tells whether the program started itself, to replace a process that is about to end.
bool isRestart(std::string_view commandLine);

/// Waits at most 20 seconds until no process is the first instance. Returns false if one still is: this
/// process must end then. `sleep` lets the given time pass.
bool WaitForMutexGone(Instances& instances, MessagePump& pump,
                      const std::function<void(std::chrono::milliseconds)>& sleep);

}  // namespace hl
