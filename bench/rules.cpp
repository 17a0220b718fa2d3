// Measures what the rules of a scan cost for each entry. By hand: bench_rules. Prints the median of 15
// rounds, in nanoseconds, with 100 plain rules of each kind, with all of them, and for each wildcard more.
//
// Names are those of a scan: of 8 to 20 bytes, two thirds with an ending, and hardly any that a rule names.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "scan/rules.h"

namespace {

constexpr int kRounds = 15;
constexpr int kPlainRules = 100;

std::string nameOf(std::mt19937& random) {
    static constexpr const char* kEndings[] = {".cpp", ".h", ".txt", ".jpg", ".tar.gz", ".json"};
    std::string name(8 + random() % 9, ' ');
    for (char& c : name) c = static_cast<char>('a' + random() % 26);
    return random() % 3 == 0 ? name : name + kEndings[random() % std::size(kEndings)];
}

/// Returns the nanoseconds for an entry. The names lie in the folder "folder" of the source.
double cost(const hl::Rules& rules, const std::vector<std::string_view>& names) {
    const hl::LeaveOut::PlacePtr place = rules.below(rules.start(), "folder");
    std::vector<double> rounds;
    std::int64_t sum = 0;
    for (int round = 0; round < kRounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        for (const std::string_view name : names) sum += rules.ruleFor(place.get(), name, false);
        const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
        rounds.push_back(took.count() / static_cast<double>(names.size()));
    }
    if (sum == 0) std::puts("every other name is left out");  // Nobody may drop the loop.
    std::ranges::sort(rounds);
    return rounds[kRounds / 2];
}

double costOf(const std::vector<std::string>& lines, const std::vector<std::string_view>& names) {
    hl::Rules rules;
    for (const std::string& line : lines) rules.add(*hl::readRule(line).rule);
    return cost(rules, names);
}

}  // namespace

int main() {
    std::mt19937 random(1);
    std::vector<std::string> names, endings, paths, mixed;
    // They lie one behind another, as what the system tells of a folder does.
    std::string bytes;
    std::vector<std::pair<std::size_t, std::size_t>> places;
    for (int i = 0; i < 20'000; ++i) {
        const std::string name = nameOf(random);
        places.emplace_back(bytes.size(), name.size());
        bytes += name;
    }
    std::vector<std::string_view> entries;
    for (const auto& [at, size] : places) entries.emplace_back(bytes.data() + at, size);
    for (int i = 0; i < kPlainRules; ++i) {
        const std::string name = nameOf(random);
        names.push_back(name);
        endings.push_back("*.x" + std::to_string(i));
        paths.push_back("/folder/" + name);
        const std::vector<std::string>& kind = i % 3 == 0 ? names : i % 3 == 1 ? endings : paths;
        mixed.push_back(kind.back());
    }
    const double plain = costOf(mixed, entries);
    std::printf("100 names %.1f, 100 endings %.1f, 100 paths %.1f, 100 of all three %.1f\n",
                costOf(names, entries), costOf(endings, entries), costOf(paths, entries), plain);
    for (const char* wildcard : {"a*b?c", "*~", "[a-f]*.o[0-9]", "/folder/*ab*cd*", "folder/**/x?z"}) {
        std::vector<std::string> more = mixed;
        for (int i = 0; i < 10; ++i) more.emplace_back(wildcard);
        std::printf("each \"%s\" %.1f more\n", wildcard, (costOf(more, entries) - plain) / 10);
    }
}
