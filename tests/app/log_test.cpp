#include "app/log.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "app/watched_files.h"
#include "support/temp_dir.h"
#include "support/whole_files.h"

namespace hl {
namespace {

class LogFiles : public testing::Test {
  protected:
    std::string content(const std::string& name) const { return test::contentOf(dir.path() + "/" + name); }

    test::TempDir dir;
    test::WatchedFiles files;
    Log log{files, dir.path(), DateFormat{"dd.MM.yyyy", "hh:nn:ss"},
            [] { return LocalTime{2024, 2, 29, 7, 5, 9}; }};
};

TEST_F(LogFiles, TakeOneLineOfTheProtocolForEachEvent) {
    log.LogProtokoll("Einlesen: /home");
    log.LogProtokoll("");
    EXPECT_EQ(content("Harborlantern.log"),
              "29.02.2024 07:05:09 - Einlesen: /home\r\n29.02.2024 07:05:09 - \r\n");
    EXPECT_EQ(files.appends, 2);
}

TEST_F(LogFiles, KeepAnEntryOfTheProtocolInItsLine) {
    log.LogProtokoll("Zugriffsfehler: /a\r\nb\nc\xFF");
    EXPECT_EQ(content("Harborlantern.log"), "29.02.2024 07:05:09 - Zugriffsfehler: /a␍␊b␊c\uFFFD\r\n");
}

TEST_F(LogFiles, TakeAnErrorReportWithAndWithoutStampAndEmptyLine) {
    log.LogError("Time: now\r\nApp: x", true, true);
    log.LogError("bare", false, false);
    EXPECT_EQ(content("error.log"), "29.02.2024 07:05:09 - Time: now\r\nApp: x\r\n\r\nbare\r\n");
}

TEST_F(LogFiles, TakeTheDetailsOfATechnicalFailureBehindCommas) {
    log.LogDebug("GetPIDLFromPath\\ParseDisplayName", {"#2 - x", 5, 8.5, true, "a\nb"});
    log.LogDebug("alone");
    EXPECT_EQ(content("debug.log"),
              "29.02.2024 07:05:09 - GetPIDLFromPath\\ParseDisplayName, #2 - x, 5, 8.5, 1, a␊b\r\n"
              "29.02.2024 07:05:09 - alone\r\n");
}

TEST_F(LogFiles, AreAppendedToByEveryInstance) {
    test::writeFile(dir.path() + "/Harborlantern.log", "earlier\r\n");
    log.LogProtokoll("later");
    EXPECT_EQ(content("Harborlantern.log"), "earlier\r\n29.02.2024 07:05:09 - later\r\n");
}

TEST_F(LogFiles, DisturbNobodyWhereTheyCannotBeWritten) {
    Log nowhere(files, dir.path() + "/missing", DateFormat());
    nowhere.LogProtokoll("x");
    nowhere.LogError("x", true, true);
    nowhere.LogDebug("x");
    Log broken(files, dir.path(), DateFormat(), []() -> LocalTime { throw std::runtime_error("no clock"); });
    broken.LogProtokoll("x");
    broken.LogError("x", true, true);
    broken.LogDebug("x");
    EXPECT_EQ(content("Harborlantern.log") + content("error.log") + content("debug.log"), "");
}

}  // namespace
}  // namespace hl
