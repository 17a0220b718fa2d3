#include "views/path_history.h"

namespace hl {
namespace {

TEST(PathHistory, IsBoundedAndForgetsWhatFollowedANewPath) {
    PathHistory history;
    const auto there = [](const std::string&) { return true; };
    for (std::size_t i = 0; i < PathHistory::kMost + 20; ++i) history.visited(std::to_string(i));
    std::string oldest, next;
    while (!(next = history.step(-1, there)).empty()) oldest = next;
    EXPECT_EQ(oldest, "20");
    history.visited("new");
    EXPECT_EQ(history.step(1, there), "");
    EXPECT_EQ(history.step(-1, there), "20");
}

}  // namespace
}  // namespace hl
