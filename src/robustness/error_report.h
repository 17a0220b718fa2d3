// The error report: what failed where, in which program, on what machine.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/date_format.h"
#include "base/fault.h"
#include "base/number_format.h"
#include "platform/system_facts.h"

namespace hl {

/// What the report says of the program itself. Owned by whoever starts the program, filled before the first
/// trap and constant from then on.
struct AppFacts {
    std::string title = "Harborlantern";
    int major = 0, minor = 0, revision = 0;
    std::string executable;  ///< Its path.
    std::string dataFolder;
    std::string commandLine;
    bool portable = true;  ///< Not installed by a package.
    std::chrono::system_clock::time_point startTime = std::chrono::system_clock::now();
    DateFormat dates;
    NumberFormat numbers;
    /// Asked anew for each report; each may be empty.
    std::function<int()> languageId;
    std::function<int()> cancelState;
    std::function<ScreenFacts()> screen;  ///< Empty with no window.
};

/// Where an error was caught.
struct TrapPlace {
    std::string_view func;
    std::string_view modul;
    std::uint_least32_t line = 0;
};

/// "True" or "False".
std::string_view booleanWord(bool value);

/// The report of an error that the program does not survive, in pieces that are made beforehand. What only
/// that moment knows stands between them: the time, the module, the description. What would have to be asked
/// then, or takes long to ask at each start, is left out.
std::array<std::string, 4> BuildLastReport(const AppFacts& app, SystemFacts& system);

/// The lines of the report, CR LF between them and none behind the last. A fact of the machine that fails to
/// be learned is empty or zero; the report comes out all the same.
std::string BuildErrorReport(const TrapPlace& place, const Fault& fault, const AppFacts& app,
                             SystemFacts& system, std::chrono::system_clock::time_point now);

}  // namespace hl
