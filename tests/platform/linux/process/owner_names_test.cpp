#include "platform/linux/process/owner_names.h"

#include <unistd.h>

#include <atomic>
#include <thread>

#include "platform/linux/process/helper_slot.h"

namespace hl::test {
namespace {

TEST(OwnerNames, AreTheSystemsOrTheNumberBehindASign) {
    LinuxOwnerNames names;
    EXPECT_EQ(names.nameOf(0), "root");
    EXPECT_EQ(names.numberOf("root"), 0U);
    EXPECT_EQ(names.nameOf(3'999'999'999), "#3999999999");
    EXPECT_EQ(names.numberOf("no such user"), std::nullopt);
}

TEST(OwnerNames, ATableThatHangsIsAskedOnce) {
    const auto asked = std::make_shared<std::atomic<int>>(0);
    const auto ends = std::make_shared<std::atomic<bool>>(false);
    const unsigned taken = HelperSlot::taken();
    {
        LinuxOwnerNames names({.name = [=](std::uint32_t) -> std::optional<std::string> {
                                   ++*asked;
                                   while (!*ends) std::this_thread::sleep_for(std::chrono::milliseconds(1));
                                   return "late";
                               },
                               .number = [](const std::string&) { return std::optional(1U); }},
                              std::chrono::milliseconds(20));
        EXPECT_EQ(names.nameOf(7), "#7");
        EXPECT_EQ(names.nameOf(8), "#8");
        EXPECT_EQ(names.nameOf(7), "#7");
        EXPECT_EQ(names.numberOf("somebody"), std::nullopt);
    }
    // On a busy machine the thread begins late. A thread of an earlier test may end meanwhile.
    for (int i = 0; i < 2000 && *asked == 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    *ends = true;
    for (int i = 0; i < 2000 && HelperSlot::taken() > taken; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(*asked, 1);
    EXPECT_LE(HelperSlot::taken(), taken);
}

}  // namespace
}  // namespace hl::test
