// Copies one file: its bytes and what else the system keeps of it. It has no state and may be used from any
// thread. All functions return a system error code, 0 for success; after a failure the caller handles the
// incomplete copy.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <functional>
#include <string>

namespace hl {

/// Copies the `size` bytes of the open regular file `source` into the empty open file `target`; holes stay
/// holes if both file systems support them. `between` is called before each block. EBUSY if `source` turns
/// out to have another size.
int copyContent(int source, int target, off_t size, const std::function<void()>& between);

/// Copies owner, extended attributes, rights and times (in nanoseconds), as far as the file system of
/// `target` and the caller's rights allow; `facts` is the fstat() of `source`. It is a failure if an
/// attribute of the user's own ("user.") cannot be copied. Nobody gets more rights than before: if the owner
/// cannot be kept, the bits that give the owner's rights are cleared; if an access list cannot be kept, those
/// of the group are.
int copyFacts(int source, int target, const struct stat& facts);

/// Makes `name` in `folder` a symbolic link like the one opened as `link` (O_PATH), with owner and times.
/// EEXIST if the name is taken.
int copyLink(int link, const struct stat& facts, int folder, const std::string& name);

}  // namespace hl
