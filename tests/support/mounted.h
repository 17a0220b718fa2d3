// Mounts something on a folder or file of the test, which is made as a folder if missing, and unmounts it
// before the test removes that.
#pragma once

#include <sys/mount.h>

namespace hl::test {

class Mounted {
  public:
    Mounted(const std::string& source, const std::string& at, const char* kind, unsigned long flags = 0,
            const char* options = nullptr)
        : at_(at) {
        if (!fs::exists(at)) fs::create_directories(at);
        done_ = mount(source.c_str(), at.c_str(), kind, flags, options) == 0;
    }
    ~Mounted() {
        // Otherwise the test would go on and remove what is mounted.
        if (done_ && umount2(at_.c_str(), MNT_DETACH) != 0) abort();
    }
    Mounted(const Mounted&) = delete;
    Mounted& operator=(const Mounted&) = delete;

    /// Returns false if the test may not mount.
    bool done() const { return done_; }

  private:
    std::string at_;
    bool done_ = false;
};

}  // namespace hl::test
