// Composes the error report: what failed where, in which program, on which machine.
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

/// What the report says of the program itself. ProgramCore owns it and fills it before the first trap;
/// `cancelState` and `screen` follow the run and the window.
struct AppFacts {
    std::string title = "Harborlantern";
    int major = 0, minor = 0, revision = 0;
    std::string executable;  ///< The executable's path.
    std::string dataFolder;
    std::string commandLine;
    bool portable = true;  ///< True if no package installed the program.
    std::chrono::system_clock::time_point startTime = std::chrono::system_clock::now();
    DateFormat dates;
    NumberFormat numbers;
    /// These are called anew for each report; each may be empty.
    std::function<int()> languageId;
    std::function<int()> cancelState;
    std::function<ScreenFacts()> screen;  ///< Empty in a run without a window.
};

/// Where an error was caught, as reports name it. What is not given is taken from the place in the code where
/// this is made; the routines of most subjects are told as the main form's. The texts are not copied.
///
/// (The compiler is asked by builtins, since clang 14 has no std::source_location.)
struct TrapPlace {
    const char* routine = __builtin_FUNCTION();
    const char* module = "frmMain";
    std::uint_least32_t line = __builtin_LINE();
};

/// Returns "True" or "False".
std::string_view booleanWord(bool value);

/// Prepares the report of an error that the program does not survive, as pieces of text. Between them belong
/// the time, the module and the description, which are known only at that moment. Facts that could only be
/// asked for then, or that take long to ask for at each start, are left out.
std::array<std::string, 4> BuildLastReport(const AppFacts& app, SystemFacts& system);

/// Returns the lines of the report, with CR LF between them and none behind the last. A fact of the machine
/// that cannot be learned is left empty or zero.
std::string BuildErrorReport(const TrapPlace& place, const Fault& fault, const AppFacts& app,
                             SystemFacts& system, std::chrono::system_clock::time_point now);

}  // namespace hl
