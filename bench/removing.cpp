// Removes a tree as the window does, watched by the thread of the logic, and prints what it took: "seconds",
// "entries", "waits" (how often the logic was called), "longest_ms" (the longest time between two calls) and
// "memory_kib" (by how much the process grew).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

#include "platform/linux/change/file_operations.h"

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::time_point from) {
    return std::chrono::duration<double, std::milli>(Clock::now() - from).count();
}

/// Returns the peak of this program. That of getrusage also counts the program that started this one.
long peakKib() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stol(line.substr(line.find(':') + 1));
    return 0;
}

class Looks final : public hl::OperationWatch {
  public:
    bool stillAt(const std::string&, bool) override {
        longest_ = std::max(longest_, milliseconds(last_));
        last_ = Clock::now();
        ++count_;
        return true;
    }
    double longest() const { return longest_; }
    int count() const { return count_; }

  private:
    Clock::time_point last_ = Clock::now();
    double longest_ = 0;
    int count_ = 0;
};

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) return std::fprintf(stderr, "usage: bench_removing FOLDER\n"), 2;
    hl::LinuxFileOperations operations(std::make_shared<hl::DirectoryCalls>(), {});
    Looks looks;
    const long before = peakKib();
    const Clock::time_point start = Clock::now();
    const hl::Removal removal = operations.removeTree({arguments[1]}, looks);
    std::printf("seconds %.3f\nentries %llu\nwaits %d\nlongest_ms %.1f\nmemory_kib %ld\n",
                milliseconds(start) / 1000, static_cast<unsigned long long>(removal.entries), looks.count(),
                looks.longest(), peakKib() - before);
    return removal.removed ? 0 : 1;
}
