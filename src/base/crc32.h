// The CRC-32 of zip, gzip and PNG. For one thread.
#pragma once

#include <cstdint>
#include <string_view>

namespace hl {

class Crc32 {
  public:
    void add(std::string_view bytes);
    /// Of all bytes so far.
    std::uint32_t value() const { return ~state_; }

  private:
    std::uint32_t state_ = 0xFFFF'FFFF;
};

}  // namespace hl
