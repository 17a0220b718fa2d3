// Rules of what a scan leaves out: which can be read, and what they mean, held against git, whose rules they
// are.
#include "scan/rules.h"

#include "support/program.h"
#include "support/temp_dir.h"
#include "support/trees.h"

namespace hl::test {
namespace {

TEST(Rules, SayWhyTheyCannotBeRead) {
    const std::pair<const char*, RuleProblem> cases[] = {
        {"a[bc", RuleProblem::kOpenSet},
        {"[]", RuleProblem::kOpenSet},
        {"a[b\\]", RuleProblem::kOpenSet},
        {"[[:alpha:]", RuleProblem::kOpenSet},
        {"[[:word:]]", RuleProblem::kUnknownClass},
        {"a\\", RuleProblem::kNothingToEscape},
        {"a\\/", RuleProblem::kNothingToEscape},
    };
    for (const auto& [line, problem] : cases) {
        const RuleReading reading = readRule(line);
        EXPECT_EQ(reading.problem, problem) << line;
        EXPECT_FALSE(reading.rule) << line;
    }
}

TEST(Rules, HoldUpNobodyWithManyStars) {
    Rules rules;
    rules.add(*readRule("a*a*a*a*a*a*a*a*a*a*a*a*b").rule);
    EXPECT_EQ(rules.ruleFor(nullptr, std::string(255, 'a'), false), LeaveOut::kNone);
}

TEST(Rules, TakeAFolderBackWithAllThatItHolds) {
    Rules rules;
    for (const char* line : {"/a/**", "*.o", "x y"}) rules.add(*readRule(line).rule);
    rules.takeBack("a/x y");
    const LeaveOut::PlacePtr a = rules.below(rules.start(), "a");
    const LeaveOut::PlacePtr taken = rules.below(a, "x y");
    EXPECT_EQ(rules.ruleFor(a.get(), "x y", true), LeaveOut::kNone);
    EXPECT_EQ(rules.ruleFor(taken.get(), "b.o", false), LeaveOut::kNone);
    EXPECT_EQ(rules.ruleFor(rules.below(taken, "c").get(), "x y", true), LeaveOut::kNone);
    EXPECT_EQ(rules.ruleFor(a.get(), "other", true), 0);
    EXPECT_EQ(rules.ruleFor(nullptr, "b.o", false), 1);
}

/// Makes names, rules and trees of few letters, so that many of them match.
class RandomRules {
  public:
    explicit RandomRules(unsigned seed) : random_(seed) {}

    std::string name() {
        static constexpr const char* kNames[] = {"a",     "b",        "c",  "ab",  "abc", "a.o", "b.o",
                                                 "a.b.o", ".o",       "a~", "A",   "a b", "a ",  "*",
                                                 "[a]",   "a\\b",     "!a", "#a",  "]",   "a-b", "-",
                                                 "\xff",  "\xc3\xa4", "1",  "a\n", "a\t", "**",  "^"};
        return pick(kNames);
    }
    std::string rule() {
        if (chance(20)) return pick({"# a", "", "   ", "!", "/", "//", "a[", "[[:a:]]", "b\\", "!#a"});
        std::string text = chance(4) ? "!" : "";
        text += chance(4) ? "/" : chance(6) ? "**/" : chance(30) ? "**\\/" : "";
        text += part() + (chance(12) ? "**" : "");
        for (int more = chance(2) ? below(3) : 0; more > 0; --more)
            text += (chance(4) ? "/**/" : chance(20) ? "\\/" : "/") + part() + (chance(12) ? "**" : "");
        text += chance(8) ? "/**" : chance(5) ? "/" : "";
        return text + (chance(10) ? "  " : chance(20) ? "\\ " : chance(30) ? "\r" : "");
    }
    int below(int most) { return std::uniform_int_distribution<int>(0, most - 1)(random_); }
    bool chance(int of) { return below(of) == 0; }

  private:
    template <class List>
    std::string pick(const List& list) {
        return list[below(static_cast<int>(std::size(list)))];
    }
    std::string pick(std::initializer_list<const char*> list) {
        return list.begin()[below(static_cast<int>(list.size()))];
    }
    std::string part() {
        if (chance(3))
            return pick({"a", "b", "c", "ab", "abc", "a.o", "*.o", "*.b.o", "*~", "\\!a", "\\#a", "a b"});
        if (chance(8)) return pick({"*", "***", "a*c", "?", "*b*"});
        std::string text;
        for (int atoms = 1 + below(3); atoms > 0; --atoms)
            text += pick({"a",
                          "b",
                          "c",
                          ".",
                          "o",
                          "*",
                          "?",
                          "[ab]",
                          "[!a]",
                          "[^b]",
                          "[a-c]",
                          "[]a]",
                          "[!]]",
                          "\\*",
                          "\\a",
                          "[[:alpha:]]",
                          "[[:space:][:digit:]]",
                          "[[:punct:]]",
                          "[a-]",
                          "[\\]]",
                          "[\\a-c]",
                          "[[:]",
                          "[--a]",
                          " ",
                          "\xff",
                          "\\[",
                          "[[a]",
                          "[c-a]",
                          "[[:upper:]-a]",
                          "[^[:print:]]",
                          "[a/b]"});
        return text;
    }

    std::mt19937 random_;
};

/// A tree, and what the rules say of each of its entries.
class RandomTree {
  public:
    RandomTree(const std::string& root, RandomRules& random) : root_(root) { fill("", 0, random); }

    struct Place {
        std::string path;
        bool isFolder;
    };
    const std::vector<Place>& all() const { return all_; }

    /// Returns the rule that leaves the path out, as a walk finds it.
    static std::int32_t ruleOf(const Rules& rules, const Place& at) {
        LeaveOut::PlacePtr place = rules.start();
        std::string_view rest = at.path;
        for (;;) {
            const std::string_view name = rest.substr(0, rest.find('/'));
            const bool last = name.size() == rest.size();
            const std::int32_t rule = rules.ruleFor(place.get(), name, !last || at.isFolder);
            if (last || rule != LeaveOut::kNone) return rule;
            place = rules.below(place, name);
            rest.remove_prefix(name.size() + 1);
        }
    }

  private:
    void fill(const std::string& above, int depth, RandomRules& random) {
        for (int i = 0; i < 7; ++i) {
            const std::string path = above + random.name();
            const bool isFolder = depth < 3 && random.chance(2);
            if (std::filesystem::exists(root_ + "/" + path)) continue;
            all_.push_back({path, isFolder});
            if (!isFolder) {
                writeFile(root_ + "/" + path, "");
                continue;
            }
            makeFolder(root_ + "/" + path);
            fill(path + "/", depth + 1, random);
        }
    }

    std::string root_;
    std::vector<Place> all_;
};

// Returns the line of the rule by which git leaves out each path; 0 if it does not.
std::vector<std::size_t> askGit(const std::string& tree, const std::string& rules, const std::string& paths) {
    const std::string answer = outputOf(
        "cd '" + tree + "' && GIT_CONFIG_NOSYSTEM=1 git -c core.excludesFile='" + rules +
        "' check-ignore --no-index --verbose --non-matching -z --stdin <'" + paths + "'; test $? -le 1");
    std::vector<std::string> fields;
    for (std::size_t at = 0; at < answer.size(); at += fields.back().size() + 1)
        fields.emplace_back(answer.c_str() + at);
    std::vector<std::size_t> lines;
    for (std::size_t i = 0; i + 3 < fields.size(); i += 4)
        lines.push_back(fields[i + 2].empty() || fields[i + 2][0] == '!' ? 0 : std::stoul(fields[i + 1]));
    return lines;
}

TEST(Rules, MeanWhatGitMeans) {
    if (outputOf("git --version").empty()) GTEST_SKIP() << "there is no git to compare with";
    const char* given = ::getenv("HARBORLANTERN_SEED");
    const unsigned seed =
        given != nullptr ? static_cast<unsigned>(std::stoul(given)) : std::random_device()();
    std::printf("seed %u\n", seed);
    RandomRules random(seed);
    const TempDir temp;
    const std::string tree = temp.path() + "/tree", rulesFile = temp.path() + "/rules",
                      pathsFile = temp.path() + "/paths";
    makeFolder(tree);
    ASSERT_EQ(std::system(("git init -q '" + tree + "'").c_str()), 0);
    const RandomTree entries(tree, random);
    std::string paths;
    for (const RandomTree::Place& each : entries.all()) paths.append(each.path).push_back('\0');
    writeFile(pathsFile, paths);
    std::size_t pairs = 0, leftOut = 0, wrong = 0;
    while (pairs < 10'000 && wrong < 5) {
        std::string text;
        for (int lines = 1 + random.below(6); lines > 0; --lines) text += random.rule() + "\n";
        writeFile(rulesFile, text);
        Rules rules;
        std::vector<std::size_t> lineOf;
        const std::vector<std::string_view> lines = ruleLines(text);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            RuleReading reading = readRule(lines[i]);
            if (!reading.rule) continue;
            rules.add(std::move(*reading.rule));
            lineOf.push_back(i + 1);
        }
        const std::vector<std::size_t> expected = askGit(tree, rulesFile, pathsFile);
        ASSERT_EQ(expected.size(), entries.all().size());
        for (std::size_t i = 0; i < expected.size() && wrong < 5; ++i) {
            const std::int32_t rule = RandomTree::ruleOf(rules, entries.all()[i]);
            const std::size_t line = rule == LeaveOut::kNone ? 0 : lineOf[static_cast<std::size_t>(rule)];
            EXPECT_EQ(line, expected[i]) << entries.all()[i].path << (entries.all()[i].isFolder ? "/" : "")
                                         << "\nseed " << seed << ", rules:\n"
                                         << text;
            wrong += line != expected[i] ? 1 : 0;
            leftOut += line != 0 ? 1 : 0;
            ++pairs;
        }
    }
    // If hardly anything matched, nothing was compared.
    EXPECT_GT(leftOut, pairs / 20);
}

}  // namespace
}  // namespace hl::test
