#include "support/trashing.h"

namespace hl::test {

namespace {

std::string decoded(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text[i] == '%';
        out += escaped ? static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)) : text[i];
        i += escaped ? 2 : 0;
    }
    return out;
}

}  // namespace

std::string snapshotOf(const std::string& path) {
    const struct stat status = factsOf(path);
    if (status.st_ino == 0) return "nothing\n";
    std::string line = std::to_string(status.st_mode) + " " + std::to_string(status.st_ino) + " ";
    if (!S_ISDIR(status.st_mode)) line += std::to_string(status.st_mtime) + " ";
    if (S_ISREG(status.st_mode)) line += contentOf(path);
    if (S_ISLNK(status.st_mode)) line += fs::read_symlink(path).string();
    line += "\n";
    if (!S_ISDIR(status.st_mode)) return line;
    for (const std::string& name : namesIn(path)) line += name + ": " + snapshotOf(path + "/" + name);
    return line;
}

Content contentOfTrash(const std::string& trash) {
    static const std::regex kForm(
        "\\[Trash Info\\]\nPath=([A-Za-z0-9._~/-]|%[0-9A-F]{2})+\n"
        "DeletionDate=(\\d{4})-(\\d\\d)-(\\d\\d)T(\\d\\d):(\\d\\d):(\\d\\d)\n");
    constexpr std::size_t kBeforePath = std::string_view("[Trash Info]\nPath=").size();
    Content content;
    if (!fs::exists(trash + "/info")) return content;
    for (const fs::path info : namesIn(trash + "/info")) {
        const std::string path = trash + "/info/" + info.string(), text = contentOf(path);
        EXPECT_EQ(info.extension(), ".trashinfo");
        EXPECT_EQ(fs::symlink_status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
        // The library's regular expressions recurse for every character, which long texts do not allow.
        if (text.size() < 3000) {
            EXPECT_TRUE(std::regex_match(text, kForm)) << text;
        }
        const std::string name = info.stem().string();
        const std::size_t end = text.find('\n', kBeforePath);
        content[name] = decoded(text.substr(kBeforePath, end - kBeforePath));
        EXPECT_TRUE(fs::exists(fs::symlink_status(trash + "/files/" + name))) << name;
    }
    EXPECT_EQ(content.size(), namesIn(trash + "/files").size());
    return content;
}

}  // namespace hl::test
