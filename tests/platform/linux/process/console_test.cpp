#include "platform/linux/process/console.h"

namespace hl::test {
namespace {

TEST(ConsoleTest, NoFileTakesTheNumberOfAStandardDescriptorThatWasClosed) {
    EXPECT_EQ(inChild([] {
                  for (const int number : {0, 1, 2}) close(number);
                  occupyStandardDescriptors();
                  if (write(STDERR_FILENO, "x", 1) == 1) return 1;
                  return open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 2;
              }),
              0);
}

}  // namespace
}  // namespace hl::test
