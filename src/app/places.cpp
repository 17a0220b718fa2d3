#include "app/places.h"

#include "app/product.h"
#include "base/path.h"

namespace hl {

namespace {

std::string folderAbove(const std::string& folder) {
    return folder.substr(0, folder.find_last_of('/'));
}

// Empty if the user has no home.
std::string userFolder(const PlaceFacts& facts) {
    if (facts.configHome.starts_with('/')) return joinPath(facts.configHome, kUserFolderName, kPosixPaths);
    if (facts.home.empty()) return {};
    return joinPath(joinPath(facts.home, ".config", kPosixPaths), kUserFolderName, kPosixPaths);
}

}  // namespace

Places placesOf(Files& files, const PlaceFacts& facts) {
    const std::string& beside = facts.executableFolder;
    Places places{.own = facts.named.empty() ? beside : facts.named, .texts = beside, .data = beside};
    places.installed = files.exists(joinPath(beside, kInstalledName, kPosixPaths));
    if (!places.installed) return places;
    if (const std::string folder = userFolder(facts); facts.named.empty() && !folder.empty()) {
        places.ofUser = true;
        places.own = folder;
    }
    places.data = folderAbove(folderAbove(beside)) + "/share/" + std::string(kUserFolderName);
    places.texts = places.data + "/lang";
    return places;
}

}  // namespace hl
