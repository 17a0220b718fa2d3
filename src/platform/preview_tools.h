// What the preview needs of the system: files opened by their bytes, and helpers in processes of their own
// that read files from strangers, so that a crash there costs only a message. For the thread of the logic.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace hl {

/// Reads a file whose disk may not answer. A thread of its own reads ahead, and whoever reads waits for that
/// thread alone. From any thread.
class FileStream {
  public:
    virtual ~FileStream() = default;
    /// The number of bytes when the file was opened.
    virtual std::uint64_t size() const = 0;
    /// Returns how many bytes there were from `offset` on: fewer than `bytes` only at the end of the file.
    /// Waits for the disk without a limit; if one of the two routines below ends that, it is kNoAnswer.
    virtual Result<std::size_t> read(std::uint64_t offset, char* to, std::size_t bytes) = 0;
    /// As long as reading is not allowed, each read fails at once.
    virtual void allowReading(bool allowed) = 0;
    /// Ends all reading for good.
    virtual void end() = 0;
    /// Returns how long somebody has been waiting for the disk; 0 if nobody waits.
    virtual std::chrono::milliseconds waiting() const = 0;
};

/// A regular file, open for reading; it is closed with this object.
class OpenFile {
  public:
    virtual ~OpenFile() = default;
    virtual int descriptor() const = 0;
    /// Null, but for FilePart::kPlayable. If there is one, the file is read by this alone: it has neither a
    /// descriptor nor a head, and the reading ends with this object.
    virtual std::shared_ptr<FileStream> stream() const { return nullptr; }
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

/// What is wanted of a file whose disk may not answer.
enum class FilePart : std::uint8_t {
    kWhole,      ///< All of it in memory; a file that is too large for that fails.
    kBeginning,  ///< Its first MiB in memory.
    kPlayable,   ///< All of it in memory, or, if it is too large for that, a stream.
};

class PreviewTools {
  public:
    virtual ~PreviewTools() = default;
    /// Opens a file; a link is followed. What is no regular file is kUnsuited.
    virtual Result<std::unique_ptr<OpenFile>> open(const std::string& path) = 0;
    /// Opens a file whose disk may not answer, on another thread; null if the disk always answers, and then
    /// open() must be used. What is read into memory does not wait for the disk any more.
    virtual std::unique_ptr<PreviewOpening> openBeside(const std::string& path, FilePart part) = 0;
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
