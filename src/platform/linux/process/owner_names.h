// The names of users, asked of the system's table. That may lie on a server, so a helper asks; if it does not
// answer within two seconds, nothing more is asked of it.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>

#include "platform/owner_names.h"

namespace hl {

/// The questions to the system's table. They may hang, and are asked on another thread.
struct UserTable {
    std::function<std::optional<std::string>(std::uint32_t uid)> name;
    std::function<std::optional<std::uint32_t>(const std::string& name)> number;
};
UserTable systemUserTable();

class LinuxOwnerNames final : public OwnerNames {
  public:
    explicit LinuxOwnerNames(UserTable table = systemUserTable(),
                             std::chrono::milliseconds patience = std::chrono::seconds(2))
        : table_(std::make_shared<UserTable>(std::move(table))), patience_(patience) {}

    std::string nameOf(std::uint32_t uid) override;
    std::optional<std::uint32_t> numberOf(const std::string& name) override;

  private:
    template <class Answer>
    std::optional<Answer> ask(std::function<std::optional<Answer>()> question);

    std::shared_ptr<UserTable> table_;  ///< Shared with helpers that were left behind.
    const std::chrono::milliseconds patience_;
    bool silent_ = false;
    std::map<std::uint32_t, std::string> names_;
};

}  // namespace hl
