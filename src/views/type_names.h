// The desktop's name for the type of a file. Thread of the logic only.
#pragma once

#include <string>

#include "platform/file_types.h"
#include "platform/files.h"

namespace hl {

class TypeNames {
  public:
    /// Both must outlive it.
    TypeNames(FileTypes& types, Files& files) : types_(types), files_(files) {}

    /// By the name alone where that decides, else by a look into the file, which costs about 0.1 ms. In one
    /// folder kMostLooks files are looked into; the others then have no type: empty, as for what is no
    /// regular file.
    std::string of(const std::string& path);

    static constexpr int kMostLooks = 2000;

  private:
    FileTypes& types_;
    Files& files_;
    std::string folder_;  ///< Of the last look.
    int looks_ = 0;       ///< In that folder, one after the other.
};

}  // namespace hl
