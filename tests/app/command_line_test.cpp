#include "app/command_line.h"

namespace hl {
namespace {

using Arguments = std::vector<std::string>;
using namespace std::string_literals;

constexpr std::string_view kFormats[] = {"csv", "tx", "txt"};

JoinedLine join(const Arguments& arguments) {
    return joinArguments(arguments, "/cwd", kPosixPaths, kFormats);
}

TEST(JoinedArguments, QuoteAgainWhatTheShellUnquoted) {
    const std::pair<Arguments, std::string> cases[] = {
        {{}, ""},
        {{"/a", "/b c"}, "\"/a\" \"/b c\""},
        {{"-TLMODUS", "/a", "-RESTART"}, "-TLMODUS \"/a\" -RESTART"},
        {{"-d2", "/a"}, "-d2 \"/a\""},
        {{"--", "-s", "--"}, "\"/cwd/-s\" \"/cwd/--\""},
        {{"a\"b", "\n\xFF"}, "\"/cwd/a\0b\" \"/cwd/\n\xFF\""s},
        // The delimiter is put first in a silent line.
        {{"-s3-d1", "/r.csv", "/a"}, "-s3-d1 \"/r.csv\" \"/a\""},
        {{"-s", "/r-d1.csv", "/a"}, "-s-d0 \"/r-d1.csv\" \"/a\""},
        {{"-s2", "/r-d1", "/a", "-d3"}, "-s2-d3 \"/r-d1\" \"/a\""},
        {{"-s-dx", "/r-d1", "/a"}, "-s-dx \"/r-d1\" \"/a\""},
        {{"-s", "--", "-d3", "/a"}, "-s-d0 \"/cwd/-d3\" \"/a\""},
        {{"-s2", "-", "--format=txt", "/a"}, "-s2-d0 \"-\" --format=txt \"/a\""},
        {{"-s", "--", "-", "-"}, "-s-d0 \"-\" \"/cwd/-\""},
        {{"-s", "--format", "csv", "-", "/a"}, "-s-d0 --format=csv \"-\" \"/a\""},
        {{"-s", "-", "--balance", "--format=json", "/a"}, "-s-d0 \"-\" --balance --format=json \"/a\""},
        {{"-s", "--find", "size>1K \"a b\"", "-", "/a"}, "-s-d0 --find=size%3E1K%20%22a%20b%22 \"-\" \"/a\""},
        {{"-s", "././-", "./-"}, "-s-d0 \"/cwd/-\" \"/cwd/-\""},
        // The system decides what a link in the report's path means.
        {{"-s", "a/../r", "a/../b"}, "-s-d0 \"/cwd/a/../r\" \"/cwd/b\""}};
    for (const auto& [arguments, line] : cases) {
        EXPECT_EQ(join(arguments).text, line);
        EXPECT_EQ(join(arguments).problem, LineProblem::kNone) << line;
    }
}

TEST(JoinedArguments, MakePathsAbsolute) {
    const std::pair<std::string, std::string> cases[] = {
        {".", "/cwd"}, {"../a", "/a"}, {"a/", "/cwd/a/"}, {"~", "/cwd/~"}, {"//s/./x", "//s/./x"}};
    for (const auto& [path, absolute] : cases) EXPECT_EQ(join({path}).text, "\"" + absolute + "\"");
    EXPECT_EQ(joinArguments({"D:\\.\\a", ".\\a", "\\\\srv\\x"}, "C:\\cwd", kDrivePaths, {}).text,
              "\"D:\\a\" \"C:\\cwd\\a\" \"\\\\srv\\x\"");
}

TEST(JoinedArguments, NameTheFirstThatMakesNoSense) {
    for (const char* bad :
         {"-", "-x", "-d", "-d12", "-dx", "--halp", "-restart", "---", "-TLMODUS2", "-s\"3"}) {
        EXPECT_EQ(join({"/a", bad, "-z"}).problem, LineProblem::kUnknownSwitch);
        EXPECT_EQ(join({"/a", bad, "-z"}).badArgument, bad);
    }
    const std::tuple<Arguments, LineProblem, std::string> cases[] = {
        {{"-s", "", "/a"}, LineProblem::kEmptyArgument, ""},
        {{"-s", "/r", "-"}, LineProblem::kUnknownSwitch, "-"},
        {{"-s", "-"}, LineProblem::kIncompleteReport, ""},
        {{"-s2"}, LineProblem::kIncompleteReport, ""},
        {{"-s", "--format=pdf", "-", "/a"}, LineProblem::kUnknownFormat, "--format=pdf"},
        {{"-s", "--format", "-", "/a"}, LineProblem::kUnknownFormat, "--format=-"},
        {{"-s", "-", "/a", "--format"}, LineProblem::kUnknownFormat, "--format"},
        {{"-s", "--format=json", "-", "/a"}, LineProblem::kFormatOfBalance, "--format=json"},
        {{"-s", "--format=csv", "--format=csv", "-", "/a"}, LineProblem::kNotTogether, "--format=csv"},
        {{"-s", "--balance", "-", "/a", "--balance"}, LineProblem::kNotTogether, "--balance"},
        {{"-s", "--format=csv", "--balance", "-", "/a"}, LineProblem::kBalanceFormat, "--format=csv"},
        {{"-s", "--format", "jsonl", "-", "/a", "--balance"}, LineProblem::kBalanceFormat, "--format=jsonl"},
        {{"-s", "--balance", "/b.CSV", "/a"}, LineProblem::kBalanceEnding, "/b.CSV"},
        {{"-s3", "--balance", "-", "/a"}, LineProblem::kNotTogether, "-s3"},
        {{"-s", "--balance", "-d1", "-", "/a"}, LineProblem::kNotTogether, "-d1"},
        {{"-s", "-", "/a", "--find"}, LineProblem::kNoFilter, "--find"},
        {{"-s", "--find=a", "-", "/a", "--find", "b"}, LineProblem::kNotWithFind, "--find"},
        {{"-s", "--find=a", "-", "/a", "--balance"}, LineProblem::kNotWithFind, "--balance"},
        {{"-s", "--find=a", "--format=txt", "-", "/a"}, LineProblem::kNotWithFind, "--format=txt"},
        {{"-s", "--find=a", "-d1", "-", "/a"}, LineProblem::kNotWithFind, "-d1"},
        {{"-s2", "--find=a", "-", "/a"}, LineProblem::kNotWithFind, "-s2"},
        {{"-s", "--format=nul", "-", "/a"}, LineProblem::kFormatOfFind, "--format=nul"},
        {{"-s", "--compare=/x", "--format=nul", "-", "/a"}, LineProblem::kFormatOfFind, "--format=nul"},
        {{"-s", "--balance", "--format=nul", "-", "/a"}, LineProblem::kBalanceFormat, "--format=nul"},
        {{"-s", "--balance", "/b.JSONL", "/a"}, LineProblem::kBalanceEnding, "/b.JSONL"},
        {{"-s", "--find=a", "/f.Txt", "/a"}, LineProblem::kFindEnding, "/f.Txt"},
        {{"-s", "/f.ncdu.json", "/a", "--find", "b"}, LineProblem::kFindEnding, "/f.ncdu.json"},
        {{"-s", "--find=a", "/f.hlscan", "/a"}, LineProblem::kFindEnding, "/f.hlscan"},
        {{"-s", "--find=a", "--format=csv", "/f.txt", "/a"}, LineProblem::kNone, ""},
        {{"-s", "--find=a", "/f.json", "/a"}, LineProblem::kNone, ""},
        {{"-s", "--find=a", "/f.csv", "/a"}, LineProblem::kNone, ""},
        {{"--find=a", "/a"}, LineProblem::kNotForWindow, "--find"},
        {{"--balance", "/a"}, LineProblem::kNotForWindow, "--balance"},
        {{"-s", "--format=txtx", "-", "/a"}, LineProblem::kUnknownFormat, "--format=txtx"},
        {{"--format=txt", "-s", "/r", "/a"}, LineProblem::kNotForWindow, "--format=txt"}};
    for (const auto& [arguments, problem, bad] : cases) {
        const JoinedLine line = join(arguments);
        EXPECT_EQ(line.problem, problem) << testing::PrintToString(arguments);
        EXPECT_EQ(line.badArgument, bad);
    }
}

TEST(JoinedArguments, AskForHelpAndVersion) {
    EXPECT_TRUE(join({"--help"}).asksForHelp && join({"/a", "-h"}).asksForHelp);
    EXPECT_TRUE(join({"--version"}).asksForVersion);
    const JoinedLine paths = join({"--", "--help", "-h", "--version"});
    EXPECT_FALSE(paths.asksForHelp || paths.asksForVersion);
}

TEST(FoldersFromCommand, AreWhatStandsBetweenQuotes) {
    const std::pair<std::string, Arguments> cases[] = {{"  /a  ", {"  /a  "}},
                                                       {"-R \"a\"", {"a"}},
                                                       {"x\"a\"y\"b\"z", {"a", "b"}},
                                                       {"\"a\" \"b", {"a"}},
                                                       {"\"a\0b\""s, {"a\"b"}}};
    for (const auto& [line, sources] : cases) EXPECT_EQ(GetFoldersFromCommand(line), sources) << line;
    for (const char* line : {"", "\"/a", "-RESTART", "-TLMODUS -RESTART "})
        EXPECT_EQ(GetFoldersFromCommand(line), Arguments()) << line;
}

TEST(SilentOrder, IsReadAsItIsTold) {
    const std::tuple<std::string, std::string, int, int, Arguments> cases[] = {
        {"-s3-d1 \"C:\\r.csv\" \"C:\\a\"", "C:\\r.csv", 3, 1, {"C:\\a"}},
        {"-s \"/r\"", "/r", 0, 0, {}},
        {"  -s2 \"/r\" \"/a\" \"/b\"  ", "/r", 2, 0, {"/a", "/b"}},
        {"-s-dx-d2 \"/r\" \"/a\"", "/r", 0, 0, {"/a"}},
        {"-s 3 -d2 \"/r\" \"/a\"", "/r", 0, 2, {"/a"}},
        {"-s \"/r-d3\" \"/a\"", "/r-d3", 0, 3, {"/a"}},
        {"-sfoo12 \"/r\" \"/a\"", "/r", 0, 0, {"/a"}},
        {"-s12x4 \"/r\" \"/a", "/r", 12, 0, {}},
        {"-s99999999999999999999999999999999 \"/r\" \"/a\"", "/r", kMostLevels, 0, {"/a"}},
        {"-s-d", "", 0, 0, {}},
        {"-s7", "", 7, 0, {}},
        {"", "", 0, 0, {}},
        // The joined line delivers every name unchanged.
        {join({"-s4", "/r\"-d3\".csv", "/-d2", "/\n\xFF"}).text, "/r\"-d3\".csv", 4, 0, {"/-d2", "/\n\xFF"}}};
    for (const auto& [line, file, levels, delimiter, sources] : cases) {
        const SilentOrder order = KZGetFoldersFromCommand(line, kFormats);
        EXPECT_EQ(std::tie(order.outputFile, order.levels, order.delimiterIndex, order.sources),
                  std::tie(file, levels, delimiter, sources))
            << line;
    }
}

TEST(SilentOrder, HasAFormatWhereOneStandsOutsideOfTheNames) {
    const std::pair<std::string, std::string> cases[] = {
        {"-s --format=txt \"/r\" \"/a\"", "txt"},
        {"-s2-d1 \"/r\" \"/--format=txt\" --format=csv", "csv"},
        {"-s \"/r --format=txt\" \"/a\"", ""},
        {join({"-s--format=csv", "-", "/a\"--format=txt"}).text, "csv"}};
    for (const auto& [line, format] : cases)
        EXPECT_EQ(KZGetFoldersFromCommand(line, kFormats).format, format) << line;
}

TEST(SilentOrder, HasTheFilterAsItWasGiven) {
    for (const std::string filter : {"size>1G name=\"*.iso --balance\"", "", "-d3 \xFF%41 --format=nul \n"}) {
        const SilentOrder order =
            KZGetFoldersFromCommand(join({"-s", "--find", filter, "/r --find=x", "/a"}).text, kFormats);
        EXPECT_EQ(order.find, filter);
        EXPECT_FALSE(order.balance);
        EXPECT_EQ(order.format, "");
        EXPECT_EQ(order.delimiterIndex, 0);
    }
    EXPECT_EQ(KZGetFoldersFromCommand(join({"-s", "/--find=x", "/a"}).text, kFormats).find, std::nullopt);
}

TEST(SilentLine, IsToldByItsFirstTwoCharacters) {
    for (const char* line : {"-s", "-sudden \"/a\""}) EXPECT_TRUE(isSilentLine(line)) << line;
    for (const char* line : {"-S", " -s", "\"/a\" -s", ""}) EXPECT_FALSE(isSilentLine(line)) << line;
}

}  // namespace
}  // namespace hl
