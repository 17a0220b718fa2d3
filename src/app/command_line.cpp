#include "app/command_line.h"

#include <algorithm>
#include <optional>

#include "base/text.h"

namespace hl {

namespace {

constexpr char kQuoteInName = '\0';

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isDelimiterSwitch(std::string_view argument) {
    return argument.size() == 3 && argument.starts_with("-d") && isDigit(argument[2]);
}

// A switch stands bare in the line, where a double quote would open a name.
bool isSilentSwitch(std::string_view argument) {
    return isSilentLine(argument) && argument.find('"') == std::string_view::npos;
}

bool isSwitch(std::string_view argument) {
    return isSilentSwitch(argument) || isDelimiterSwitch(argument) || argument == "-RESTART" ||
           argument == "-TLMODUS" || argument == "--help" || argument == "-h" || argument == "--version";
}

// With blanks between them; true for none at all.
bool areSwitches(std::string_view line) {
    while (!line.empty()) {
        const std::string_view argument = line.substr(0, line.find(' '));
        if (!argument.empty() && !isSwitch(argument)) return false;
        line.remove_prefix(std::min(argument.size() + 1, line.size()));
    }
    return true;
}

bool isAbsolute(std::string_view path, const PathRules& rules) {
    const bool drive = rules.separator == '\\' && path.size() > 2 && path[1] == ':' && path[2] == '\\';
    return drive || path.starts_with(rules.separator);
}

// Without the segments "." and empty ones; a separator at the end stays.
std::string withoutDots(std::string_view path, char separator) {
    std::string out;
    bool first = true;
    while (!path.empty()) {
        const std::size_t end = path.find(separator);
        const std::size_t length = end == std::string_view::npos ? path.size() : end + 1;
        const std::string_view segment = path.substr(0, length);
        const bool empty = end == 0 && !first;
        if (segment.substr(0, end) != "." && !empty) out += segment;
        path.remove_prefix(length);
        first = false;
    }
    return out;
}

std::string absolutePath(std::string_view argument, std::string_view cwd, const PathRules& rules) {
    if (isNetworkPath(argument)) return std::string(argument);
    std::string relative = withoutDots(argument, rules.separator);
    if (isAbsolute(argument, rules)) return relative;
    return relative.empty() ? std::string(cwd) : joinPath(cwd, relative, rules);
}

std::string quoted(std::string path) {
    std::ranges::replace(path, '"', kQuoteInName);
    return '"' + path + '"';
}

// One argument on its way into the line.
struct Piece {
    std::string text;
    bool isSwitch = false;
};

class Joiner {
  public:
    Joiner(std::string_view cwd, const PathRules& rules) : cwd_(cwd), rules_(rules) {}

    void add(const std::string& argument) {
        if (switches_ && argument == "--") {
            switches_ = false;
        } else if (argument.empty()) {
            complain(LineProblem::kEmptyArgument, argument);
        } else if (switches_ && isSwitch(argument)) {
            line_.asksForHelp |= argument == "--help" || argument == "-h";
            line_.asksForVersion |= argument == "--version";
            pieces_.push_back({argument, true});
        } else if (switches_ && argument.starts_with('-')) {
            complain(LineProblem::kUnknownSwitch, argument);
        } else {
            if (cwd_.empty() && !isAbsolute(argument, rules_))
                complain(LineProblem::kNoCurrentFolder, argument);
            pieces_.push_back({quoted(absolutePath(argument, cwd_, rules_)), false});
        }
    }

    JoinedLine take() {
        if (!pieces_.empty() && isSilentLine(pieces_[0].text)) fixDelimiter();
        for (const Piece& piece : pieces_) line_.text += (line_.text.empty() ? "" : " ") + piece.text;
        return std::move(line_);
    }

  private:
    void complain(LineProblem problem, const std::string& argument) {
        if (line_.problem != LineProblem::kNone) return;
        line_.problem = problem;
        line_.badArgument = argument;
    }

    // The parser takes the first "-d" of the line.
    void fixDelimiter() {
        if (pieces_[0].text.find("-d") != std::string::npos) return;
        const auto given = std::ranges::find_if(
            pieces_, [](const Piece& piece) { return piece.isSwitch && isDelimiterSwitch(piece.text); });
        if (given == pieces_.end()) {
            pieces_[0].text += "-d0";
        } else {
            pieces_[0].text += given->text;
            pieces_.erase(given);
        }
    }

    std::string cwd_;
    const PathRules& rules_;
    bool switches_ = true;
    std::vector<Piece> pieces_;
    JoinedLine line_;
};

// The texts between double quotes; nothing if there is no double quote at all.
std::optional<std::vector<std::string>> quotedTexts(std::string_view line) {
    std::size_t open = line.find('"');
    if (open == std::string_view::npos) return std::nullopt;
    std::vector<std::string> texts;
    while (open != std::string_view::npos) {
        const std::size_t close = line.find('"', open + 1);
        if (close == std::string_view::npos) break;
        std::string text(line.substr(open + 1, close - open - 1));
        std::ranges::replace(text, kQuoteInName, '"');
        texts.push_back(std::move(text));
        open = line.find('"', close + 1);
    }
    return texts;
}

std::int32_t leadingNumber(std::string_view text) {
    std::int64_t number = 0;
    for (const char c : text) {
        if (!isDigit(c)) break;
        number = std::min<std::int64_t>(number * 10 + (c - '0'), kMostLevels);
    }
    return static_cast<std::int32_t>(number);
}

}  // namespace

JoinedLine joinArguments(const std::vector<std::string>& arguments, std::string_view cwd,
                         const PathRules& rules) {
    Joiner joiner(cwd, rules);
    for (const std::string& argument : arguments) joiner.add(argument);
    return joiner.take();
}

bool isSilentLine(std::string_view line) {
    return line.starts_with("-s");
}

std::vector<std::string> GetFoldersFromCommand(std::string_view line) {
    if (areSwitches(line)) return {};
    if (auto texts = quotedTexts(line)) return std::move(*texts);
    return {std::string(line)};
}

SilentOrder KZGetFoldersFromCommand(std::string_view line) {
    SilentOrder order;
    std::string_view rest = trimBlanks(line);
    rest.remove_prefix(std::min<std::size_t>(2, rest.size()));
    order.levels = leadingNumber(rest);
    const std::size_t delimiter = rest.find("-d");
    if (delimiter != std::string_view::npos && delimiter + 2 < rest.size() && isDigit(rest[delimiter + 2]))
        order.delimiterIndex = rest[delimiter + 2] - '0';
    const auto texts = quotedTexts(rest);
    if (!texts || texts->empty()) return order;
    order.outputFile = texts->front();
    order.sources.assign(texts->begin() + 1, texts->end());
    return order;
}

}  // namespace hl
