// Whether a start of the program opens a window, or hands its command line to the instance that runs already.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "app/settings.h"
#include "platform/instances.h"
#include "platform/message_pump.h"

namespace hl {

/// The name under which instances find one another: that of the executable, without folder and extension.
std::string AppExeName(std::string_view executable);

/// Whether the settings want one instance only, which is the default.
bool singleInstanceWanted(const SettingsStore& settings);

enum class StartDecision {
    kShow,        ///< This process opens a window.
    kHandedOver,  ///< The first instance has taken the line; this process ends.
    kNoAnswer,    ///< There is a first instance that does not answer; this process ends.
};

/// Decides for a start that is not silent. The mark of the first instance is taken whenever it can be, also
/// where several instances are wanted. A line that holds "-RESTART" opens a window in any case.
StartDecision CheckVBinstance(const std::string& commandLine, bool singleInstance, Instances& instances);

/// Whether the program was started by itself, to take the place of a process that is about to end.
bool isRestart(std::string_view commandLine);

/// Waits until no process holds the mark, at most 20 seconds. False if one still does: this process must end.
/// `sleep` lets the given time pass.
bool WaitForMutexGone(Instances& instances, MessagePump& pump,
                      const std::function<void(std::chrono::milliseconds)>& sleep);

}  // namespace hl
