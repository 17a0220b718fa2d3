#include "robustness/error_mail.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

TEST(ErrorMail, EscapesByItsTableAndNothingElse) {
    const std::pair<const char*, const char*> cases[] = {
        {"%20", "%25%2520"},       {"a\r\nb\rc\nd", "a%0Ab%0Ac%0Ad"},
        {"\n\r\r\n", "%0A%0A%0A"}, {"a b!#*/?&\"", "a%20b%21%23%2A%2F%3F%26%22"},
        {"é+=:<>'", "é+=:<>'"},    {"ÄÖÜßäöü", "%C4%D6%DC%DF%E4%F6%FC"}};
    for (const auto& [text, escaped] : cases) EXPECT_EQ(escapeMailBody(text), escaped);
}

}  // namespace
}  // namespace hl
