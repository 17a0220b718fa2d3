// The error report: what failed where, in which program, on what machine.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/date_format.h"
#include "base/fault.h"
#include "base/number_format.h"
#include "base/path.h"
#include "platform/system_facts.h"

namespace hl {

/// What the report says of the program itself. Owned by whoever starts the program, filled before the first
/// trap and constant from then on.
struct AppFacts {
    std::string title = "Harborlantern";
    int major = 0, minor = 0, revision = 0;
    std::string programFolder;
    std::string dataFolder;
    std::string executableName;
    std::string commandLine;
    bool portable = true;  ///< Not installed by a package.
    std::chrono::system_clock::time_point startTime = std::chrono::system_clock::now();
    PathRules paths = kPosixPaths;
    DateFormat dates;
    NumberFormat numbers;
    /// Asked anew for each report; each may be empty.
    std::function<int()> languageId;
    std::function<int()> cancelState;
};

/// Where an error was caught.
struct TrapPlace {
    std::string_view func;
    std::string_view modul;
    std::uint_least32_t line = 0;
};

/// "True" or "False".
std::string_view booleanWord(bool value);

/// The lines of the report, CR LF between them and none behind the last. A fact of the machine that fails to
/// be learned is empty or zero; the report comes out all the same.
std::string BuildErrorReport(const TrapPlace& place, const Fault& fault, const AppFacts& app,
                             SystemFacts& system, std::chrono::system_clock::time_point now);

}  // namespace hl
