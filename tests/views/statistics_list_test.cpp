// The filters of the rows of statistics.
#include "views/statistics_list.h"

#include "scan/find_filter.h"
#include "scan/statistics.h"

namespace hl::test {
namespace {

bool takes(const std::string& text, const FindFacts& file) {
    const auto read = FindFilter::read(text, [](const std::string&) { return std::nullopt; });
    const auto* filter = std::get_if<FindFilter>(&read);
    EXPECT_NE(filter, nullptr) << text;
    return filter != nullptr && filter->takes(file);
}

TEST(StatisticsList, TheFilterOfAnEndingTakesTheFilesThatCountForIt) {
    const std::string names[] = {"a.jpg",
                                 "B.JPG",
                                 ".jpg",
                                 "plain",
                                 "x.",
                                 ".a.b",
                                 "c.tar.gz",
                                 "c.gz",
                                 "d.a b",
                                 "e.a|b",
                                 "f.[c]",
                                 "f.*",
                                 "g.?x",
                                 "h.\"q\"",
                                 "i.b\\c",
                                 "j.ending-of-sixteen-",
                                 "k.ending-of-17-bytes",
                                 "l.1234567890123456",
                                 "m.12345678901234567",
                                 "..",
                                 "n.ä",
                                 "o.a\nb",
                                 "p.a\rb"};
    for (const std::string& of : names) {
        const Ending ending(of);
        for (const std::string& name : names)
            EXPECT_EQ(takes(filterOfEnding(ending.text()), {.name = name}),
                      Ending(name).text() == ending.text())
                << of << " " << name;
    }
}

TEST(StatisticsList, TheFiltersOfKindAgeAndOwnerTakeTheFilesThatCountForThem) {
    for (const char* name : {"a.iso", "b.c", "noending", "d.bak"})
        for (std::size_t kind = 0; kind < kFileKinds; ++kind)
            EXPECT_EQ(takes(filterOfKind(static_cast<int>(kind)), {.name = name}),
                      kindOfEnding(Ending(name).text()) == static_cast<FileKind>(kind));
    for (const std::int64_t days : {-1, 0, 1, 6, 7, 29, 30, 89, 90, 179, 180, 364, 365, 729, 730, 9000})
        for (int age = 0; age < static_cast<int>(kAgeClasses); ++age)
            EXPECT_EQ(takes(filterOfAge(age), {.name = "x", .age = days * 86'400}),
                      ageClassOf(days * 86'400) == age);
    EXPECT_TRUE(takes(filterOfOwner(7), {.name = "x", .owner = 7}));
    EXPECT_FALSE(takes(filterOfOwner(7), {.name = "x", .owner = 8}));
}

}  // namespace
}  // namespace hl::test
