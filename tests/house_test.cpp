// Tests which room sees what of the others and of the system, and what the program needs of its machine. The
// table is the layout of src/ as CONTRIBUTING.md describes it.

#include "support/program.h"

namespace {

namespace fs = std::filesystem;
using Rooms = std::set<std::string>;

Rooms operator+(Rooms a, const Rooms& b) {
    a.insert(b.begin(), b.end());
    return a;
}

const Rooms kScanUses = {"base", "grid", "platform", "robustness", "app"};
const Rooms kSavedUses = kScanUses + Rooms{"scan"};
const Rooms kViewsUse = kSavedUses + Rooms{"scan/saved"};
const Rooms kFormsUse = kViewsUse + Rooms{"views"};
const Rooms kFrameUses = kFormsUse + Rooms{"fileops", "output"};
const Rooms kStartUses = kFrameUses + Rooms{"mainwindow"};

/// Returns what an implementation of platform may include: the interfaces, and those of its own folders that
/// are lower.
Rooms wing(const Rooms& below = {}) {
    return Rooms{"base", "grid", "platform"} + below;
}

const Rooms kLinuxScanUses = wing({"platform/linux/process", "platform/linux/drives"});
const Rooms kLinuxChangeUses = kLinuxScanUses + Rooms{"platform/linux/scan"};
const Rooms kQtGridUses = wing({"platform/qt/common", "platform/qt/forms"});
const Rooms kQtWindowUses =
    kQtGridUses + Rooms{"platform/qt/grid",  "platform/qt/bars", "platform/qt/preview",
                        "platform/qt/print", "platform/qt/map",  "platform/desktop"};

/// The other implementations that `main.cpp` may name.
const Rooms kImplementations = {"platform/linux/process", "platform/linux/drives", "platform/linux/scan",
                                "platform/linux/change",  "platform/linux/space",  "platform/linux/preview",
                                "platform/qt/preview",    "platform/qt/window"};

/// Each folder of src/, and the folders that it may include besides itself. "" is src/ itself, that is,
/// main.cpp.
const std::map<std::string, Rooms> kHouse = {
    {"base", {}},
    {"grid", {"base"}},
    {"platform", {"base", "grid"}},
    {"platform/linux/process", wing()},
    {"platform/linux/drives", wing({"platform/linux/process"})},
    {"platform/linux/scan", kLinuxScanUses},
    {"platform/linux/change", kLinuxChangeUses},
    {"platform/linux/space", kLinuxChangeUses + Rooms{"platform/linux/change"}},
    {"platform/linux/preview", wing({"platform/linux/process", "platform/linux/drives"})},
    {"platform/desktop", wing()},
    {"platform/qt/common", wing()},
    {"platform/qt/forms", wing({"platform/qt/common"})},
    {"platform/qt/grid", kQtGridUses},
    {"platform/qt/print", kQtGridUses + Rooms{"platform/qt/grid"}},
    {"platform/qt/bars", wing({"platform/qt/common"})},
    {"platform/qt/preview", wing({"platform/qt/common"})},
    {"platform/qt/map", wing({"platform/qt/common"})},
    {"platform/qt/window", kQtWindowUses},
    {"robustness", {"base", "platform"}},
    {"app", {"base", "platform", "robustness"}},
    {"scan", kScanUses},
    {"scan/saved", kSavedUses},
    {"views", kViewsUse},
    {"fileops", kFormsUse},
    {"output", kFormsUse},
    {"mainwindow", kFrameUses},
    {"start", kStartUses},
    {"", kStartUses + kImplementations + Rooms{"start"}}};

std::string roomOf(const std::string& path) {
    return fs::path(path).parent_path().string();
}

/// Returns "<name" or "\"name" of an include line, or an empty text for any other line.
std::string included(std::string line) {
    std::erase_if(line, [](char c) { return c == ' ' || c == '\t'; });
    if (!line.starts_with("#include")) return "";
    const std::string rest = line.substr(std::string_view("#include").size());
    return rest.substr(0, rest.find_first_of(">\"", 1));
}

/// Only headers of standard C++ have no ".h" and no folder.
bool isStandard(const std::string& header) {
    return std::all_of(header.begin(), header.end(),
                       [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_'; });
}

/// Returns the only room, with the rooms in it, that may include this header, which is not standard C++.
std::string ownerOf(const std::string& header) {
    if (header[0] == 'Q') return "platform/qt/";
    if (header.starts_with("gst/")) return "platform/qt/preview";
    return header.starts_with("gio/") ? "platform/desktop" : "platform/linux/";
}

/// Tells whether a line deals with the system's error numbers, which only its implementations know; the trap
/// also translates what the library throws.
bool readsErrorNumber(const std::string& room, const std::string& line) {
    if (room.starts_with("platform/linux")) return false;
    return line.find("errno") != std::string::npos ||
           (room != "robustness" && line.find("<system_error>") != std::string::npos);
}

/// Returns what is wrong with one line of a file in `room`, or an empty text.
std::string fault(const std::string& room, const std::string& line) {
    if (readsErrorNumber(room, line)) return "an error number of the system";
    const std::string include = included(line);
    if (include.empty()) return "";
    const std::string name = include.substr(1);
    if (include[0] == '<') {
        return isStandard(name) || room.starts_with(ownerOf(name))
                   ? ""
                   : "a header of the system or of the desktop";
    }
    const std::string other = roomOf(name);
    if (!kHouse.contains(other)) return "no room of that name";
    return other == room || kHouse.at(room).contains(other) ? "" : "not to be seen from here";
}

/// Returns "FILE: LINE: what is wrong" for each fault in the sources below `src`.
std::vector<std::string> faultsBelow(const fs::path& src) {
    std::vector<std::string> found;
    for (const auto& file : fs::recursive_directory_iterator(src)) {
        const std::string path = fs::relative(file.path(), src).string();
        const bool code = !path.ends_with("CMakeLists.txt") && !path.ends_with(".clang-tidy");
        if (!file.is_regular_file() || !code) continue;
        const std::string room = roomOf(path);
        if (!kHouse.contains(room)) {
            found.push_back(path + ": its folder is not in the table");
            continue;
        }
        std::ifstream in(file.path());
        for (std::string line; std::getline(in, line);) {
            const std::string what = fault(room, line);
            if (!what.empty()) found.push_back(path + ": " + line + ": " + what);
        }
    }
    return found;
}

TEST(House, EveryRoomSeesOnlyWhatItMay) {
    EXPECT_EQ(faultsBelow(HARBORLANTERN_SOURCE_DIR "/src"), std::vector<std::string>());
}

// A machine that has only the C++ library must be able to run the program, too.
/// Returns the libraries that a file needs, up to the first point or dash: "libc", "libstdc++", "ld".
std::set<std::string> librariesOf(const std::string& file) {
    std::istringstream lines(hl::test::outputOf("LC_ALL=C readelf -d '" + file + "'"));
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("(NEEDED)") == std::string::npos) continue;
        const std::string name = line.substr(line.find('[') + 1);
        names.insert(name.substr(0, name.find_first_of(".-]")));
    }
    return names;
}

TEST(Program, LinksTheCxxLibraryAndLibcAlone) {
    std::set<std::string> names = librariesOf(HARBORLANTERN_PROGRAM);
    EXPECT_EQ(names.count("libc"), 1U) << "readelf has told nothing";
    for (const char* fine : {"libstdc++", "libgcc_s", "libm", "libc", "ld"}) names.erase(fine);
#ifdef HARBORLANTERN_SANITIZED
    for (const char* fine : {"libasan", "libubsan", "libtsan"}) names.erase(fine);
#endif
    for (const std::string& other : names) ADD_FAILURE() << "The program needs " << other;
}

}  // namespace
