#include "robustness/debug.h"

#include "robustness/attempt.h"

namespace hl {

std::string Diagnostics::compose(const TrapPlace& place, const Fault& fault, const DebugValues& debugValues) {
    const auto ask = [](const std::function<int()>& question) {
        return std::to_string(question ? question() : 0);
    };
    std::string text = BuildErrorReport(place, fault, app_, system_, std::chrono::system_clock::now());
    text += "\r\nApptitle: " + app_.title;
    text += "\r\nDatapath: " + app_.dataFolder;
    text.append("\r\nAdmin: ").append(booleanWord(attempt([&] { return system_.adminRights(); })));
    text += "\r\nErrcount: " + std::to_string(errcount_);
    text += "\r\nLang: " + ask(app_.languageId);
    text += "\r\nStop:" + ask(app_.cancelState) + ",0";  // The second number, always 0, is part of the
                                                         // format.
    for (std::size_t i = 0; i < debugValues.size(); ++i) {
        text += "\r\nDebug" + std::to_string(i) + ": " + debugValues[i];
    }
    return text;
}

void Diagnostics::Debug(const TrapPlace& place, const Fault& fault, const DebugValues& debugValues) noexcept {
    // Errors in this block are dropped, since nobody is left to report them to.
    ++errcount_;
    std::string text;
    attempt([&] { text = compose(place, fault, debugValues); });
    if (text.empty())
        attempt([&] { text = std::string(place.module) + "." + place.routine + ": " + fault.description(); });
    attempt([&] { sink_.LogError(text, true, true); });
    // The first value tells the most: the setting or the path.
    attempt([&] {
        const std::string value = debugValues.empty() ? "" : ": " + debugValues.front();
        sink_.showReport(text, fault.description() + value);
    });
}

}  // namespace hl
