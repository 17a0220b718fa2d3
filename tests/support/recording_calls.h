// The real system calls for reading folders, counted, and changed where a test says so.
#pragma once

#include <errno.h>

#include "platform/linux/scan/directory_calls.h"

namespace hl::test {

class RecordingCalls : public DirectoryCalls {
  public:
    // --- what was called
    std::atomic<int> opens = 0, closes = 0, looks = 0, ups = 0, blocks = 0;
    std::atomic<std::size_t> longestName = 0;
    std::map<std::string, int> looksAt, opensOf;  ///< How often, by name.

    // --- what shall happen; 0 means the real call, a negative error code that error
    std::function<int(const std::string& name)> onOpen = [](const std::string&) { return 0; };
    std::function<int(const std::string& name)> onLook = [](const std::string&) { return 0; };
    std::function<int(int nth)> onRead = [](int) { return 0; };

    int openSource(const std::string& path) override { return counted(DirectoryCalls::openSource(path)); }
    int openChild(int parent, const char* name, bool followLinks, bool crossMounts) override {
        note(name, opensOf);
        if (const int error = onOpen(name); error != 0) return error;
        return counted(DirectoryCalls::openChild(parent, name, followLinks, crossMounts));
    }
    int openAbove(int folder, unsigned levels) override {
        ++ups;
        return counted(DirectoryCalls::openAbove(folder, levels));
    }
    long readEntries(int folder, void* buffer, std::size_t bytes) override {
        if (const int error = onRead(++blocks); error != 0) return error;
        return DirectoryCalls::readEntries(folder, buffer, bytes);
    }
    int look(int folder, const char* name, bool followLinks, unsigned mask, struct statx& out) override {
        ++looks;
        note(name, looksAt);
        if (const int error = onLook(name); error != 0) return error;
        return DirectoryCalls::look(folder, name, followLinks, mask, out);
    }
    void close(int folder) override {
        ++closes;
        DirectoryCalls::close(folder);
    }

  private:
    int counted(int descriptor) {
        if (descriptor >= 0) ++opens;
        return descriptor;
    }
    void note(const std::string& name, std::map<std::string, int>& names) {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++names[name];
        if (name.size() > longestName) longestName = name.size();
    }
    std::mutex mutex_;
};

}  // namespace hl::test
