#include "app/places.h"

#include "platform/linux/change/files.h"

namespace hl::test {
namespace {

TEST(Places, AreBesideTheExecutableUntilAPackagePutItThere) {
    const TempDir dir;
    const std::string beside = dir.path() + "/lib/machine/harborlantern";
    const std::string share = dir.path() + "/share/harborlantern";
    fs::create_directories(beside);
    struct Case {
        const char* what;
        std::string named, configHome, home, portable, installed;
        bool ofUser;
    };
    const Case cases[] = {
        {"a named folder comes first", "/named", "/config", "/home/a", "/named", "/named", false},
        {"the user's settings", "", "/config", "/home/a", beside, "/config/harborlantern", true},
        {"relative is as if not set", "", "config", "/home/a", beside, "/home/a/.config/harborlantern", true},
        {"the usual place in a home", "", "", "/home/a", beside, "/home/a/.config/harborlantern", true},
        {"settings without a home", "", "/config", "", beside, "/config/harborlantern", true},
        {"no home at all", "", "", "", beside, beside, false}};
    for (const bool installed : {false, true}) {
        if (installed) writeFile(beside + "/installed", "../../../share/harborlantern\nA package.\n");
        for (const Case& one : cases) {
            SCOPED_TRACE(one.what);
            LinuxFiles files;
            const Places places = placesOf(files, {beside, one.named, one.configHome, one.home});
            EXPECT_EQ(places.own, installed ? one.installed : one.portable);
            EXPECT_EQ(std::pair(places.installed, places.ofUser),
                      std::pair(installed, installed && one.ofUser));
            EXPECT_EQ(std::pair(places.data, places.texts),
                      installed ? std::pair(share, share + "/lang") : std::pair(beside, beside));
        }
    }
}

}  // namespace
}  // namespace hl::test
