#include "robustness/error_report.h"

#include <algorithm>

#include "base/size_text.h"
#include "robustness/attempt.h"
#include "robustness/time_spans.h"

namespace hl {

namespace {

class Lines {
  public:
    void add(std::string_view label, std::string_view value) {
        if (!text_.empty()) text_ += "\r\n";
        text_.append(label).append(value);
    }
    std::string take() { return std::move(text_); }

  private:
    std::string text_;
};

std::string versionText(const AppFacts& app) {
    return app.title + " " + std::to_string(app.major) + "." + std::to_string(app.minor) + "." +
           std::to_string(app.revision);
}

std::string memoryText(std::uint64_t bytes, const AppFacts& app) {
    const std::uint64_t limit = SizeValue::kMaxBytes;
    return FormatSizeForMode(kModeMegabytes, SizeValue::fromBytes(std::min(bytes, limit)), true, false,
                             app.numbers);
}

std::string freeAndTotal(std::uint64_t available, std::uint64_t total, const AppFacts& app) {
    return memoryText(available, app) + " Free / " + memoryText(total, app) + " Total";
}

std::string colourDepthText(int depth) {
    switch (depth) {
        case 1:
            return "Monchrom";
        case 4:
            return "16";
        case 8:
            return "256";
        case 16:
            return "65536 (16)";
        case 32:
            return "4294967296 (32)";
        default:
            return "UNKNOWN";
    }
}

void addFailure(Lines& lines, const TrapPlace& place, const Fault& fault) {
    lines.add("Modul: ", place.module);
    lines.add("Func: ", place.routine);
    lines.add("Line: ", std::to_string(place.line));
    lines.add("Err: ", std::to_string(fault.number()) + " - " + fault.description());
}

void addSystem(Lines& lines, SystemFacts& system) {
    const SystemName name = attempt([&] { return system.systemName(); });
    lines.add("OS: ", name.name + " Version: " + name.version + " ID: " + name.identifier);
    lines.add("64bit: ", booleanWord(attempt([&] { return system.emulated(); })));
    lines.add("IE: ", "0.0.0");  // No browser component is used, so there is no version of one to tell.
}

void addMemory(Lines& lines, const AppFacts& app, SystemFacts& system) {
    const MemoryFacts memory = attempt([&] { return system.memory(); });
    lines.add("PhysRAM: ", freeAndTotal(memory.physicalAvailable, memory.physicalTotal, app));
    lines.add("MemLoad: ", std::to_string(memory.loadPercent) + "%");
    lines.add("RAM used: ", memoryText(attempt([&] { return system.workingSet(); }), app));
    lines.add("Pagefile: ", freeAndTotal(memory.pageFileAvailable, memory.pageFileTotal, app));
    lines.add("VirtMem: ", freeAndTotal(memory.virtualAvailable, memory.virtualTotal, app));
}

void addScreen(Lines& lines, const AppFacts& app) {
    const ScreenFacts screen = attempt([&] { return app.screen ? app.screen() : ScreenFacts(); });
    lines.add("Screen: ", std::to_string(screen.width) + "x" + std::to_string(screen.height) + "x" +
                              colourDepthText(screen.depth));
}

void addStart(Lines& lines, const AppFacts& app) {
    if (!app.commandLine.empty()) lines.add("Command: ", app.commandLine);
    lines.add("Portable: ", app.portable ? "1" : "0");
}

}  // namespace

std::string_view booleanWord(bool value) {
    return value ? "True" : "False";
}

std::string BuildErrorReport(const TrapPlace& place, const Fault& fault, const AppFacts& app,
                             SystemFacts& system, std::chrono::system_clock::time_point now) {
    Lines lines;
    lines.add("Time: ", formatDate(localTime(now), app.dates.general()));
    lines.add("App: ", versionText(app));
    addFailure(lines, place, fault);
    lines.add("Path: ", app.executable);
    lines.add("AppUp: ", GetDateFromDiff(app.startTime, now));
    lines.add("SysUp: ", GetSystemUpTime(attempt([&] { return system.upTimeSeconds(); })));
    addSystem(lines, system);
    addMemory(lines, app, system);
    lines.add("CPU: ", attempt([&] { return system.processorName(); }));
    addScreen(lines, app);
    addStart(lines, app);
    lines.add("User: ", attempt([&] { return system.userName(); }));
    lines.add("Comp: ", attempt([&] { return system.computerName(); }));
    return lines.take();
}

std::array<std::string, 4> BuildLastReport(const AppFacts& app, SystemFacts& system) {
    Lines behind;
    behind.add("Path: ", app.executable);
    addSystem(behind, system);
    addStart(behind, app);
    behind.add("Comp: ", attempt([&] { return system.computerName(); }));
    return {"Time: ", "\r\nApp: " + versionText(app) + "\r\nModul: ",
            "\r\nFunc: Exception Handler\r\nLine: 0\r\nErr: " + std::to_string(kFaultProcessor) + " - ",
            "\r\n" + behind.take()};
}

}  // namespace hl
