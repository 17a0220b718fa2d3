#include "robustness/api_error_text.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "robustness/fakes.h"

namespace hl {
namespace {

TEST(ApiErrorText, ReadsAsTheUserSeesItAndTakesTheLastErrorForMinusOne) {
    const struct {
        bool withNumber;
        int code;
        const char* text;
    } cases[] = {
        {false, 13, "Permission denied"},
        {true, 13, "#13 - Permission denied"},
        {true, kLastError, "#13 - Permission denied"},
        {false, 0, "#0 - No information available"},
        {false, 14, "Bad address."},
        {false, 99999, "Formatmessage Error 22 (99999)"},
        {true, -7, "#-7 - Formatmessage Error 22 (-7)"},
    };
    test::FakeSystemFacts facts;
    for (const auto& c : cases) {
        errno = EACCES;
        EXPECT_EQ(ApiErrorText(c.withNumber, c.code, facts), c.text) << c.code;
    }
}

}  // namespace
}  // namespace hl
