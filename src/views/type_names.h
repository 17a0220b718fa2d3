// Finds the desktop's name for the type of a file. For the thread of the logic only.
#pragma once

#include <string>

#include "platform/file_types.h"
#include "platform/files.h"
#include "scan/file_type_names.h"

namespace hl {

class TypeNames final : public FileTypeNames {
  public:
    /// The arguments must outlive it.
    TypeNames(FileTypes& types, Files& files) : types_(types), files_(files) {}

    /// Decides by the name alone if possible, else by looking into the file, which costs about 0.1 ms. At
    /// most kMostLooks files are looked into between two restarts; further ones have no type. Empty if there
    /// is no type, as for what is no regular file.
    std::string of(const std::string& path) override;
    void restart() override { looks_ = 0; }

    static constexpr int kMostLooks = 1000;

  private:
    FileTypes& types_;
    Files& files_;
    int looks_ = 0;
};

}  // namespace hl
