// What the routines of the program work with, whatever they do. It owns nothing, and all of it outlives the
// run. For the thread of the logic only.
#pragma once

#include "app/log.h"
#include "app/settings.h"
#include "app/texts.h"
#include "base/absolute_path.h"
#include "base/number_format.h"
#include "base/path.h"
#include "platform/console.h"
#include "platform/disk_space.h"
#include "platform/files.h"
#include "platform/folder_reader.h"
#include "platform/message_pump.h"
#include "platform/owner_names.h"
#include "robustness/debug.h"

namespace hl {

struct Services {
    SettingsStore& settings;
    const Texts& texts;
    Log& log;
    Files& files;
    FileSystem& fileSystem;
    MessagePump& pump;
    Console& console;
    Diagnostics& diagnostics;
    const PathRules& paths;
    const NumberFormat& numbers;
    PathBases bases = {};            ///< What a typed source is relative to.
    DiskSpace* diskSpace = nullptr;  ///< Null if nobody asks for a balance.
    OwnerNames* owners = nullptr;    ///< Null if users have no names here.
    std::string machine = {};        ///< Its name; may be empty.
};

}  // namespace hl
