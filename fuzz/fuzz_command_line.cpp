// Feeds any command line: the parsers must agree with one another, and any names in the arguments must come
// through the joined line unchanged.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>

#include "app/command_line.h"
#include "require.h"

using hl::fuzz::require;

namespace {

constexpr std::string_view kFormats[] = {"txt", "csv"};

void readRawLine(const std::string& line) {
    const auto sources = hl::GetFoldersFromCommand(line);
    for (const std::string& source : sources) require(source.size() <= line.size());
    const hl::SilentOrder order = hl::KZGetFoldersFromCommand("-s" + line, kFormats);
    require(order.levels >= 0 && order.levels <= hl::kMostLevels);
    require(order.delimiterIndex >= 0 && order.delimiterIndex <= 9);
    if (line.find('"') == std::string::npos) {
        require(order.outputFile.empty() && order.sources.empty());
    } else if (!sources.empty()) {
        require(order.outputFile == sources[0]);
        require(std::equal(sources.begin() + 1, sources.end(), order.sources.begin(), order.sources.end()));
    }
}

// Returns an absolute name that joining does not change: without NUL bytes, empty segments at the front and
// segments ".".
std::string nameFrom(FuzzedDataProvider& input) {
    std::string name = input.ConsumeRandomLengthString(12);
    std::erase(name, '\0');
    std::erase(name, '/');
    return "/x" + name;
}

void joinNames(FuzzedDataProvider& input) {
    const int levels = input.ConsumeIntegralInRange(0, hl::kMostLevels);
    const int delimiter = input.ConsumeIntegralInRange(0, 3);
    std::vector<std::string> arguments = {"-s" + std::to_string(levels)};
    if (delimiter != 0) arguments.push_back("-d" + std::to_string(delimiter));
    std::vector<std::string> names;
    for (int count = input.ConsumeIntegralInRange(2, 5); count > 0; --count) names.push_back(nameFrom(input));
    arguments.insert(arguments.end(), names.begin(), names.end());

    const hl::JoinedLine line = hl::joinArguments(arguments, "/", hl::kPosixPaths, kFormats);
    require(line.problem == hl::LineProblem::kNone && hl::isSilentLine(line.text));
    const hl::SilentOrder order = hl::KZGetFoldersFromCommand(line.text, kFormats);
    require(order.levels == levels && order.delimiterIndex == delimiter);
    require(order.outputFile == names[0]);
    require(std::equal(names.begin() + 1, names.end(), order.sources.begin(), order.sources.end()));
}

// Arguments of any kind must make a line that is a problem, or one in which every name is quoted.
void joinAnything(FuzzedDataProvider& input) {
    std::vector<std::string> arguments;
    for (int count = input.ConsumeIntegralInRange(0, 5); count > 0; --count)
        arguments.push_back(input.ConsumeRandomLengthString(12));
    for (const hl::PathRules* rules : {&hl::kPosixPaths, &hl::kDrivePaths}) {
        const hl::JoinedLine line =
            hl::joinArguments(arguments, rules == &hl::kPosixPaths ? "/" : "C:\\", *rules, kFormats);
        require(std::ranges::count(line.text, '"') % 2 == 0);
        if (line.problem == hl::LineProblem::kNone)
            require(line.text.empty() || line.text[0] == '"' || line.text[0] == '-');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    joinNames(input);
    joinAnything(input);
    readRawLine(input.ConsumeRemainingBytesAsString());
    return 0;
}
