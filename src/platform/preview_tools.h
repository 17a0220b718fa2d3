// What the preview needs of the system: files opened by their bytes, and helpers in processes of their own
// that read files from strangers, so that a crash there costs only a message. For the thread of the logic.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace hl {

/// A regular file, open for reading; it is closed with this object.
class OpenFile {
  public:
    virtual ~OpenFile() = default;
    virtual int descriptor() const = 0;
    /// The number of bytes when it was opened.
    virtual std::uint64_t size() const = 0;
    /// Returns at most `limit` bytes from its beginning.
    virtual Result<std::string> head(std::size_t limit) const = 0;
};

/// A file that is being opened on another thread.
class PreviewOpening {
  public:
    virtual ~PreviewOpening() = default;
    /// A descriptor that becomes readable when the opening is over.
    virtual int descriptor() const = 0;
    /// Returns what PreviewTools::open does. REQUIRES: the opening is over.
    virtual Result<std::unique_ptr<OpenFile>> take() = 0;
    /// The error of an opening that is given up before it is over.
    virtual Error givenUp() const = 0;
};

/// A folder that only this user can look into; it is removed with this object, with everything in it. It
/// stays if the program is killed.
class PrivateFolder {
  public:
    virtual ~PrivateFolder() = default;
    virtual const std::string& path() const = 0;
    virtual Result<> makeFolder(const std::string& name) = 0;
    virtual Result<> write(const std::string& name, std::string_view content) = 0;
    /// Copies a file. It is an error if the file is larger than `limit`, or has become shorter.
    virtual Result<> copy(const OpenFile& file, const std::string& name, std::uint64_t limit) = 0;
};

struct ProcessLimits {
    std::uint64_t memory = 0;    ///< Address space in bytes; 0 for no limit.
    unsigned cpuSeconds = 0;     ///< 0 for no limit.
    std::uint64_t fileSize = 0;  ///< The size in bytes of the largest file that it may write; 0 if it may
                                 ///< write none.
};

struct ProcessOrder {
    std::string program;  ///< The full path.
    std::vector<std::string> arguments = {};
    const OpenFile* input = nullptr;      ///< Becomes descriptor 3 of the process, and with `inputIsStandard`
                                          ///< also descriptor 0.
    bool inputIsStandard = false;         ///< REQUIRES: there is an input.
    const PrivateFolder* home = nullptr;  ///< Serves as HOME, TMPDIR and current folder; without it the
                                          ///< current folder is "/".
    ProcessLimits limits = {};
    bool foreign = false;  ///< It is not our own program: it is confined from outside, to `home` and the
                           ///< system's files.
};

/// A process that this program started, with all processes that it started itself. The destructor ends all
/// that did not leave its process group. If the program is killed, the first process ends with it, while the
/// others may stay.
class HelperProcess {
  public:
    virtual ~HelperProcess() = default;
    /// A descriptor that is readable when there is output, and when the last process has ended. Reading never
    /// waits.
    virtual int outputDescriptor() const = 0;
    /// Appends the available output, at most `limit` bytes in all. Returns false once there will be no more.
    virtual bool readOutput(std::string& to, std::size_t limit) = 0;
    /// Writes to its standard input, unless that is the file. Returns false if the text is not taken at once;
    /// it is lost then.
    virtual bool send(std::string_view text) = 0;
    /// Tells whether it ended by itself with success. REQUIRES: readOutput returned false.
    virtual bool endedWell() = 0;
};

class PreviewTools {
  public:
    virtual ~PreviewTools() = default;
    /// Opens a file; a link is followed. What is no regular file is kUnsuited.
    virtual Result<std::unique_ptr<OpenFile>> open(const std::string& path) = 0;
    /// Opens a file whose disk may not answer, on another thread; null if the disk always answers, and then
    /// open() must be used. The file is read into memory, so that nothing waits for the disk any more: a file
    /// that is too large for that fails, but with `beginning` only the first MiB of any file is read.
    virtual std::unique_ptr<PreviewOpening> openBeside(const std::string& path, bool beginning) = 0;
    /// Opens the same file again, with a reading position of its own.
    virtual Result<std::unique_ptr<OpenFile>> again(const OpenFile& file) = 0;
    /// Makes a nameless file with these bytes.
    virtual Result<std::unique_ptr<OpenFile>> inMemory(std::string_view content) = 0;
    /// Returns the path of a program of our own, which is beside the main one; empty if it is missing.
    virtual std::string helper(const std::string& name) = 0;
    /// Returns the path of a command of the system; empty if there is none.
    virtual std::string command(const std::string& name) = 0;
    virtual Result<std::unique_ptr<PrivateFolder>> makeFolder() = 0;
    virtual Result<std::unique_ptr<HelperProcess>> start(const ProcessOrder& order) = 0;
    /// Returns the folder in which a loaded library keeps its cache; empty if it must not write one.
    virtual std::string cacheFolder() const = 0;
    /// Returns a function of a module beside the program, which stays loaded.
    virtual Result<void*> moduleFunction(const std::string& module, const char* function) = 0;
};

}  // namespace hl
