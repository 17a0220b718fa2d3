#include "platform/linux/process/programs.h"

#include <dlfcn.h>
#include <spawn.h>
#include <unistd.h>

#include "platform/linux/process/fault_signals.h"

namespace hl {

int startProgram(const std::string& executable, const std::vector<std::string>& arguments) {
    std::vector<std::string> words = arguments;
    words.insert(words.begin(), executable);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    return posix_spawn(&child, executable.c_str(), nullptr, nullptr, pointers.data(), environ);
}

WindowModuleFunction loadWindowModule(const std::string& path, std::string& reason) {
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* function = module != nullptr ? dlsym(module, kWindowModuleFunction) : nullptr;
    if (function != nullptr) {
        LinuxFaultSignals().addOwnModule(function);
        return reinterpret_cast<WindowModuleFunction>(function);
    }
    const char* error = dlerror();
    reason = error != nullptr ? error : path;
    return nullptr;
}

}  // namespace hl
