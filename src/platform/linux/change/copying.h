// A copy of one file: its bytes and what the system keeps of it besides. From any thread; no state. All
// answer with a system error code, 0 for success; what was written of the copy so far is left to the caller.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <functional>
#include <string>

namespace hl {

/// The `size` bytes of the open regular file `source` into the empty open file `target`; holes stay holes
/// where both file systems know them. `between` is called before each block. EBUSY if `source` turns out to
/// have another size.
int copyContent(int source, int target, off_t size, const std::function<void()>& between);

/// Owner, extended attributes, rights and times, in nanoseconds, as far as the file system of `target` and
/// the caller's rights have room for them; `facts` is what fstat() told of `source`. An attribute of the
/// user's own ("user.") that cannot be copied is a failure. Nobody gets more rights than he had: the bits
/// that lend the owner's rights go where the owner cannot be kept, those of the group where an access list
/// cannot.
int copyFacts(int source, int target, const struct stat& facts);

/// Makes `name` in `folder` a symbolic link like the one opened as `link` (O_PATH), with owner and times.
/// EEXIST if the name is taken.
int copyLink(int link, const struct stat& facts, int folder, const std::string& name);

}  // namespace hl
