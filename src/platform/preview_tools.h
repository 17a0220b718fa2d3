// What the preview needs of the system: files opened by their bytes, and helpers in processes of their own
// that look at a stranger's file, so that what crashes there costs a message. On the thread of the logic.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// A regular file, open for reading; closed with its owner.
class OpenFile {
  public:
    virtual ~OpenFile() = default;
    virtual int descriptor() const = 0;
    /// Bytes, when it was opened.
    virtual std::uint64_t size() const = 0;
    /// At most `limit` bytes from its beginning; empty with the system's error code if it cannot be read.
    virtual std::string head(std::size_t limit, int& error) const = 0;
};

/// A file that is being opened beside the logic.
class PreviewOpening {
  public:
    virtual ~PreviewOpening() = default;
    /// Becomes readable when it is over.
    virtual int descriptor() const = 0;
    /// As PreviewTools::open. REQUIRES: it is over.
    virtual std::unique_ptr<OpenFile> take(std::string& error) = 0;
};

/// A folder that nobody else can look into; removed with its owner, with all that is in it. It stays if the
/// program is killed.
class PrivateFolder {
  public:
    virtual ~PrivateFolder() = default;
    virtual const std::string& path() const = 0;
    // Each gives the system's error code.
    virtual int makeFolder(const std::string& name) = 0;
    virtual int write(const std::string& name, std::string_view content) = 0;
    /// A file larger than `limit` is an error, and so is one that has become shorter.
    virtual int copy(const OpenFile& file, const std::string& name, std::uint64_t limit) = 0;
};

struct ProcessLimits {
    std::uint64_t memory = 0;    ///< Bytes of address space; 0 for no limit.
    unsigned cpuSeconds = 0;     ///< 0 for no limit.
    std::uint64_t fileSize = 0;  ///< Bytes of the largest file that it may write; 0 for none at all.
};

struct ProcessOrder {
    std::string program;  ///< Whole path.
    std::vector<std::string> arguments = {};
    const OpenFile* input = nullptr;      ///< Descriptor 3 there, and with `inputIsStandard` 0 as well.
    bool inputIsStandard = false;         ///< REQUIRES: there is an input.
    const PrivateFolder* home = nullptr;  ///< HOME, TMPDIR and current folder; none: "/".
    ProcessLimits limits = {};
    bool foreign = false;  ///< Not of our own: confined from outside, to `home` and the system's files.
};

/// A process that we have started, with those that it has started. Its destructor ends all that did not leave
/// its process group. If the program is killed, the first process ends with it, and those it started may
/// stay.
class HelperProcess {
  public:
    virtual ~HelperProcess() = default;
    /// Becomes readable when there is output, and when the last of them has ended. Reading never waits.
    virtual int outputDescriptor() const = 0;
    /// Appends what there is, at most `limit` bytes in all. False once there will be no more.
    virtual bool readOutput(std::string& to, std::size_t limit) = 0;
    /// Its standard input, unless that is the file. A text that it does not take at once is lost: false.
    virtual bool send(std::string_view text) = 0;
    /// Whether it ended by itself and well. REQUIRES: readOutput was false.
    virtual bool endedWell() = 0;
};

class PreviewTools {
  public:
    virtual ~PreviewTools() = default;
    /// Null if it cannot be opened, or, with an empty `error`, is no regular file: such a one is not touched.
    /// A link is followed.
    virtual std::unique_ptr<OpenFile> open(const std::string& path, std::string& error) = 0;
    /// The same for a file whose disk may not answer; null where it always does: open() it then. What comes
    /// is in memory, so that nothing waits for the disk any more: of a file that is too large for that none
    /// of it, or with `beginning` the first MiB of any.
    virtual std::unique_ptr<PreviewOpening> openBeside(const std::string& path, bool beginning) = 0;
    /// The same file once more, with a place of reading of its own.
    virtual std::unique_ptr<OpenFile> again(const OpenFile& file, std::string& error) = 0;
    /// A file that has no name and these bytes; null if there is no room for it.
    virtual std::unique_ptr<OpenFile> inMemory(std::string_view content, std::string& error) = 0;
    virtual std::string errorText(int code) = 0;
    /// Of a program of our own, which lies beside the main one; empty if it is not there.
    virtual std::string helper(const std::string& name) = 0;
    /// Of a command of the system; empty if there is none.
    virtual std::string command(const std::string& name) = 0;
    virtual std::unique_ptr<PrivateFolder> makeFolder(std::string& error) = 0;
    /// Null if no process can be made.
    virtual std::unique_ptr<HelperProcess> start(const ProcessOrder& order, std::string& error) = 0;
    /// Where a library that is loaded may keep what it found out of the system; empty: nowhere.
    virtual std::string cacheFolder() const { return {}; }
    /// A function of a module beside the program, which stays loaded; null with the reason.
    virtual void* moduleFunction(const std::string& module, const char* function, std::string& reason) = 0;
};

}  // namespace hl
