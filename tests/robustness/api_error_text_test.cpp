#include "robustness/api_error_text.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "robustness/fakes.h"

namespace hl {
namespace {

struct Case {
    bool withNumber;
    int code;
    const char* text;
};

TEST(ApiErrorText, ReadsAsTheUserSeesIt) {
    const Case cases[] = {
        {false, 13, "Permission denied"},
        {true, 13, "#13 - Permission denied"},
        {false, 0, "#0 - No information available"},
        {true, 0, "#0 - No information available"},
        {false, 14, "Bad address."},
        {false, 99999, "Formatmessage Error 22 (99999)"},
        {true, 99999, "#99999 - Formatmessage Error 22 (99999)"},
        {true, -7, "#-7 - Formatmessage Error 22 (-7)"},
    };
    test::FakeSystemFacts facts;
    for (const Case& c : cases) EXPECT_EQ(ApiErrorText(c.withNumber, c.code, facts), c.text) << c.code;
}

TEST(ApiErrorText, TakesTheLastErrorForMinusOne) {
    test::FakeSystemFacts facts;
    errno = EACCES;
    EXPECT_EQ(ApiErrorText(true, kLastError, facts), "#13 - Permission denied");
    errno = 0;
    EXPECT_EQ(ApiErrorText(true, kLastError, facts), "#0 - No information available");
}

}  // namespace
}  // namespace hl
