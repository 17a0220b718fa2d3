// Things to move, places to move them to, and what is seen of them there.
#pragma once

#include "platform/linux/change/moving.h"
#include "platform/linux/process/descriptor.h"
#include "support/kinds.h"
#include "support/mounted.h"

namespace hl::test {

inline int moveTo(const FilePlace& from, const FilePlace& to) {
    Whereabouts whereabouts;
    return moveEntry(from, to, whereabouts);
}

inline int moveTo(const std::string& from, const std::string& to) {
    return moveTo(FilePlace{from}, FilePlace{to});
}

struct MovingTest : testing::Test {
    MovingTest() {
        fs::create_directory(at("sub"));
        chmod(dir.path().c_str(), 0755);
    }
    std::string at(const std::string& name) const { return dir.path() + "/" + name; }

    TempDir dir;
};

// A small file system on a folder of its own, or a folder of one that exists.
class OtherMount {
  public:
    explicit OtherMount(const char* options) : mounted_("tmpfs", folder_.path(), "tmpfs", 0, options) {}
    bool isMounted() const { return mounted_.done(); }
    const std::string& path() const { return isMounted() ? folder_.path() : shared_.path(); }
    std::string at(const std::string& name) const { return path() + "/" + name; }

  private:
    TempDir folder_, shared_{"/dev/shm"};
    Mounted mounted_;
};

}  // namespace hl::test
