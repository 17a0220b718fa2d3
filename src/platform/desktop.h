// The desktop around the program: what opens files, and what shows them elsewhere.
//
// Paths are bytes and arrive unchanged, whatever they hold; none is ever read by a shell. What is started
// gets the user's own environment. Thread of the logic only. The file manager and the session bus are waited
// for a second at most.
#pragma once

#include <string>
#include <vector>

namespace hl {

/// A program that can open files.
struct DesktopProgram {
    std::string id;    ///< Of its desktop entry: "org.gnome.gedit.desktop".
    std::string name;  ///< As menus show it, in the user's language.
};

/// What comes of opening a file.
enum class OpenResult {
    kStarted,
    kNoProgram,  ///< None is set for its type.
    kFailed,
};

class Desktop {
  public:
    virtual ~Desktop() = default;
    /// With the program that the user's desktop has set for its type; a folder with the file manager.
    virtual OpenResult open(const std::string& path) = 0;
    /// Those that can open all of the files (the desktop's own choice first), at most `most`.
    virtual std::vector<DesktopProgram> programsFor(const std::vector<std::string>& paths,
                                                    std::size_t most) = 0;
    /// All that open files, in the order of their names.
    virtual std::vector<DesktopProgram> allPrograms() = 0;
    /// False if the program is gone or cannot be started.
    virtual bool openWith(const std::string& id, const std::vector<std::string>& paths) = 0;
    /// Whether opening the file runs what is in it: a program, a script that may be run, a desktop entry.
    virtual bool runsWhenOpened(const std::string& path) = 0;
    /// A file manager with these files selected; their folder if none can do that. False if there is none.
    virtual bool showInFolder(const std::vector<std::string>& paths) = 0;
    /// The file manager's own window of properties. False if there is none.
    virtual bool showProperties(const std::vector<std::string>& paths) = 0;
    /// To the clipboard, for pasting into a file manager.
    virtual void copyFiles(const std::vector<std::string>& paths) = 0;
};

}  // namespace hl
