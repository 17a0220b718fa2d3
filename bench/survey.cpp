// Measures a survey of what a delete gives back: bench_survey TREE prints the milliseconds to the first
// figure and to the last, the files, and the bytes that the process grew by. Nothing is changed.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "platform/linux/space/freed_surveys.h"
#include "platform/linux/space/open_files.h"

namespace {

using namespace hl;
using Clock = std::chrono::steady_clock;

/// Returns the largest size that the process had in memory so far, in KiB.
long mostMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stol(line.substr(line.find_first_of("0123456789")));
    return 0;
}

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    LinuxFreedSurveys surveys(std::make_shared<DirectoryCalls>(), std::make_shared<LinuxOpenFiles>());
    const long before = mostMemory();
    const auto begin = Clock::now();
    const auto survey = surveys.begin({{argv[1]}});
    double first = 0;
    FreedSpace figures;
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        figures = survey->figures();
        if (first == 0 && figures.all.files > 0) first = milliseconds(Clock::now() - begin);
    } while (figures.state != SurveyState::kEnded);
    std::printf("first %.0f ms, last %.0f ms, %llu files, %ld KiB more\n", first,
                milliseconds(Clock::now() - begin), static_cast<unsigned long long>(figures.all.files),
                mostMemory() - before);
}
