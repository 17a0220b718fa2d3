// Sets environment variables for a test and restores them.
#pragma once

#include <stdlib.h>
#include <time.h>

namespace hl::test {

/// Sets variables while it lives; null removes one. The time zone follows TZ.
class Environment {
  public:
    explicit Environment(std::initializer_list<std::pair<std::string, const char*>> values) {
        for (const auto& [name, value] : values) {
            const char* old = getenv(name.c_str());
            before_[name] = old != nullptr ? std::optional<std::string>(old) : std::nullopt;
            value != nullptr ? setenv(name.c_str(), value, 1) : unsetenv(name.c_str());
        }
        tzset();
    }
    ~Environment() {
        for (const auto& [name, value] : before_)
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
        tzset();
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    std::map<std::string, std::optional<std::string>> before_;
};

}  // namespace hl::test
