// The system's files, with a count of what was asked of them.
#pragma once

#include <string>

#include "platform/linux/files.h"

namespace hl::test {

class WatchedFiles : public Files {
  public:
    int replacements = 0;
    /// If not 0, the error with which every reading fails.
    int readError = 0;

    std::optional<std::string> readWhole(const std::string& path, std::size_t limit, int& error) override {
        error = readError;
        return readError != 0 ? std::nullopt : files_.readWhole(path, limit, error);
    }
    std::optional<std::string> beginning(const std::string& path, std::size_t count) override {
        return files_.beginning(path, count);
    }
    std::unique_ptr<ReplacingFile> replace(const std::string& path, int& error) override {
        ++replacements;
        return files_.replace(path, error);
    }
    int append(const std::string& path, std::string_view bytes) override {
        return files_.append(path, bytes);
    }
    bool exists(const std::string& path) override { return files_.exists(path); }
    std::shared_ptr<void> lockFolderOf(const std::string& path) override { return files_.lockFolderOf(path); }

  private:
    LinuxFiles files_;
};

}  // namespace hl::test
