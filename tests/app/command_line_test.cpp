#include "app/command_line.h"

#include <gtest/gtest.h>

namespace hl {
namespace {

using Arguments = std::vector<std::string>;
using namespace std::string_literals;

std::string joined(const Arguments& arguments, const PathRules& rules = kPosixPaths) {
    const JoinedLine line = joinArguments(arguments, rules.separator == '/' ? "/cwd" : "C:\\cwd", rules);
    EXPECT_EQ(line.problem, LineProblem::kNone) << line.badArgument;
    return line.text;
}

TEST(JoinedArguments, QuoteAgainWhatTheShellUnquoted) {
    const struct {
        Arguments arguments;
        std::string line;
    } cases[] = {
        {{}, ""},
        {{"/a"}, "\"/a\""},
        {{"/a", "/b c"}, "\"/a\" \"/b c\""},
        {{" "}, "\"/cwd/ \""},
        {{"-RESTART"}, "-RESTART"},
        {{"-TLMODUS", "/a"}, "-TLMODUS \"/a\""},
        {{"-d2", "/a"}, "-d2 \"/a\""},
        {{"-s3-d1", "/r.csv", "/a"}, "-s3-d1 \"/r.csv\" \"/a\""},
        {{"--", "-s", "--"}, "\"/cwd/-s\" \"/cwd/--\""},
        {{"/a", "-s"}, "\"/a\" -s"},
        {{"a\"b"}, "\"/cwd/a\0b\""s},
        {{"\n\xFF"}, "\"/cwd/\n\xFF\""},
    };
    for (const auto& c : cases) EXPECT_EQ(joined(c.arguments), c.line);
}

TEST(JoinedArguments, MakePathsAbsolute) {
    const struct {
        const char *path, *line;
    } cases[] = {
        {".", "\"/cwd\""},
        {"./", "\"/cwd\""},
        {"a", "\"/cwd/a\""},
        {"./a", "\"/cwd/a\""},
        {"././a/./b/.", "\"/cwd/a/b/\""},
        {"..", "\"/cwd/..\""},
        {"../a", "\"/cwd/../a\""},
        {"a/", "\"/cwd/a/\""},
        {"/./a", "\"/a\""},
        {"/", "\"/\""},
        {"/.", "\"/\""},
        {".a", "\"/cwd/.a\""},
        {"a.", "\"/cwd/a.\""},
        {"//server/./x", "\"//server/./x\""},
        {"\\\\server\\x", "\"\\\\server\\x\""},
        {"~", "\"/cwd/~\""},
    };
    for (const auto& c : cases) EXPECT_EQ(joined({c.path}), c.line) << c.path;
    EXPECT_EQ(joinArguments({"a"}, "/", kPosixPaths).text, "\"/a\"");
}

TEST(JoinedArguments, KnowDriveLetters) {
    const struct {
        const char *path, *line;
    } cases[] = {
        {"D:\\a", "\"D:\\a\""},           {".\\a", "\"C:\\cwd\\a\""},
        {"a\\.\\b", "\"C:\\cwd\\a\\b\""}, {"\\\\server\\share", "\"\\\\server\\share\""},
        {"D:\\.\\a", "\"D:\\a\""},
    };
    for (const auto& c : cases) EXPECT_EQ(joined({c.path}, kDrivePaths), c.line) << c.path;
}

TEST(JoinedArguments, PutTheDelimiterOfASilentLineFirst) {
    const struct {
        Arguments arguments;
        std::string line;
    } cases[] = {
        {{"-s", "/r-d1.csv", "/a"}, "-s-d0 \"/r-d1.csv\" \"/a\""},
        {{"-s3", "/r", "/a-d2"}, "-s3-d0 \"/r\" \"/a-d2\""},
        {{"-s", "-d3", "/r", "/a"}, "-s-d3 \"/r\" \"/a\""},
        {{"-s2", "/r-d1", "/a", "-d3"}, "-s2-d3 \"/r-d1\" \"/a\""},
        {{"-s-dx", "/r-d1", "/a"}, "-s-dx \"/r-d1\" \"/a\""},
        {{"-s", "--", "-d3", "/a"}, "-s-d0 \"/cwd/-d3\" \"/a\""},
        {{"/r-d1", "/a"}, "\"/r-d1\" \"/a\""},
    };
    for (const auto& c : cases) EXPECT_EQ(joined(c.arguments), c.line);
}

TEST(JoinedArguments, NameTheFirstThatMakesNoSense) {
    for (const char* bad :
         {"-", "-x", "-d", "-d12", "-dx", "--halp", "-restart", "---", "-TLMODUS2", "-s\"3"}) {
        const JoinedLine line = joinArguments({"/a", bad, "-z"}, "/cwd", kPosixPaths);
        EXPECT_EQ(line.problem, LineProblem::kUnknownSwitch) << bad;
        EXPECT_EQ(line.badArgument, bad);
    }
    EXPECT_EQ(joinArguments({"-s", "", "/a"}, "/cwd", kPosixPaths).problem, LineProblem::kEmptyArgument);
    EXPECT_EQ(joinArguments({"--", "-x"}, "/cwd", kPosixPaths).problem, LineProblem::kNone);
}

TEST(JoinedArguments, AskForHelpAndVersion) {
    EXPECT_TRUE(joinArguments({"--help"}, "/", kPosixPaths).asksForHelp);
    EXPECT_TRUE(joinArguments({"/a", "-h"}, "/", kPosixPaths).asksForHelp);
    EXPECT_TRUE(joinArguments({"--version"}, "/", kPosixPaths).asksForVersion);
    EXPECT_FALSE(joinArguments({"--", "--help", "-h", "--version"}, "/", kPosixPaths).asksForHelp);
    EXPECT_FALSE(joinArguments({"--", "--version"}, "/", kPosixPaths).asksForVersion);
}

TEST(FoldersFromCommand, AreWhatStandsBetweenQuotes) {
    const struct {
        std::string line;
        Arguments sources;
    } cases[] = {
        {"", {}},
        {"/a", {"/a"}},
        {"  /a  ", {"  /a  "}},
        {"-TLMODUS", {"-TLMODUS"}},
        {"\0"s, {"\0"s}},
        {"\"C:\\a\" \"D:\\b\"", {"C:\\a", "D:\\b"}},
        {"-RESTART \"/a\"", {"/a"}},
        {"\"/a\"\"/b\"", {"/a", "/b"}},
        {"x\"/a\"y\"/b\"z", {"/a", "/b"}},
        {"\"/a\" \"/b", {"/a"}},
        {"\"/a", {}},
        {"\"", {}},
        {"\"\"", {""}},
        {"\"/a\0b\""s, {"/a\"b"}},
    };
    for (const auto& c : cases) EXPECT_EQ(GetFoldersFromCommand(c.line), c.sources) << c.line;
}

TEST(SilentOrder, IsReadAsItIsTold) {
    const struct {
        std::string line, file;
        int levels, delimiter;
        Arguments sources;
    } cases[] = {
        {"-s3-d1 \"C:\\r.csv\" \"C:\\a\"", "C:\\r.csv", 3, 1, {"C:\\a"}},
        {"-s \"C:\\r.txt\" \"C:\\a\"", "C:\\r.txt", 0, 0, {"C:\\a"}},
        {"-s \"C:\\r.txt\"", "C:\\r.txt", 0, 0, {}},
        {"-s \"/r\" \"/a\" \"/b\"", "/r", 0, 0, {"/a", "/b"}},
        {"  -s2 \"/r\" \"/a\"  ", "/r", 2, 0, {"/a"}},
        {"-s-dx \"/r\" \"/a\"", "/r", 0, 0, {"/a"}},
        {"-s-dx-d2 \"/r\" \"/a\"", "/r", 0, 0, {"/a"}},
        {"-s 3 -d2 \"/r\" \"/a\"", "/r", 0, 2, {"/a"}},
        {"-s \"/r-d3\" \"/a\"", "/r-d3", 0, 3, {"/a"}},
        {"-sfoo12 \"/r\" \"/a\"", "/r", 0, 0, {"/a"}},
        {"-s12x4 \"/r\" \"/a\"", "/r", 12, 0, {"/a"}},
        {"-s-d9 \"/r\" \"/a\"", "/r", 0, 9, {"/a"}},
        {"-s \"/r\" \"/a", "/r", 0, 0, {}},
        {"-s99999999999999999999999999999999 \"/r\" \"/a\"", "/r", kMostLevels, 0, {"/a"}},
        {"-s-d", "", 0, 0, {}},
        {"-s", "", 0, 0, {}},
        {"-s7", "", 7, 0, {}},
        {"", "", 0, 0, {}},
    };
    for (const auto& c : cases) {
        const SilentOrder order = KZGetFoldersFromCommand(c.line);
        EXPECT_EQ(order.outputFile, c.file) << c.line;
        EXPECT_EQ(order.levels, c.levels) << c.line;
        EXPECT_EQ(order.delimiterIndex, c.delimiter) << c.line;
        EXPECT_EQ(order.sources, c.sources) << c.line;
    }
}

TEST(SilentOrder, GetsEveryNameThroughTheJoinedLine) {
    const Arguments names = {"/r\"-d3\".csv", "/a b", "/-d2", "/\n", "/\xFF", "/'$x'", "/\\"};
    Arguments arguments = {"-s4"};
    arguments.insert(arguments.end(), names.begin(), names.end());
    const SilentOrder order = KZGetFoldersFromCommand(joined(arguments));
    EXPECT_EQ(order.levels, 4);
    EXPECT_EQ(order.delimiterIndex, 0);
    EXPECT_EQ(order.outputFile, names[0]);
    EXPECT_EQ(order.sources, Arguments(names.begin() + 1, names.end()));
}

TEST(SilentLine, IsToldByItsFirstTwoCharacters) {
    EXPECT_TRUE(isSilentLine("-s"));
    EXPECT_TRUE(isSilentLine("-sudden \"/a\""));
    EXPECT_FALSE(isSilentLine("-S"));
    EXPECT_FALSE(isSilentLine(" -s"));
    EXPECT_FALSE(isSilentLine("\"/a\" -s"));
    EXPECT_FALSE(isSilentLine(""));
}

}  // namespace
}  // namespace hl
