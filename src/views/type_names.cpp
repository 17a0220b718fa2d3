#include "views/type_names.h"

#include "base/path.h"

namespace hl {

std::string TypeNames::of(const std::string& path) {
    constexpr std::size_t kLookedAt = 4096;
    const std::string_view name = fileNameOf(path, kPosixPaths);
    if (const auto type = types_.typeName(name)) return *type;
    if (++looks_ > kMostLooks) return any_;
    const auto beginning = files_.beginning(path, kLookedAt);
    if (!beginning) return {};
    const std::string type = types_.typeName(name, *beginning);
    return type.empty() ? any_ : type;
}

}  // namespace hl
