#include "platform/linux/change/folder_verb.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/text.h"
#include "platform/linux/change/files.h"
#include "platform/linux/process/system_error.h"

namespace hl {

namespace {

constexpr std::size_t kLargestEntry = 1 << 20;

// Returns the value of a key, with escapes for what a line of text cannot hold, and for blanks at the front,
// which a reader drops.
std::string valueText(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                out += c == ' ' && out.empty() ? "\\s" : std::string(1, c);
        }
    }
    return out;
}

// Returns one argument of the command line. REQUIRES: it has no percent sign, which would begin a field code.
std::string argument(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '/' || c == '.';
}

// An entry is a text, so a path with control characters or bytes that are no UTF-8 is spelled out for a
// shell. So is a path with a percent sign: it could be escaped, but not all readers undo that before they
// look whether the program exists (GLib 2.74 does not).
bool canStandInText(std::string_view path) {
    return visible(path) == path && path.find('%') == std::string_view::npos;
}

// Spells the path for printf, with three octal digits for each byte.
std::string octal(std::string_view path) {
    std::string out;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isPlain(c)) {
            out += c;
        } else {
            out += {'\\', static_cast<char>('0' + (byte >> 6)), static_cast<char>('0' + ((byte >> 3) & 7)),
                    static_cast<char>('0' + (byte & 7))};
        }
    }
    return out;
}

std::string command(const std::string& executable) {
    if (canStandInText(executable)) return argument(executable) + " %F";
    const std::string script = "exec \"$(printf '" + octal(executable) + "')\" \"$@\"";
    return "/bin/sh -c " + argument(script) + " sh %F";
}

// Makes every folder on the way to `path`, and `path` itself. Returns a system error code.
int makeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        if (mkdir(path.substr(0, end).c_str(), 0700) != 0 && errno != EEXIST) return errno;
        if (end == std::string::npos) return 0;
    }
}

std::string entriesFolder(const std::string& dataHome, const std::string& home) {
    if (dataHome.starts_with('/')) return dataHome + "/applications";
    return home.starts_with('/') ? home + "/.local/share/applications" : std::string();
}

}  // namespace

LinuxFolderVerb::LinuxFolderVerb(std::string_view entryName, const std::string& dataHome,
                                 const std::string& home)
    : folder_(entriesFolder(dataHome, home)), path_(folder_ + "/" + std::string(entryName) + ".desktop") {}

// The preference is for desktops that rank entries among which nobody has chosen: ours comes behind all
// others.
std::string folderEntryText(const FolderOffer& offer) {
    return "[Desktop Entry]\nType=Application\nName=" + valueText(decodable(offer.caption)) +
           "\nExec=" + valueText(command(offer.executable)) +
           "\nTerminal=false\nNoDisplay=true\nInitialPreference=0\nMimeType=inode/directory;\n";
}

Result<> LinuxFolderVerb::offer(const FolderOffer& offer) {
    if (folder_.empty()) return systemError(ENOENT);
    LinuxFiles files;
    files.refuseUnreadPipes();
    const std::string text = folderEntryText(offer);
    if (const auto old = files.readWhole(path_, kLargestEntry); old && *old == text) return {};
    if (const int error = makeFolders(folder_); error != 0) return systemError(error, folder_);
    const Result<> written = replaceWhole(files, path_, text);
    if (written) return {};
    Error error = written.error();
    error.name = path_;
    return error;
}

Result<> LinuxFolderVerb::withdraw() {
    if (folder_.empty() || unlink(path_.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR) return {};
    return systemError(errno, path_);
}

}  // namespace hl
