// A fresh folder for one test, removed after it.
#pragma once

#include <stdlib.h>

namespace hl::test {

class TempDir {
  public:
    /// Makes the folder below `base`, or, if that is empty or no folder can be made there, below TMPDIR or
    /// /tmp.
    explicit TempDir(std::string_view base = {}) {
        const char* tmp = getenv("TMPDIR");
        if (!base.empty() && make(base)) return;
        if (!make(tmp != nullptr ? tmp : "/tmp")) abort();
    }
    ~TempDir() { remove(path_); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    /// Removes a folder. The library's own removal calls itself for each level, too often for a long chain.
    static void remove(const std::string& folder) {
        if (::system(("rm -rf --one-file-system '" + folder + "'").c_str()) != 0) return;
    }

  private:
    bool make(std::string_view above) {
        path_ = std::string(above) + "/harborlantern-test.XXXXXX";
        return mkdtemp(path_.data()) != nullptr;
    }

    std::string path_;
};

}  // namespace hl::test
