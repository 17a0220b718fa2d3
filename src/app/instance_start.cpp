#include "app/instance_start.h"

#include "app/command_line.h"
#include "app/setting_keys.h"
#include "base/path.h"
#include "base/text.h"
#include "platform/files.h"

namespace hl {

namespace {

constexpr std::string_view kRestart = "-RESTART";
constexpr std::uint64_t kRestartTimeout = 20000;  // Milliseconds.
constexpr std::chrono::milliseconds kRestartInterval{500};

}  // namespace

std::string AppExeName(std::string_view executable) {
    const std::string_view file = fileNameOf(executable, kPosixPaths);
    const std::size_t point = file.rfind('.');
    return std::string(file.substr(0, point == 0 ? std::string_view::npos : point));
}

bool singleInstanceWanted(const SettingsStore& settings) {
    const auto& key = kKeySingleInstance;
    const std::string stored = settings.GetSettings(key.section, key.key, key.defaultValue);
    return parseInteger(stored).value_or(key.defaultValue) != 0;
}

StartDecision CheckVBinstance(const std::string& commandLine, bool singleInstance, Instances& instances) {
    const bool first = instances.takeFirst();
    // No other process can read the standard input of this one.
    const bool readsInput = openedByCommand(commandLine) == kStandardOutput;
    if (first || !singleInstance || readsInput || commandLine.find(kRestart) != std::string::npos)
        return StartDecision::kShow;
    if (instances.deliver(commandLine)) return StartDecision::kHandedOver;
    // The first instance may have been ending just now; then this one takes its place, so that the request is
    // not lost.
    return instances.takeFirst() ? StartDecision::kShow : StartDecision::kNoAnswer;
}

bool isRestart(std::string_view commandLine) {
    return commandLine == kRestart;
}

bool WaitForMutexGone(Instances& instances, MessagePump& pump,
                      const std::function<void(std::chrono::milliseconds)>& sleep) {
    const std::uint64_t start = pump.GetTickCount();
    while (instances.isHeld()) {
        sleep(kRestartInterval);
        pump.PumpMessages();
        if (pump.GetTickCount() - start > kRestartTimeout) return false;
    }
    return true;
}

}  // namespace hl
