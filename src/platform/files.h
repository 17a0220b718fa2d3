// Whole files: settings, logs, catalogues, reports. From any thread; no state.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace hl {

/// As the path of a file to be written: standard output, as it is.
inline constexpr std::string_view kStandardOutput = "-";

/// A file being written that replaces an older one in a single step, when it is complete. Until commit() the
/// older file stays as it was, also if the process is killed; destroyed without commit(), it leaves nothing
/// behind. Until the first byte a kill leaves nothing behind either. A device, a pipe or a socket as the
/// target is written as it is.
class ReplacingFile {
  public:
    virtual ~ReplacingFile() = default;
    /// System error code, 0 for success. After a failure the file cannot be committed any more.
    virtual int write(std::string_view bytes) = 0;
    /// Puts the file in place, with the mode of the file it replaces. System error code, 0 for success.
    virtual int commit() = 0;
    /// Whether what is written goes to a terminal, which obeys control characters.
    virtual bool isTerminal() const { return false; }
    /// After a commit that failed, the path of an unfinished file that could not be removed; else empty.
    virtual std::string leftBehind() const { return {}; }
};

class Files {
  public:
    virtual ~Files() = default;
    /// The content, at most `limit` bytes; nothing and `error` set if it cannot be read, is larger, or is a
    /// pipe, which might wait for its writer.
    virtual std::optional<std::string> readWhole(const std::string& path, std::size_t limit, int& error) = 0;
    /// The first bytes of a regular file, at most `count`; nothing if it is none or cannot be read. Does not
    /// wait, and does not follow a link.
    virtual std::optional<std::string> beginning(const std::string& path, std::size_t count) = 0;
    /// Null and `error` set if no file can be made beside `path`. A link as the target is followed.
    virtual std::unique_ptr<ReplacingFile> replace(const std::string& path, int& error) = 0;
    /// Opens, appends in one write, closes. System error code.
    virtual int append(const std::string& path, std::string_view bytes) = 0;
    virtual bool exists(const std::string& path) = 0;
    /// Held until destroyed: nobody else changes files of this folder that are written under the same lock. A
    /// lock that cannot be had within two seconds is done without, and then not waited for again.
    virtual std::shared_ptr<void> lockFolderOf(const std::string& path) = 0;
};

}  // namespace hl
