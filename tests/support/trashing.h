// Reads the trash as another program does, and provides a place to throw files away from.
#pragma once

#include "platform/linux/change/trash.h"

namespace hl {

/// Prints the error in messages of failed tests.
inline std::ostream& operator<<(std::ostream& out, RecycleError error) {
    return out << "RecycleError " << static_cast<int>(error);
}

}  // namespace hl

namespace hl::test {

/// Describes everything at and below `path`, one line each: the kind, the rights, the time of what is no
/// folder, and the content or target.
std::string snapshotOf(const std::string& path);

/// The content of a trash as any other program reads it: names in files/ and the path that each came from.
using Content = std::map<std::string, std::string>;

/// Fails the test for an info file that is not exact or has no entry, and for an entry without an info file.
Content contentOfTrash(const std::string& trash);

/// A home trash and a folder to throw files away from, on one mount.
struct Trashing : testing::Test {
    explicit Trashing(std::string_view base = {}) : dir(base) { fs::create_directories(root); }

    RecycleError recycle(const std::string& name) { return moveToTrash({root, name}, settings); }

    TempDir dir;
    const std::string root = fs::canonical(dir.path()).string() + "/from";
    const std::string home = dir.path() + "/data/Trash";
    TrashSettings settings{home, geteuid()};
};

}  // namespace hl::test
