// Things to be moved, places to move them to, and what is seen of them there.
#pragma once

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/linux/descriptor.h"
#include "platform/linux/moving.h"
#include "support/kinds.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl::test {

namespace fs = std::filesystem;
inline int moveTo(const FilePlace& from, const FilePlace& to) {
    Whereabouts whereabouts;
    return moveEntry(from, to, whereabouts);
}

inline int moveTo(const std::string& from, const std::string& to) {
    return moveTo(FilePlace{from}, FilePlace{to});
}

inline struct stat factsOf(const std::string& path) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) facts = {};
    return facts;
}

// 0 if there is nothing.
inline ino_t inodeOf(const std::string& path) {
    return factsOf(path).st_ino;
}

inline std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
    return names;
}

class MovingTest : public testing::Test {
  protected:
    MovingTest() {
        fs::create_directory(at("sub"));
        chmod(dir.path().c_str(), 0755);
    }
    std::string at(const std::string& name) const { return dir.path() + "/" + name; }

    TempDir dir;
};

// A small file system on a folder of its own, or a folder of one that is there.
class OtherMount {
  public:
    explicit OtherMount(const char* options) {
        mounted_ = mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, options) == 0;
        if (mounted_) return;
        shared_ = std::make_unique<TempDir>("/dev/shm");
    }
    ~OtherMount() {
        if (mounted_) umount2(folder_.path().c_str(), MNT_DETACH);
    }
    bool isMounted() const { return mounted_; }
    const std::string& path() const { return mounted_ ? folder_.path() : shared_->path(); }
    std::string at(const std::string& name) const { return path() + "/" + name; }

  private:
    TempDir folder_;
    std::unique_ptr<TempDir> shared_;
    bool mounted_ = false;
};

}  // namespace hl::test
