#include "app/log.h"

#include "platform/linux/change/files.h"

namespace hl::test {
namespace {

struct LogFiles : testing::Test {
    std::string content(const std::string& name) const { return contentOf(dir.path() + "/" + name); }

    TempDir dir;
    LinuxFiles files;
    DateFormat dates{"dd.MM.yyyy", "hh:nn:ss"};
    Log log{files, dir.path(), dates, [] { return LocalTime{2024, 2, 29, 7, 5, 9}; }};
};

TEST_F(LogFiles, TakeOneLineBehindTheEarlierOnesForEachEventOfTheProtocol) {
    writeFile(dir.path() + "/Harborlantern.log", "earlier\r\n");
    log.LogProtokoll("Zugriffsfehler: /a\r\nb\nc\xFF\x1b[2J\x7F");
    log.LogProtokoll("");
    EXPECT_EQ(
        content("Harborlantern.log"),
        "earlier\r\n29.02.2024 07:05:09 - Zugriffsfehler: /a␍␊b␊c\uFFFD␛[2J␡\r\n29.02.2024 07:05:09 - \r\n");
}

TEST_F(LogFiles, TakeAnErrorReportWithOrWithoutStampAndTheDetailsOfATechnicalFailure) {
    log.LogError("Time: now\r\nApp: x", true, true);
    log.LogError("bare", false, false);
    EXPECT_EQ(content("error.log"), "29.02.2024 07:05:09 - Time: now\r\nApp: x\r\n\r\nbare\r\n");
    log.LogDebug("ParseDisplayName", {"#2 - x", 5, 8.5, true, "a\nb"});
    EXPECT_EQ(content("debug.log"), "29.02.2024 07:05:09 - ParseDisplayName, #2 - x, 5, 8.5, 1, a␊b\r\n");
}

TEST_F(LogFiles, DisturbNobodyWhereTheyCannotBeWritten) {
    Log nowhere(files, dir.path() + "/missing", dates);
    Log broken(files, dir.path(), dates, []() -> LocalTime { throw std::runtime_error("no clock"); });
    for (Log* failing : {&nowhere, &broken}) {
        failing->LogProtokoll("x");
        failing->LogError("x", true, true);
        failing->LogDebug("x");
    }
    EXPECT_EQ(content("Harborlantern.log") + content("error.log") + content("debug.log"), "");
}

}  // namespace
}  // namespace hl::test
