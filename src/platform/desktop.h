// The desktop around the program, which opens files and shows them elsewhere.
//
// Paths are bytes and are passed on unchanged; no shell ever reads them. Programs are started with the user's
// own environment. For the thread of the logic only. The file manager and the session bus are waited for at
// most a second.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hl {

/// A program that can open files.
struct DesktopProgram {
    std::string id;    ///< The name of its desktop entry: "org.gnome.gedit.desktop".
    std::string name;  ///< Its name in menus, in the user's language.
};

/// The result of opening a file.
enum class OpenResult {
    kStarted,
    kNoProgram,  ///< No program is set for the file's type.
    kFailed,
};

/// What the system tells of a file or folder; of a link itself, not of its target. Times are in seconds since
/// 1970; 0 means that the file system has none.
struct FileFacts {
    std::string type;         ///< Its kind in the user's language: "PNG image".
    std::uint64_t size = 0;   ///< As its content says.
    std::uint64_t space = 0;  ///< What it takes on the disk.
    std::int64_t modified = 0, created = 0, accessed = 0;
    std::string owner, group;
    std::uint32_t mode = 0;  ///< Kind and permissions, as the system has them.
    std::uint32_t links = 0;
};

class Desktop {
  public:
    virtual ~Desktop() = default;
    /// Opens a file with the program that the desktop has set for its type, or a folder with the file
    /// manager.
    virtual OpenResult open(const std::string& path) = 0;
    /// Returns at most `most` programs that can open all of the files; the desktop's own choice comes first.
    virtual std::vector<DesktopProgram> programsFor(const std::vector<std::string>& paths,
                                                    std::size_t most) = 0;
    /// Returns all programs that open files, sorted by name.
    virtual std::vector<DesktopProgram> allPrograms() = 0;
    /// Returns false if the program is gone or cannot be started.
    virtual bool openWith(const std::string& id, const std::vector<std::string>& paths) = 0;
    /// Tells whether opening the file would run its content: a program, an executable script, a desktop
    /// entry.
    virtual bool runsWhenOpened(const std::string& path) = 0;
    /// Opens a file manager with these files selected, or with their folder if no file manager can select.
    /// Returns false if there is none.
    virtual bool showInFolder(const std::vector<std::string>& paths) = 0;
    /// Opens the file manager's window of properties. Returns false if there is none.
    virtual bool showProperties(const std::vector<std::string>& paths) = 0;
    /// Starts the user's terminal with the folder as its working directory. Returns false if there is none,
    /// or if the folder cannot be entered.
    virtual bool openTerminal(const std::string& folder) = 0;
    /// Returns nothing if the path is gone or its disk does not answer.
    virtual std::optional<FileFacts> facts(const std::string& path) = 0;
    /// Returns the SHA-256 of bytes as 64 hexadecimal digits, which are small letters.
    virtual std::string sha256(std::string_view bytes) = 0;
    /// Shows in the program's entry of the task bar how far a run is, in percent, or with nothing that none
    /// is under way. Waits for nobody.
    virtual void showProgress(std::optional<int> /*percent*/) {}
};

}  // namespace hl
