// Finds the desktop's name for the type of a file. For the thread of the logic only.
#pragma once

#include <string>

#include "app/texts.h"
#include "platform/file_types.h"
#include "platform/files.h"
#include "scan/file_type_names.h"

namespace hl {

class TypeNames final : public FileTypeNames {
  public:
    /// The arguments must outlive it.
    TypeNames(FileTypes& types, Files& files, const Texts& texts)
        : types_(types), files_(files), any_(texts.TL(9769, "Datei")) {}

    /// Decides by the name alone if possible, else by looking into the file, which costs about 0.1 ms. At
    /// most kMostLooks files are looked into between two restarts; further ones, and those of no known type,
    /// are called files. Empty for what is no regular file or cannot be looked into.
    std::string of(const std::string& path) override;
    void restart() override { looks_ = 0; }

    static constexpr int kMostLooks = 1000;

  private:
    FileTypes& types_;
    Files& files_;
    std::string any_;  ///< What a file of no known type is called.
    int looks_ = 0;
};

}  // namespace hl
