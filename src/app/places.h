// Where the program's parts lie, and where it may write.
//
// Unpacked anywhere, or built, everything lies beside the executable and is written there. A package puts a
// file named `installed` beside the executable: its first line names the folder of what is only read, from
// the executable's ("../../share/harborlantern"), and each user has a folder of settings. Pure but for the
// look at that file.
#pragma once

#include <string>

#include "platform/files.h"

namespace hl {

/// Absolute paths; all but the first may be empty.
struct PlaceFacts {
    std::string executableFolder;
    std::string named;       ///< HARBORLANTERN_HOME.
    std::string configHome;  ///< XDG_CONFIG_HOME; one that is relative counts as none.
    std::string home;
};

struct Places {
    bool installed = false;
    bool ofUser =
        false;          ///< `own` is the user's folder of settings, which the program makes when it needs it.
    std::string own;    ///< Settings and logs. Need not exist.
    std::string texts;  ///< Libraries of languages.
    std::string data;   ///< Has the folder "icons".
};

/// The folder that is named comes first. An installed program whose user has no home writes beside itself,
/// which is to say nowhere unless root lets it.
Places placesOf(Files& files, const PlaceFacts& facts);

}  // namespace hl
