#include "scan/find_filter.h"

#include <gtest/gtest.h>

#include "scan/file_kinds.h"

namespace hl::test {

constexpr std::int64_t kFilterDay = 86400;

static std::optional<std::uint32_t> filterOwner(const std::string& name) {
    return name == "anna" ? std::optional<std::uint32_t>(1000) : std::nullopt;
}

TEST(FileKinds, TheEndingStandsBehindTheLastPointInLowerCase) {
    const struct {
        std::string_view name, ending;
    } cases[] = {{"a.JPG", "jpg"},
                 {"a.tar.gz", "gz"},
                 {"README", ""},
                 {".bashrc", ""},
                 {".a.conf", "conf"},
                 {"a.", ""},
                 {"a.0123456789abcdef", "0123456789abcdef"},
                 {"a.0123456789abcdefg", ""},
                 {"a.\xC3\x84", "\xC3\x84"},
                 {"a.\xFF", ""}};
    for (const auto& each : cases) EXPECT_EQ(Ending(each.name).text(), each.ending) << each.name;
}

TEST(FileKinds, TheKindFollowsFromTheEnding) {
    EXPECT_EQ(kindOfEnding("mkv"), FileKind::kFilm);
    EXPECT_EQ(kindOfEnding("7z"), FileKind::kArchive);
    EXPECT_EQ(kindOfEnding(""), FileKind::kOther);
    EXPECT_EQ(kindOfEnding("nothing known"), FileKind::kOther);
    EXPECT_EQ(kindNamed("Disk Image"), FileKind::kDiskImage);
    EXPECT_EQ(kindNamed("disk"), std::nullopt);
    for (std::size_t kind = 0; kind < kFileKinds; ++kind)
        EXPECT_EQ(kindNamed(nameOf(static_cast<FileKind>(kind))), static_cast<FileKind>(kind));
}

TEST(FindFilter, AFileIsTakenIfAllTermsHold) {
    const FindFacts film{"Holiday (2).MKV", 3ULL << 30, 1536, 400 * kFilterDay, 1000, 'f'};
    const FindFacts future{"a", 0, 0, -5, 0, 'l'};
    const struct {
        std::string_view filter;
        const FindFacts& file;
        bool taken;
    } cases[] = {
        {"", film, true},
        {" \t ", film, true},
        {"size>1G age>1y name=*.mkv", film, true},
        {"size>1G age>1y name=*.iso", film, false},
        {"size=3g", film, true},
        {"size!=3G", film, false},
        {"size>=3G size<=3G", film, true},
        {"size<3G", film, false},
        {"size>3T", film, false},
        {"disk=1.5K", film, true},
        {"disk>1.4K", film, true},  // 1,433.6 bytes.
        {"disk<1.6K", film, true},  // 1,638.4 bytes.
        {"size=0.1", future, false},
        {"size<0.1", future, true},
        {"size>=0.1", future, false},
        {"size!=0.1", future, true},
        {"age=400d", film, true},
        {"age>13m age<14m age>57w age>9599h", film, true},
        {"age<0h", future, true},
        {"holiday", film, true},
        {"!holiday", film, false},
        {"\"day (2)\"", film, true},
        {"name=\"holiday (2).mkv\"", film, true},
        {"name=*.avi|*.mkv", film, true},
        {"name!=*.avi|*.mkv", film, false},
        {"name=holiday?(?).m[a-k]v", film, true},
        {"name=*[!0-9]).*", film, false},
        {"name=*[]2|]).*", film, true},
        {"name=*", film, true},
        {"name=holiday", film, false},
        {"kind=film", film, true},
        {"kind!=film", film, false},
        {"kind=\"Disk image\"", film, false},
        {"kind=other", future, true},
        {"owner=anna", film, true},
        {"owner=#1000 !owner=#0", film, true},
        {"owner!=anna", future, true},
        {"type=l", future, true},
        {"!type!=l", future, true},
        {"type=f", future, false},
        {"a!b", future, false},
    };
    for (const auto& each : cases) {
        const auto filter = FindFilter::read(each.filter, filterOwner);
        ASSERT_TRUE(std::holds_alternative<FindFilter>(filter)) << each.filter;
        EXPECT_EQ(std::get<FindFilter>(filter).takes(each.file), each.taken) << each.filter;
    }
}

TEST(FindFilter, NonsenseNamesItsTerm) {
    using enum FilterProblemKind;
    const struct {
        std::string_view filter, term;
        FilterProblemKind kind;
    } cases[] = {
        {"size>1G colour=red", "colour=red", kNoField},
        {"!=5", "!=5", kNoField},
        {"!!size>1", "!!size>1", kNoField},
        {"x size!>5", "size!>5", kNoField},
        {"name>a", "name>a", kNoOperator},
        {"kind<=film x", "kind<=film", kNoOperator},
        {"size>", "size>", kNoValue},
        {"size>G", "size>G", kNoValue},
        {"size>1.25G", "size>1.25G", kNoValue},
        {"size>-1", "size>-1", kNoValue},
        {"size>9999999999T", "size>9999999999T", kNoValue},
        {"size>1P", "size>1P", kNoValue},
        {"age>1.5d", "age>1.5d", kNoValue},
        {"age>5", "age>5", kNoValue},
        {"kind=movie", "kind=movie", kNoValue},
        {"type=d", "type=d", kNoValue},
        {"name=\"\"", "name=\"\"", kNoValue},
        {"owner=#x", "owner=#x", kNoValue},
        {"a !owner=otto b", "!owner=otto", kNoSuchOwner},
        {"x name=\"a b", "name=\"a b", kQuoteIsOpen},
        {"name=\"a\"b", "name=\"a\"b", kQuoteIsOpen},
        {"name=*.[ab", "name=*.[ab", kBracketIsOpen},
    };
    for (const auto& each : cases) {
        const auto read = FindFilter::read(each.filter, filterOwner);
        ASSERT_TRUE(std::holds_alternative<FilterProblem>(read)) << each.filter;
        EXPECT_EQ(std::get<FilterProblem>(read).term, each.term);
        EXPECT_EQ(std::get<FilterProblem>(read).kind, each.kind) << each.filter;
    }
}

}  // namespace hl::test
