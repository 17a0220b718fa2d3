#include "platform/linux/process/owner_names.h"

#include <errno.h>
#include <pwd.h>

#include <utility>
#include <vector>

#include "platform/linux/process/helper.h"

namespace hl {

namespace {

constexpr std::size_t kFirstRoom = 1024, kMostRoom = std::size_t{1} << 20;  // Bytes of one entry.

// Calls one of getpwuid_r and getpwnam_r with as much room as the entry needs.
template <class Call, class Take>
auto lookUp(Call call, Take take) -> std::optional<decltype(take(std::declval<passwd&>()))> {
    for (std::size_t room = kFirstRoom; room <= kMostRoom; room *= 4) {
        std::vector<char> texts(room);
        passwd entry{};
        passwd* found = nullptr;
        const int error = call(&entry, texts.data(), texts.size(), &found);
        if (error == ERANGE) continue;
        if (error != 0 || found == nullptr) return std::nullopt;
        return take(*found);
    }
    return std::nullopt;
}

}  // namespace

UserTable systemUserTable() {
    return {.name =
                [](std::uint32_t uid) {
                    return lookUp([uid](auto... to) { return ::getpwuid_r(uid, to...); },
                                  [](const passwd& user) { return std::string(user.pw_name); });
                },
            .number =
                [](const std::string& name) {
                    return lookUp([&name](auto... to) { return ::getpwnam_r(name.c_str(), to...); },
                                  [](const passwd& user) { return static_cast<std::uint32_t>(user.pw_uid); });
                }};
}

template <class Answer>
std::optional<Answer> LinuxOwnerNames::ask(std::function<std::optional<Answer>()> question) {
    if (silent_) return std::nullopt;
    const auto answer = std::make_shared<std::optional<Answer>>();
    const auto helper =
        Helper::start([answer, question = std::move(question)](Whereabouts&) { *answer = question(); }, true);
    if (helper == nullptr) return std::nullopt;
    silent_ = !helper->endsWithin(patience_) && helper->leave();
    if (silent_) return std::nullopt;
    helper->rethrow();
    return *answer;
}

std::string LinuxOwnerNames::nameOf(std::uint32_t uid) {
    const auto known = names_.find(uid);
    if (known != names_.end()) return known->second;
    const auto name = ask<std::string>([table = table_, uid] { return table->name(uid); });
    const bool given = name && !name->empty();
    return names_.emplace(uid, given ? *name : "#" + std::to_string(uid)).first->second;
}

std::optional<std::uint32_t> LinuxOwnerNames::numberOf(const std::string& name) {
    return ask<std::uint32_t>([table = table_, name] { return table->number(name); });
}

}  // namespace hl
