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

    /// By the name alone where that decides, else by a look into the file, which costs about 0.1 ms. Since
    /// the last restart kMostLooks files are looked into; the others then have no type: empty, as for what is
    /// no regular file.
    std::string of(const std::string& path);
    void restart() { looks_ = 0; }

    static constexpr int kMostLooks = 1000;

  private:
    FileTypes& types_;
    Files& files_;
    int looks_ = 0;
};

}  // namespace hl
