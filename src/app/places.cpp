#include "app/places.h"

#include "app/product.h"
#include "base/absolute_path.h"
#include "base/path.h"

namespace hl {

namespace {

// Returns the folder that the first line of the file `installed` names.
std::string sharedFolder(Files& files, const std::string& file, const std::string& beside) {
    const std::string text = files.readWhole(file, 4096).valueOr("");
    return absoluteSource(text.substr(0, text.find('\n')), {.current = beside, .home = ""}, kPosixPaths);
}

// Returns the user's folder of settings, or an empty text if the user has no home.
std::string userFolder(const PlaceFacts& facts) {
    if (facts.configHome.starts_with('/')) return joinPath(facts.configHome, kUserFolderName, kPosixPaths);
    if (facts.home.empty()) return {};
    return joinPath(joinPath(facts.home, ".config", kPosixPaths), kUserFolderName, kPosixPaths);
}

}  // namespace

Places placesOf(Files& files, const PlaceFacts& facts) {
    const std::string& beside = facts.executableFolder;
    Places places{.own = facts.named.empty() ? beside : facts.named, .texts = beside, .data = beside};
    const std::string installed = joinPath(beside, kInstalledName, kPosixPaths);
    places.installed = files.exists(installed);
    if (!places.installed) return places;
    if (const std::string folder = userFolder(facts); facts.named.empty() && !folder.empty()) {
        places.ofUser = true;
        places.own = folder;
    }
    places.data = sharedFolder(files, installed, beside);
    places.texts = places.data + "/lang";
    return places;
}

}  // namespace hl
