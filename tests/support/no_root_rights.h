// Takes the rights from root by which it reads every folder.
#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>

namespace hl::test {

/// While it lives, permissions count for this thread, and for the threads that it starts, also if it is
/// root's.
class NoRootRights {
  public:
    NoRootRights() {
        ::syscall(SYS_capget, &header_, before_);
        __user_cap_data_struct now[2] = {before_[0], before_[1]};
        now[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        ::syscall(SYS_capset, &header_, now);
    }
    ~NoRootRights() { ::syscall(SYS_capset, &header_, before_); }
    NoRootRights(const NoRootRights&) = delete;
    NoRootRights& operator=(const NoRootRights&) = delete;

  private:
    __user_cap_header_struct header_{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct before_[2] = {};
};

}  // namespace hl::test
