#include "platform/linux/process/console.h"

#include <gtest/gtest.h>

#include "support/trees.h"

namespace hl {
namespace {

TEST(ConsoleTest, NoFileTakesTheNumberOfAStandardDescriptorThatWasClosed) {
    EXPECT_EQ(test::inChild([] {
                  for (const int number : {0, 1, 2}) close(number);
                  occupyStandardDescriptors();
                  if (write(STDERR_FILENO, "x", 1) == 1) return 1;
                  return open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 2;
              }),
              0);
}

}  // namespace
}  // namespace hl
