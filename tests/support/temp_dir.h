// A fresh folder for one test, gone with it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace hl::test {

class TempDir {
  public:
    /// Below `base`, or TMPDIR, or /tmp.
    explicit TempDir(std::string_view base = {}) {
        const char* tmp = getenv("TMPDIR");
        path_ = base.empty() ? std::string(tmp != nullptr ? tmp : "/tmp") : std::string(base);
        path_ += "/harborlantern-test.XXXXXX";
        if (mkdtemp(path_.data()) == nullptr) abort();
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace hl::test
