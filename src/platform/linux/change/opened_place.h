// From the name of a place to the open folder above it. From any thread; no state.
#pragma once

#include <string>

#include "platform/file_operations.h"
#include "platform/linux/process/descriptor.h"

namespace hl {

/// The folder that holds an entry, opened for nothing but names below it (O_PATH), and the entry's name in
/// it.
struct OpenedPlace {
    Descriptor folder;
    std::string name;
    /// System error code, 0 for success. EBUSY for "/", which no folder holds; EINVAL where the last name is
    /// empty, "." or "..".
    int error = 0;
};

/// Goes name by name, so that neither depth nor length has a limit. Below the base a link on the way is
/// ENOTDIR unless links are followed. ESTALE if the base is a folder, and not the one that it is to be.
OpenedPlace openPlace(const FilePlace& place);

/// As messages show it.
std::string pathOf(const FilePlace& place);

}  // namespace hl
