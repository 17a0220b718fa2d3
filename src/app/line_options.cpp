#include "app/line_options.h"

#include <algorithm>
#include <optional>

#include "base/size_argument.h"
#include "base/text.h"

namespace hl {

namespace {

constexpr TextOption kTextOptions[] = {{.name = "--exclude", .repeats = true},
                                       {.name = "--exclude-from", .isPath = true, .repeats = true},
                                       {.name = kOpenOption, .isPath = true, .mayBeInput = true},
                                       {.name = kCompareOption, .isPath = true, .mayBeInput = true},
                                       {.name = kGrownOption},
                                       {.name = kProgressOption}};

std::string_view nameOf(std::string_view option) {
    return option.substr(0, option.find('='));
}

std::optional<std::string_view> textOf(const LineShape& line, std::string_view name) {
    for (const std::string& option : line.switches)
        if (nameOf(option) == name && option.size() > name.size())
            return std::string_view(option).substr(name.size() + 1);
    return std::nullopt;
}

bool has(const LineShape& line, std::string_view name) {
    return std::ranges::any_of(line.switches,
                               [&](const std::string& option) { return nameOf(option) == name; });
}

// Options that only a run without a window has, and those that are of no use twice.
ShapeFault faultOfEach(const LineShape& line) {
    for (const std::string_view name : {kNoNames, kOpenOption, kCompareOption, kGrownOption, kProgressOption})
        if (!line.isSilent && has(line, name)) return {ShapeProblem::kNotForWindow, std::string(name)};
    for (const std::string& option : line.switches) {
        const TextOption* known = textOptionOf(option);
        if (known == nullptr ? nameOf(option) != kNoNames : known->repeats) continue;
        const auto same = [&](const std::string& other) { return nameOf(other) == nameOf(option); };
        if (std::ranges::count_if(line.switches, same) > 1)
            return {ShapeProblem::kNotTogether, std::string(nameOf(option))};
    }
    return {};
}

// Levels and a delimiter are of no use to most of what is written.
ShapeFault faultOfLayout(const LineShape& line, bool hasLevels) {
    for (const std::string& option : line.switches) {
        const bool levels =
            option.starts_with("-s") && option.size() > 2 && option[2] >= '0' && option[2] <= '9';
        const bool delimiter = option.find("-d") != std::string::npos && !option.starts_with("--");
        if (delimiter || (levels && !hasLevels)) return {ShapeProblem::kNotTogether, option};
    }
    return {};
}

ShapeFault faultOfComparing(const LineShape& line) {
    const std::string name(kCompareOption);
    if (line.hasOtherTask || has(line, kOpenOption)) return {ShapeProblem::kNotTogether, name};
    if (has(line, kNoNames)) return {ShapeProblem::kNotTogether, std::string(kNoNames)};
    if (!line.format.empty() && std::ranges::count(kCompareFormats, line.format) == 0)
        return {ShapeProblem::kCompareFormat, "--format=" + line.format};
    const ProgramFormat format = programFormatOf(line.format, line.file);
    if (format == ProgramFormat::kNcdu || format == ProgramFormat::kScan)
        return {ShapeProblem::kCompareFormat, line.file};
    if (line.folders > 1) return {ShapeProblem::kOneSource, name};
    return faultOfLayout(line, false);
}

}  // namespace

std::span<const TextOption> textOptions() {
    return kTextOptions;
}

const TextOption* textOptionOf(std::string_view argument) {
    const auto* found = std::ranges::find(kTextOptions, nameOf(argument), &TextOption::name);
    return found == std::end(kTextOptions) ? nullptr : found;
}

ProgramFormat programFormatOf(std::string_view format, std::string_view file) {
    const std::string name = lowerCase(file);
    const auto is = [&](std::string_view named, std::string_view ending) {
        return format.empty() ? name.ends_with(ending) : format == named;
    };
    if (is("jsonl", ".jsonl")) return ProgramFormat::kJsonLines;
    if (is("ncdu", ".ncdu.json")) return ProgramFormat::kNcdu;
    return is("scan", ".hlscan") ? ProgramFormat::kScan : ProgramFormat::kNone;
}

ShapeFault faultOf(const LineShape& line) {
    if (ShapeFault fault = faultOfEach(line); fault.problem != ShapeProblem::kNone) return fault;
    const auto grown = textOf(line, kGrownOption);
    if (grown && !sizeOfArgument(*grown)) return {ShapeProblem::kNoSize, std::string(*grown)};
    const auto progress = textOf(line, kProgressOption);
    if (progress && *progress != "json") return {ShapeProblem::kNoProgress, std::string(*progress)};
    if (has(line, kCompareOption)) return faultOfComparing(line);
    if (grown) return {ShapeProblem::kNotTogether, std::string(kGrownOption)};
    const ProgramFormat format =
        line.hasOtherTask ? ProgramFormat::kNone : programFormatOf(line.format, line.file);
    if (has(line, kNoNames) && format != ProgramFormat::kScan)
        return {ShapeProblem::kNotTogether, std::string(kNoNames)};
    const bool opens = has(line, kOpenOption) && line.isSilent;
    if (opens && (line.folders > 0 || line.hasOtherTask || format == ProgramFormat::kNcdu))
        return {ShapeProblem::kNotTogether, std::string(kOpenOption)};
    if (!line.isSilent || format == ProgramFormat::kNone) return {};
    if (format != ProgramFormat::kJsonLines && line.folders > 1)
        return {ShapeProblem::kOneSource, line.format.empty() ? line.file : "--format=" + line.format};
    return faultOfLayout(line, format == ProgramFormat::kJsonLines);
}

}  // namespace hl
