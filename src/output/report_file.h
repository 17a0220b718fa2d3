// The file of a report, written in blocks, and what the two forms that save one have in common.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include "app/texts.h"
#include "base/text.h"
#include "platform/files.h"
#include "robustness/trap.h"

namespace hl {

/// The routine of either form that saves, as faults name it.
inline constexpr const char* kSaveRoutine = "SPEICHERN";
/// By the index of the form's box.
inline constexpr std::string_view kDelimiters = ",;\t ";

/// What a message says, behind its own text, of an unfinished file that could not be removed; empty for none.
inline std::string leftBehindText(const Texts& texts, const std::string& path) {
    if (path.empty()) return {};
    return " " + texts.TL(9616, "Die unfertige Datei %1 ließ sich nicht löschen.", {visible(path)});
}

/// The fault for a file that cannot be written; `error` is the system's code, `rest` of leftBehindText.
[[noreturn]] inline void raiseFileError(int error, const std::string& path, const std::string& rest) {
    throw Fault(error, kSaveRoutine, visible(path) + ": " + std::generic_category().message(error) + rest);
}

class ReportFile {
  public:
    static constexpr std::size_t kBlockBytes = std::size_t{64} << 10;

    /// `file` must outlive it.
    explicit ReportFile(ReplacingFile& file) : file_(file) { block_.reserve(kBlockBytes + kBlockBytes / 8); }

    /// Lines are appended to it, and endLine is called behind each.
    std::string& block() { return block_; }
    void endLine() {
        if (block_.size() >= kBlockBytes) writeBlock();
    }
    /// Of the system; 0 as long as all went well. After an error nothing more is written.
    int error() const { return error_; }
    /// Writes what is left and puts the file in place. System error code.
    int commit() {
        writeBlock();
        if (error_ == 0) error_ = file_.commit();
        return error_;
    }

  private:
    void writeBlock() {
        if (error_ == 0 && !block_.empty()) error_ = file_.write(block_);
        block_.clear();
    }

    ReplacingFile& file_;
    std::string block_;
    int error_ = 0;
};

}  // namespace hl
