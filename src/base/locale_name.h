// Compares names of locales, such as "de_CH.UTF-8".
#pragma once

#include <string_view>

namespace hl {

/// Tells whether `locale` is `name`, perhaps followed by a country, an encoding or a variant.
inline bool belongsTo(std::string_view locale, std::string_view name) {
    if (!locale.starts_with(name)) return false;
    return locale.size() == name.size() ||
           std::string_view("_.@").find(locale[name.size()]) != std::string_view::npos;
}

}  // namespace hl
