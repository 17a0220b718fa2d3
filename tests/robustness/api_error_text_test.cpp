#include "robustness/api_error_text.h"

#include <gtest/gtest.h>

#include "robustness/fakes.h"

namespace hl {
namespace {

TEST(ApiErrorText, ReadsAsTheUserSeesItAndTakesTheLastErrorForMinusOne) {
    const std::tuple<bool, int, const char*> cases[] = {{false, 13, "Permission denied"},
                                                        {true, kLastError, "#13 - Permission denied"},
                                                        {false, 0, "#0 - No information available"},
                                                        {false, 14, "Bad address."},
                                                        {true, -7, "#-7 - Formatmessage Error 22 (-7)"}};
    test::FakeSystemFacts facts;
    for (const auto& [withNumber, code, text] : cases) {
        errno = EACCES;
        EXPECT_EQ(ApiErrorText(withNumber, code, facts), text) << code;
    }
}

}  // namespace
}  // namespace hl
