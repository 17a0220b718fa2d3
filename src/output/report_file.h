// Writes the file of a report in blocks, with what the two forms that save one have in common. For the thread
// of the logic.
#pragma once

#include <string>
#include <string_view>

#include "app/texts.h"
#include "base/text.h"
#include "platform/files.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"

namespace hl {

/// The name of both forms' saving routine, as faults give it.
inline constexpr const char* kSaveRoutine = "SPEICHERN";

/// Returns the sentence that a message ends with if an unfinished file could not be removed; empty if there
/// is none.
inline std::string leftBehindText(const Texts& texts, const std::string& path) {
    if (path.empty()) return {};
    return " " + texts.TL(9616, "Die unfertige Datei %1 ließ sich nicht löschen.", {visible(path)});
}

/// Raises the fault for a file that cannot be written; `rest` is the result of leftBehindText.
[[noreturn]] inline void raiseFileError(const Error& error, const std::string& path,
                                        const std::string& rest) {
    throw Fault(error.number, kSaveRoutine, visible(path) + ": " + ApiErrorText(false, error) + rest);
}

class ReportFile {
  public:
    static constexpr std::size_t kBlockBytes = std::size_t{64} << 10;

    /// `file` must outlive it.
    explicit ReportFile(ReplacingFile& file) : file_(file) { block_.reserve(kBlockBytes + kBlockBytes / 8); }

    /// Lines are appended to this text; endLine must be called behind each.
    std::string& block() { return block_; }
    void endLine() {
        if (block_.size() >= kBlockBytes) writeBlock();
    }
    /// Tells whether all could be written so far. After an error nothing more is written.
    bool isFine() const { return bool{state_}; }
    /// Writes what is left and puts the file in place.
    Result<> commit() {
        writeBlock();
        if (state_) state_ = file_.commit();
        return state_;
    }

  private:
    void writeBlock() {
        if (state_ && !block_.empty()) state_ = file_.write(block_);
        block_.clear();
    }

    ReplacingFile& file_;
    std::string block_;
    Result<> state_;
};

}  // namespace hl
