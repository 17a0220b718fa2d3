// Reads and writes whole files: settings, logs, catalogues, reports. It has no state and may be used from any
// thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace hl {

class WaitCallback;

/// As the path of a file to be written, this means standard output; of one to be opened, standard input.
inline constexpr std::string_view kStandardOutput = "-";

/// A file being written that replaces an older one in a single step, when it is complete. Until commit() the
/// older file stays as it was, even if the process is killed. If it is destroyed without commit(), or the
/// process is killed before the first byte, nothing is left behind. A device, a pipe or a socket as the
/// target is written directly.
class ReplacingFile {
  public:
    virtual ~ReplacingFile() = default;
    /// After a failure the file can no longer be committed.
    virtual Result<> write(std::string_view bytes) = 0;
    /// The file is to be read and written by the user alone (mode 0600), whatever it replaces. A device, a
    /// pipe or a socket stays as it is.
    virtual void makePrivate() {}
    /// Puts the file in place, with the mode of the file it replaces.
    virtual Result<> commit() = 0;
    /// Tells whether the text goes to a terminal, which obeys control characters.
    virtual bool isTerminal() const { return false; }
    /// Returns the path of an unfinished file that could not be removed after a failed commit; else empty.
    virtual std::string leftBehind() const { return {}; }
};

class Files {
  public:
    virtual ~Files() = default;
    /// Returns the content. It is an error if there are more than `limit` bytes; a pipe, which might wait for
    /// its writer, is kUnsuited.
    virtual Result<std::string> readWhole(const std::string& path, std::size_t limit) = 0;
    /// Returns what standard input has until its end. `wait`, which may be null, is called while it is waited
    /// for, about every 15 ms; if that returns false, it is not read further (kNoAnswer).
    virtual Result<std::string> readInput(std::size_t /*limit*/, WaitCallback* /*wait*/) {
        return Error{.kind = ErrorKind::kUnsuited};
    }
    /// Returns at most the first `count` bytes of a regular file; nothing if it is none or cannot be read.
    /// Does not wait, and does not follow a link.
    virtual std::optional<std::string> beginning(const std::string& path, std::size_t count) = 0;
    /// Begins a file that replaces `path`; it is never null. A link as the target is followed.
    virtual Result<std::unique_ptr<ReplacingFile>> replace(const std::string& path) = 0;
    /// Opens the file, appends in one write, and closes it.
    virtual Result<> append(const std::string& path, std::string_view bytes) = 0;
    /// Returns the names of what is in a folder, in the order of their bytes; none if it cannot be read.
    virtual std::vector<std::string> namesIn(const std::string& folder) = 0;
    virtual bool exists(const std::string& path) = 0;
    /// Makes a folder for the user alone (mode 0700). One that is there is no error.
    virtual Result<> makePrivateFolder(const std::string& /*path*/) {
        return Error{.kind = ErrorKind::kUnsuited};
    }
    /// Removes a file, or a link itself; nothing else.
    virtual Result<> remove(const std::string& /*path*/) { return Error{.kind = ErrorKind::kUnsuited}; }
    /// Returns the error of this number of the system, with its text; number 0 has none.
    virtual Error errorOf(int number) { return {.number = number}; }
    /// Locks a folder until the result is destroyed: others who use the lock do not change its files
    /// meanwhile. A lock that is not free within two seconds is ignored, and not waited for again.
    virtual std::shared_ptr<void> lockFolderOf(const std::string& path) = 0;
};

/// Replaces a file by one with this content.
inline Result<> replaceWhole(Files& files, const std::string& path, std::string_view content) {
    const auto file = files.replace(path);
    if (!file) return file.error();
    if (Result<> written = (*file)->write(content); !written) return written;
    return (*file)->commit();
}

}  // namespace hl
