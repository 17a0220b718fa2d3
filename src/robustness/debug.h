// Reports every error that a trap catches. For the thread of the logic alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/fault.h"
#include "robustness/error_report.h"

namespace hl {

/// Receives the reports. Its functions may throw; Diagnostics drops what they throw.
class ErrorSink {
  public:
    virtual ~ErrorSink() = default;
    /// Appends `text` to error.log: with `stamp` the time precedes it, with `blankLine` an empty line follows
    /// it.
    virtual void LogError(const std::string& text, bool blankLine, bool stamp) = 0;
    /// Shows the report and returns when the user goes on. `summary` is one line, for where there is no room
    /// for more.
    virtual void showReport(const std::string& text, const std::string& summary) = 0;
};

/// Values that help to understand an error, as text.
using DebugValues = std::vector<std::string>;

/// Composes the report of an error, counts it, logs it and shows it. The constructor's arguments must outlive
/// it.
class Diagnostics {
  public:
    Diagnostics(const AppFacts& app, SystemFacts& system, ErrorSink& sink)
        : app_(app), system_(system), sink_(sink) {}
    Diagnostics(const Diagnostics&) = delete;
    Diagnostics& operator=(const Diagnostics&) = delete;

    /// Reports an error and never throws. A log that cannot be written does not keep the report from being
    /// shown.
    void Debug(const TrapPlace& place, const Fault& fault, const DebugValues& debugValues = {}) noexcept;

    /// Returns the number of errors since the start of the process.
    std::uint32_t errcount() const { return errcount_; }

  private:
    std::string compose(const TrapPlace& place, const Fault& fault, const DebugValues& debugValues);

    const AppFacts& app_;
    SystemFacts& system_;
    ErrorSink& sink_;
    std::uint32_t errcount_ = 0;
};

}  // namespace hl
