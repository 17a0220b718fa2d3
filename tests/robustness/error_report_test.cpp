#include "robustness/error_report.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "robustness/fakes.h"

namespace hl {
namespace {

using namespace std::chrono_literals;

class ErrorReport : public testing::Test {
  protected:
    ErrorReport() {
        app.minor = 4;
        app.revision = 2;
        app.executable = "/opt/bin/harborlantern";
        app.screen = [] { return ScreenFacts{1920, 1080, 32}; };
        app.startTime = now - 3725s;
    }
    std::string build() {
        return BuildErrorReport({"QuelleEinlesen", "frmMain", 42}, Fault(13, "", "Type mismatch"), app,
                                system, now);
    }
    /// The line that begins with `label`; empty if there is none.
    std::string line(const std::string& label) {
        const std::string report = "\r\n" + build() + "\r\n";
        const std::size_t at = report.find("\r\n" + label);
        return at == std::string::npos ? "" : report.substr(at + 2, report.find("\r\n", at + 2) - at - 2);
    }

    std::chrono::system_clock::time_point now = std::chrono::system_clock::now();
    AppFacts app;
    test::FakeSystemFacts system;
};

TEST_F(ErrorReport, TellsAllItsLinesInOrderWithNoLineEndBehindTheLast) {
    app.commandLine = "\"/home\" -s";
    EXPECT_EQ(build(),
              "Time: " + formatDate(localTime(now), app.dates.general()) +
                  "\r\nApp: Harborlantern 0.4.2\r\nModul: frmMain\r\nFunc: QuelleEinlesen\r\nLine: 42"
                  "\r\nErr: 13 - Type mismatch\r\nPath: /opt/bin/harborlantern"
                  "\r\nAppUp: 1:02:05\r\nSysUp: 1 day 1:01:01"
                  "\r\nOS: Debian GNU/Linux 12 (bookworm) Version: 6.1 ID: debian 12 B6.1.0-18-amd64"
                  "\r\n64bit: False\r\nIE: 0.0.0\r\nPhysRAM: 1.00 MB Free / 4.00 MB Total"
                  "\r\nMemLoad: 75%\r\nRAM used: 1.50 MB"
                  "\r\nPagefile: 2.00 MB Free / 8.00 MB Total\r\nVirtMem: 3.00 MB Free / 16.00 MB Total"
                  "\r\nCPU: Some CPU\r\nScreen: 1920x1080x4294967296 (32)"
                  "\r\nCommand: \"/home\" -s\r\nPortable: 1\r\nUser: ada\r\nComp: engine");
}

TEST_F(ErrorReport, VariesItsLinesWithWhatItIsTold) {
    app.numbers = {".", ","};
    system.memoryFacts.physicalTotal = std::uint64_t{5} << 40;
    EXPECT_EQ(line("PhysRAM: "), "PhysRAM: 1,00 MB Free / 5.242.880,00 MB Total");
    system.memoryFacts.virtualTotal = UINT64_MAX;
    EXPECT_NE(line("VirtMem: "), "") << "far beyond the largest size";
    EXPECT_EQ(line("Command: "), "") << "there was none";
}

TEST_F(ErrorReport, ComesOutWithAllItsLinesWhenNothingCanBeLearned) {
    system.broken = true;
    const std::string report = build();
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 21);
    EXPECT_EQ(line("SysUp: "), "SysUp: 0:00:00");
}

}  // namespace
}  // namespace hl
