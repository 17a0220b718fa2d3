// Reads and writes whole files: settings, logs, catalogues, reports. It has no state and may be used from any
// thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// As the path of a file to be written, this means standard output.
inline constexpr std::string_view kStandardOutput = "-";

/// A file being written that replaces an older one in a single step, when it is complete. Until commit() the
/// older file stays as it was, even if the process is killed. If it is destroyed without commit(), or the
/// process is killed before the first byte, nothing is left behind. A device, a pipe or a socket as the
/// target is written directly.
class ReplacingFile {
  public:
    virtual ~ReplacingFile() = default;
    /// Returns a system error code, 0 for success. After a failure the file can no longer be committed.
    virtual int write(std::string_view bytes) = 0;
    /// Puts the file in place, with the mode of the file it replaces. Returns a system error code, 0 for
    /// success.
    virtual int commit() = 0;
    /// Tells whether the text goes to a terminal, which obeys control characters.
    virtual bool isTerminal() const { return false; }
    /// Returns the path of an unfinished file that could not be removed after a failed commit; else empty.
    virtual std::string leftBehind() const { return {}; }
};

class Files {
  public:
    virtual ~Files() = default;
    /// Returns the content; nothing, with `error` set, if it cannot be read, has more than `limit` bytes, or
    /// is a pipe, which might wait for its writer.
    virtual std::optional<std::string> readWhole(const std::string& path, std::size_t limit, int& error) = 0;
    /// Returns at most the first `count` bytes of a regular file; nothing if it is none or cannot be read.
    /// Does not wait, and does not follow a link.
    virtual std::optional<std::string> beginning(const std::string& path, std::size_t count) = 0;
    /// Returns null and sets `error` if no file can be made beside `path`. A link as the target is followed.
    virtual std::unique_ptr<ReplacingFile> replace(const std::string& path, int& error) = 0;
    /// Opens the file, appends in one write, and closes it. Returns a system error code.
    virtual int append(const std::string& path, std::string_view bytes) = 0;
    /// Returns the names of what is in a folder, in the order of their bytes; none if it cannot be read.
    virtual std::vector<std::string> namesIn(const std::string& folder) = 0;
    virtual bool exists(const std::string& path) = 0;
    /// Locks a folder until the result is destroyed: others who use the lock do not change its files
    /// meanwhile. A lock that is not free within two seconds is ignored, and not waited for again.
    virtual std::shared_ptr<void> lockFolderOf(const std::string& path) = 0;
};

}  // namespace hl
