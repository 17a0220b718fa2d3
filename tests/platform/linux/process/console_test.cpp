#include "platform/linux/process/console.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hl {
namespace {

TEST(ConsoleTest, NoFileTakesTheNumberOfAStandardDescriptorThatWasClosed) {
    const pid_t child = fork();
    if (child == 0) {
        for (const int number : {0, 1, 2}) close(number);
        occupyStandardDescriptors();
        const bool written = write(STDERR_FILENO, "x", 1) == 1;
        _exit(written ? 0 : open("/dev/null", O_RDONLY));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_GT(WEXITSTATUS(status), STDERR_FILENO);
}

}  // namespace
}  // namespace hl
