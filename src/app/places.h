// Finds out where the program's parts lie and where it may write.
//
// If the program was only unpacked or built, everything lies beside the executable and is written there. A
// package puts a file named `installed` beside the executable: its first line names the folder of the
// read-only files, relative to the executable's ("../../share/harborlantern"), and each user has a folder of
// settings. The only access to the disk is to read that file. For the thread that starts the program.
#pragma once

#include <string>

#include "platform/files.h"

namespace hl {

/// These are absolute paths; all but the first may be empty.
struct PlaceFacts {
    std::string executableFolder;
    std::string named;       ///< The value of HARBORLANTERN_HOME.
    std::string configHome;  ///< The value of XDG_CONFIG_HOME; a relative path is ignored.
    std::string home;
};

struct Places {
    bool installed = false;
    bool ofUser = false;  ///< `own` is the user's folder of settings; the program makes it when needed.
    std::string own;      ///< The folder of settings and logs, which need not exist.
    std::string texts;    ///< The folder of the language libraries.
    std::string data;     ///< The folder that holds the folder "icons".
};

/// Finds the folders; `named` has precedence. An installed program whose user has no home writes beside the
/// executable, where only root may.
Places placesOf(Files& files, const PlaceFacts& facts);

}  // namespace hl
