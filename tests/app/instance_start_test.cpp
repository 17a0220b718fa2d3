#include "app/instance_start.h"

#include "app/settings_fixture.h"
#include "support/scripted_pump.h"

namespace hl::test {
namespace {

struct FakeInstances : Instances {
    bool free = false, answers = true, goesMeanwhile = false;
    int heldFor = 0;  ///< How often isHeld answers yes before the mark is gone.
    std::vector<std::string> delivered;

    bool takeFirst() override { return free; }
    bool isHeld() override { return heldFor-- > 0; }
    bool deliver(const std::string& line) override {
        delivered.push_back(line);
        free = goesMeanwhile;
        return answers;
    }
    long process() const override { return 0; }
    void letGo() override {}
    int listen() override { return -1; }
    void receive(const std::function<void(const std::string&)>&) override {}
};

TEST(InstanceStart, ALaterStartHandsOverUnlessItIsToOpenAWindowOfItsOwn) {
    using enum StartDecision;
    const struct {
        const char* line;
        bool single, free, answers, goesMeanwhile;
        StartDecision decision;
    } cases[] = {
        {"\"/a\"", true, true, true, false, kShow},  {"-RESTART", true, false, true, false, kShow},
        {"", true, false, false, false, kNoAnswer},  {"\"/a\"", true, false, true, false, kHandedOver},
        {"", true, false, true, false, kHandedOver}, {"-restart", true, false, true, false, kHandedOver},
        {"\"/a\"", true, false, false, true, kShow}, {"\"/a\" -RESTART", true, false, true, false, kShow},
        {"\"/a\"", false, false, true, false, kShow}};
    for (const auto& c : cases) {
        FakeInstances instances;
        instances.free = c.free;
        instances.answers = c.answers;
        instances.goesMeanwhile = c.goesMeanwhile;
        EXPECT_EQ(CheckVBinstance(c.line, c.single, instances), c.decision) << c.line;
        const bool tried = c.decision != kShow || c.goesMeanwhile;
        EXPECT_EQ(instances.delivered, tried ? std::vector<std::string>{c.line} : std::vector<std::string>());
    }
}

TEST(InstanceStart, ARestartWaitsTwentySecondsAtMost) {
    const std::pair<int, int> cases[] = {{0, 0}, {3, 3}, {40, 40}, {1000, 41}};
    for (const auto& [heldFor, pauses] : cases) {
        FakeInstances instances;
        instances.heldFor = heldFor;
        ScriptedPump pump;
        const auto sleep = [&](std::chrono::milliseconds time) {
            pump.tick += static_cast<std::uint64_t>(time.count());
        };
        EXPECT_EQ(WaitForMutexGone(instances, pump, sleep), heldFor == pauses) << heldFor;
        EXPECT_EQ(pump.pumps, pauses);
    }
    EXPECT_TRUE(isRestart("-RESTART") && !isRestart("-RESTART \"/a\""));
}

TEST(InstanceStart, TheNameIsThatOfTheFileWithoutItsExtension) {
    const std::pair<const char*, const char*> cases[] = {{"/opt/x.y/lantern", "lantern"},
                                                         {"lantern.bin", "lantern"},
                                                         {"/a/lantern.1.2", "lantern.1"},
                                                         {"/a/.hidden", ".hidden"}};
    for (const auto& [executable, name] : cases) EXPECT_EQ(AppExeName(executable), name);
}

using SingleInstance = SettingsFixture;

TEST_F(SingleInstance, IsTheDefaultAndOnlyANumberOfZeroTurnsItOff) {
    EXPECT_TRUE(singleInstanceWanted(store));
    const std::pair<const char*, bool> cases[] = {{"0", false}, {"1", true}, {"2", true}, {"off", true}};
    for (const auto& [value, wanted] : cases) {
        store.StoreSettings("Optionen", "Instanz", value);
        EXPECT_EQ(singleInstanceWanted(store), wanted) << value;
    }
}

}  // namespace
}  // namespace hl::test
