// The system's files; it counts what is written, and fails where a test wants that.
#pragma once

#include <string>

#include "platform/linux/change/files.h"

namespace hl::test {

class WatchedFiles : public LinuxFiles {
  public:
    int replacements = 0;
    /// If it is not 0, every reading fails with this error.
    int readError = 0;

    std::optional<std::string> readWhole(const std::string& path, std::size_t limit, int& error) override {
        error = readError;
        return readError != 0 ? std::nullopt : LinuxFiles::readWhole(path, limit, error);
    }
    std::unique_ptr<ReplacingFile> replace(const std::string& path, int& error) override {
        ++replacements;
        return LinuxFiles::replace(path, error);
    }
};

}  // namespace hl::test
