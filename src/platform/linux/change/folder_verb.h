// The offer for folders as an entry of the freedesktop menus, in the user's own folder of such entries.
//
// The entry names the kind of files it opens and is in no menu. No list of the user's choices is touched:
// which program opens folders by default stays with what he or the desktop has chosen there.
#pragma once

#include <string>
#include <string_view>

#include "platform/folder_verb.h"

namespace hl {

class LinuxFolderVerb final : public FolderVerb {
  public:
    /// The entry is the file `entryName` + ".desktop". `dataHome` is $XDG_DATA_HOME, which counts only if it
    /// is absolute; `home` is $HOME.
    LinuxFolderVerb(std::string_view entryName, const std::string& dataHome, const std::string& home);

    FolderVerbFailure offer(const FolderOffer& offer) override;
    FolderVerbFailure withdraw() override;

    /// The folder of the entries; empty if neither variable names one.
    const std::string& folder() const { return folder_; }

  private:
    std::string folder_;
    std::string path_;
};

/// The content of the entry.
std::string folderEntryText(const FolderOffer& offer);

}  // namespace hl
