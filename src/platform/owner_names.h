// The names of users, as the system's table of users has them. For the thread of the logic only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace hl {

class OwnerNames {
  public:
    virtual ~OwnerNames() = default;
    /// Returns the user's name, or "#" and the number if the table gives none in time. Each number is asked
    /// for once.
    virtual std::string nameOf(std::uint32_t uid) = 0;
    /// Returns the number of the user with that name, if the table gives one in time.
    virtual std::optional<std::uint32_t> numberOf(const std::string& name) = 0;
};

}  // namespace hl
