// A file system of its own for a test: made in a file, mounted through a loop device, unmounted and removed
// after the test. Needs root and the tools of that file system.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/temp_dir.h"

namespace hl::test {

/// Runs a line of the shell, without its output. Returns whether it succeeded.
inline bool shellDoes(const std::string& line) {
    return std::system(("( " + line + " ) >/dev/null 2>&1").c_str()) == 0;
}

class ImageMount {
  public:
    /// Makes an image of `megabytes` with mkfs.KIND ("ext4", "xfs", "btrfs") and mounts it. `makeOptions` and
    /// `mountOptions` go to mkfs and to "mount -o" as they are.
    explicit ImageMount(const std::string& kind, std::uint64_t megabytes = 512,
                        const std::string& makeOptions = {}, const std::string& mountOptions = {}) {
        if (::geteuid() != 0) {
            missing_ = "only root can mount an image";
            return;
        }
        std::ofstream(image()).close();
        std::filesystem::resize_file(image(), megabytes << 20);
        std::filesystem::create_directories(path());
        const char* quiet = kind == "ext4" ? " -q -F " : " -q -f ";
        if (!shellDoes("mkfs." + kind + quiet + makeOptions + " '" + image() + "'")) {
            missing_ = "mkfs." + kind + " " + makeOptions + " cannot make the image";
            return;
        }
        options_ = "loop" + (mountOptions.empty() ? "" : "," + mountOptions);
        if (!mount()) missing_ = "the kernel cannot mount " + kind;
    }
    ~ImageMount() {
        if (mounted_ && !unmount()) std::abort();  // Otherwise what is mounted would be removed.
    }
    ImageMount(const ImageMount&) = delete;
    ImageMount& operator=(const ImageMount&) = delete;

    /// Returns why there is no mount, for GTEST_SKIP; empty if there is one.
    const std::string& missing() const { return missing_; }
    /// Returns where it is mounted, without a separator at the end.
    std::string path() const { return folder_.path() + "/mount"; }

    /// Writes all that the file system holds back to the image.
    void sync() const {
        const int folder = ::open(path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0) return;
        ::syncfs(folder);
        ::close(folder);
    }
    /// Mounts the image anew: the file system holds nothing back then, and counts as it does after a start.
    bool remount() { return unmount() && mount(); }

  private:
    std::string image() const { return folder_.path() + "/image"; }
    bool mount() {
        return mounted_ = shellDoes("mount -o '" + options_ + "' '" + image() + "' '" + path() + "'");
    }
    // The loop device goes with the mount. Something that still runs may hold a folder for a moment.
    bool unmount() {
        for (int tries = 0; mounted_ && tries < 50; ++tries) {
            mounted_ = !shellDoes("umount '" + path() + "'");
            if (mounted_) ::usleep(100'000);
        }
        return !mounted_;
    }

    TempDir folder_;
    std::string missing_, options_;
    bool mounted_ = false;
};

}  // namespace hl::test
