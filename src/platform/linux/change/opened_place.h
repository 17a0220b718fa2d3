// Opens the folder that holds a place. It has no state and may be used from any thread.
#pragma once

#include <string>

#include "platform/file_operations.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

/// The folder that holds an entry, opened only to reach names below it (O_PATH), and the entry's name in it.
struct OpenedPlace {
    Descriptor folder;
    std::string name;
    /// A system error code, 0 for success. EBUSY for "/", which is in no folder; EINVAL if the last name is
    /// empty, "." or "..".
    int error = 0;
};

/// Opens name by name, so that neither depth nor length has a limit. Below the base a link on the way gives
/// ENOTDIR unless links are followed. ESTALE if the base is a folder but not the expected one.
OpenedPlace openPlace(const FilePlace& place);

/// Returns the path as messages show it.
std::string pathOf(const FilePlace& place);

}  // namespace hl
