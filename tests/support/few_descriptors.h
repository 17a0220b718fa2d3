// Makes a process run out of file descriptors.
#pragma once

#include <sys/resource.h>

namespace hl::test {

/// While it lives, the process may open only `count` more files.
class FewDescriptors {
  public:
    explicit FewDescriptors(int count) {
        getrlimit(RLIMIT_NOFILE, &before_);
        std::vector<int> free;
        for (int i = 0; i < count; ++i) free.push_back(open("/dev/null", O_RDONLY));
        for (const int one : free) close(one);
        const rlimit few{free.empty() ? 0 : static_cast<rlim_t>(free.back()) + 1, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

  private:
    rlimit before_{};
};

}  // namespace hl::test
