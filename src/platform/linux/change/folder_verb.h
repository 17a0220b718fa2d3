// Makes the desktop's entry for folders, in the user's own folder of freedesktop menu entries. For the thread
// of the logic.
//
// The entry names the type of files it opens and is in no menu. No list of the user's choices is changed: the
// user or the desktop decides which program opens folders by default.
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

    Result<> offer(const FolderOffer& offer) override;
    Result<> withdraw() override;

    /// Returns the folder of the entries; empty if neither variable names one.
    const std::string& folder() const { return folder_; }

  private:
    std::string folder_;
    std::string path_;
};

/// Returns the content of the entry.
std::string folderEntryText(const FolderOffer& offer);

}  // namespace hl
