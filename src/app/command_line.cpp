#include "app/command_line.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "app/line_options.h"
#include "base/absolute_path.h"
#include "base/size_argument.h"
#include "base/text.h"
#include "platform/files.h"

namespace hl {

namespace {

constexpr char kQuoteInName = '\0';
constexpr std::string_view kFormat = "--format";
constexpr std::string_view kFormatNamed = "--format=";
constexpr std::string_view kBalance = "--balance";
constexpr std::string_view kFind = "--find";
constexpr std::string_view kFindNamed = "--find=";
constexpr std::string_view kExclude = "--exclude";
constexpr std::string_view kExcludeFrom = "--exclude-from";
constexpr std::string_view kExcludeCaches = "--exclude-caches";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isDelimiterSwitch(std::string_view argument) {
    return argument.size() == 3 && argument.starts_with("-d") && isDigit(argument[2]);
}

bool isFormat(std::string_view argument, FormatNames formats) {
    return argument.starts_with(kFormatNamed) &&
           std::ranges::count(formats, argument.substr(kFormatNamed.size())) != 0;
}

// Whether the format suits what is written is known only at the line's end.
bool isFormatSwitch(std::string_view argument, FormatNames formats) {
    return isFormat(argument, formats) || isFormat(argument, kBalanceFormats) ||
           isFormat(argument, kFindFormats) || isFormat(argument, kProgramFormats);
}

// A switch stands in the line without quotes; a double quote in it would begin a name.
bool isSilentSwitch(std::string_view argument) {
    return isSilentLine(argument) && argument.find('"') == std::string_view::npos;
}

// Encodes what could be taken for another switch, a blank or a double quote.
std::string encoded(std::string_view text) {
    constexpr std::string_view kPlain = "._/*", kDigits = "0123456789ABCDEF";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool letter = (byte | 0x20U) >= 'a' && (byte | 0x20U) <= 'z' && byte < 0x80;
        if (letter || isDigit(c) || kPlain.find(c) != std::string_view::npos)
            out += c;
        else
            out.append({'%', kDigits[byte >> 4], kDigits[byte & 15U]});
    }
    return out;
}

std::string decoded(std::string_view text) {
    const auto valueOf = [](char digit) { return isDigit(digit) ? digit - '0' : digit - 'A' + 10; };
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isCode = text[at] == '%' && at + 2 < text.size();
        out += isCode ? static_cast<char>(valueOf(text[at + 1]) << 4 | valueOf(text[at + 2])) : text[at];
        if (isCode) at += 2;
    }
    return out;
}

bool isSwitch(std::string_view argument) {
    return argument == kExcludeCaches || argument == kNoNames || isSilentSwitch(argument) ||
           isDelimiterSwitch(argument) || argument == "-RESTART" || argument == "-TLMODUS" ||
           argument == kBalance || argument == "--help" || argument == "-h" || argument == "--version";
}

// Tells whether the line holds only switches with blanks between them, or nothing.
bool areSwitches(std::string_view line) {
    while (!line.empty()) {
        const std::string_view argument = line.substr(0, line.find(' '));
        if (!argument.empty() && !isSwitch(argument) && !argument.starts_with(kFormatNamed) &&
            textOptionOf(argument) == nullptr)
            return false;
        line.remove_prefix(std::min(argument.size() + 1, line.size()));
    }
    return true;
}

// Makes the report's path absolute by putting the current folder in front; the system follows any links in
// it.
std::string reportPath(std::string_view argument, std::string_view cwd, const PathRules& rules) {
    const std::string here = {'.', rules.separator};
    while (argument.starts_with(here)) argument.remove_prefix(here.size());
    if (isAbsolutePath(argument, rules) || isNetworkPath(argument)) return std::string(argument);
    return joinPath(cwd, argument, rules);
}

std::string quoted(std::string path) {
    std::ranges::replace(path, '"', kQuoteInName);
    return '"' + path + '"';
}

// One argument, as it goes into the line.
struct Piece {
    std::string text;
    bool isSwitch = false;
};

class Joiner {
  public:
    Joiner(std::string_view cwd, const PathRules& rules, FormatNames formats)
        : cwd_(cwd), rules_(rules), formats_(formats) {}

    void add(const std::string& argument) {
        if (wantsText_ != nullptr) return addText(*std::exchange(wantsText_, nullptr), argument);
        if (std::exchange(wantsFilter_, false)) return addFilter(argument);
        if (std::exchange(wantsFormat_, false)) return addSwitchOrName(std::string(kFormatNamed) + argument);
        if (const TextOption* option = textOptionOf(argument); switches_ && option != nullptr) {
            if (argument == option->name)
                wantsText_ = option;
            else
                addText(*option, std::string_view(argument).substr(option->name.size() + 1));
            return;
        }
        if (switches_ && argument.starts_with(kFindNamed))
            return addFilter(std::string_view(argument).substr(kFindNamed.size()));
        wantsFilter_ = switches_ && argument == kFind;
        wantsFormat_ = switches_ && argument == kFormat;
        if (!wantsFormat_ && !wantsFilter_) addSwitchOrName(argument);
    }

    JoinedLine take() {
        if (wantsFormat_) complain(LineProblem::kUnknownFormat, std::string(kFormat));
        if (wantsFilter_) complain(LineProblem::kNoFilter, std::string(kFind));
        if (wantsText_ != nullptr) complain(LineProblem::kNoValue, std::string(wantsText_->name));
        checkOptions();
        if (has(kFindNamed) && line_.problem == LineProblem::kUnknownFormat)
            line_.problem = LineProblem::kNotWithFind;
        checkBalance();
        checkEnding();
        checkShape();
        const std::size_t least = has(kOpenOption) ? 1 : 2;
        if (isSilent() && names_ < least) complain(LineProblem::kIncompleteReport, "");
        if (isSilent()) fixDelimiter();
        for (const Piece& piece : pieces_) line_.text += (line_.text.empty() ? "" : " ") + piece.text;
        return std::move(line_);
    }

  private:
    bool isSilent() const { return !pieces_.empty() && isSilentLine(pieces_[0].text); }
    // Tells whether the next name is the first of a silent line: the report's file.
    bool isForReport() const { return isSilent() && names_ == 0; }

    void addFilter(std::string_view text) {
        pieces_.push_back({std::string(kFindNamed) + encoded(text), true});
    }

    // Standard input is no file of rules: reading it may wait for somebody.
    void addText(const TextOption& option, std::string_view value) {
        const bool isInput = option.isPath && value == kStandardOutput;
        const std::string name(option.name);
        if (value.empty() || (isInput && !option.mayBeInput)) complain(LineProblem::kNoValue, name);
        const bool isPath = option.isPath && !isInput;
        if (isPath && cwd_.empty() && !isAbsolutePath(value, rules_))
            complain(LineProblem::kNoCurrentFolder, std::string(value));
        const std::string whole = isPath ? reportPath(value, cwd_, rules_) : std::string(value);
        pieces_.push_back({name + "=" + encoded(whole), true});
    }

    void addSwitchOrName(const std::string& argument) {
        if (switches_ && argument == "--") {
            switches_ = false;
        } else if (argument.empty()) {
            complain(LineProblem::kEmptyArgument, argument);
        } else if (switches_ && (isSwitch(argument) || isFormatSwitch(argument, formats_))) {
            line_.asksForHelp |= argument == "--help" || argument == "-h";
            line_.asksForVersion |= argument == "--version";
            pieces_.push_back({argument, true});
        } else if (argument == kStandardOutput && isForReport()) {
            addName(argument);
        } else if (switches_ && argument.starts_with(kFormat)) {
            complain(LineProblem::kUnknownFormat, argument);
        } else if (switches_ && argument.starts_with('-')) {
            complain(LineProblem::kUnknownSwitch, argument);
        } else {
            if (cwd_.empty() && !isAbsolutePath(argument, rules_))
                complain(LineProblem::kNoCurrentFolder, argument);
            addName(isForReport() ? reportPath(argument, cwd_, rules_)
                                  : absoluteSource(argument, {cwd_, ""}, rules_));
        }
    }

    bool has(std::string_view option) const {
        return std::ranges::any_of(
            pieces_, [&](const Piece& piece) { return piece.isSwitch && piece.text.starts_with(option); });
    }

    // A balance and a search have neither levels nor delimiters.
    void checkOptions() {
        const bool balance = wantsBalance(), find = has(kFindNamed);
        const FormatNames named = find      ? FormatNames(kFindFormats)
                                  : balance ? FormatNames(kBalanceFormats)
                                            : formats_;
        const bool programs = !find && !balance;
        const LineProblem notTogether = find ? LineProblem::kNotWithFind : LineProblem::kNotTogether;
        int balances = 0, formats = 0, filters = 0, caches = 0;
        for (const Piece& piece : pieces_) {
            if (!piece.isSwitch) continue;
            const bool isFormatName = piece.text.starts_with(kFormatNamed);
            const bool isFilter = piece.text.starts_with(kFindNamed);
            const bool hasText = isFilter || textOptionOf(piece.text) != nullptr;
            const std::string name = hasText ? piece.text.substr(0, piece.text.find('=')) : piece.text;
            balances += piece.text == kBalance ? 1 : 0;
            formats += isFormatName ? 1 : 0;
            filters += isFilter ? 1 : 0;
            caches += piece.text == kExcludeCaches ? 1 : 0;
            if (!isSilent() &&
                (isFormatName || isFilter || piece.text.starts_with(kExclude) || piece.text == kBalance))
                complain(LineProblem::kNotForWindow, name);
            if (balances > 1 || formats > 1 || filters > 1 || caches > 1 || (find && balances > 0))
                complain(notTogether, name);
            const bool useless =
                isSilentLine(piece.text) ? piece.text != "-s" : isDelimiterSwitch(piece.text);
            const bool suits =
                isFormat(piece.text, named) || (programs && isFormat(piece.text, kProgramFormats));
            if ((balance || find) && useless) complain(notTogether, name);
            if (find && isFormatName && !suits) complain(notTogether, name);
            if (isFormatName && !suits)
                complain(programs ? problemOf(name) : LineProblem::kUnknownFormat, name);
        }
    }

    // The name is that of a format that reports don't have.
    static LineProblem problemOf(std::string_view format) {
        return isFormat(format, kFindFormats)      ? LineProblem::kFormatOfFind
               : isFormat(format, kBalanceFormats) ? LineProblem::kFormatOfBalance
                                                   : LineProblem::kUnknownFormat;
    }

    bool wantsBalance() const { return has(kBalance); }

    // Whoever wants a balance is told of its formats, not of those of reports.
    void checkBalance() {
        if (!isSilent() || !wantsBalance()) return;
        if (line_.problem == LineProblem::kUnknownFormat) line_.problem = LineProblem::kBalanceFormat;
    }

    // Whoever gives a file the ending of a report expects one of that format in it.
    void checkEnding() {
        const bool find = has(kFindNamed);
        if (!isSilent() || (!find && !wantsBalance()) || has(kFormatNamed)) return;
        const FormatNames own = find ? FormatNames(kFindFormats) : FormatNames(kBalanceFormats);
        const std::string name = lowerCase(reportFile_);
        const bool isOther = std::ranges::any_of(formats_, [&](std::string_view format) {
            return std::ranges::count(own, format) == 0 && name.ends_with("." + std::string(format));
        });
        if (isOther || programFormatOf("", name) != ProgramFormat::kNone)
            complain(find ? LineProblem::kFindEnding : LineProblem::kBalanceEnding, reportFile_);
    }

    // What the options of app/line_options.h need.
    void checkShape() {
        LineShape shape{.file = reportFile_,
                        .isSilent = isSilent(),
                        .hasOtherTask = wantsBalance() || has(kFindNamed),
                        .folders = names_ > 0 ? names_ - 1 : 0};
        for (const Piece& piece : pieces_) {
            if (!piece.isSwitch) continue;
            if (piece.text.starts_with(kFormatNamed)) shape.format = piece.text.substr(kFormatNamed.size());
            const std::size_t text = textOptionOf(piece.text) != nullptr ? piece.text.find('=') + 1 : 0;
            shape.switches.push_back(piece.text.substr(0, text) + decoded(piece.text.substr(text)));
        }
        const ShapeFault fault = faultOf(shape);
        if (fault.problem == ShapeProblem::kNone) return;
        line_.shape = line_.problem == LineProblem::kNone ? fault.problem : line_.shape;
        complain(LineProblem::kShape, fault.option);
    }

    void addName(std::string name) {
        if (isForReport()) reportFile_ = name;
        pieces_.push_back({quoted(std::move(name)), false});
        ++names_;
    }

    void complain(LineProblem problem, const std::string& argument) {
        if (line_.problem != LineProblem::kNone) return;
        line_.problem = problem;
        line_.badArgument = argument;
    }

    // Puts the delimiter right behind "-s", since the parser takes the first "-d" of the line.
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
    FormatNames formats_;
    bool switches_ = true;
    bool wantsFormat_ = false;               ///< The next argument is a format's name.
    bool wantsFilter_ = false;               ///< The next argument is a filter.
    const TextOption* wantsText_ = nullptr;  ///< The option that the next argument belongs to.
    std::size_t names_ = 0;
    std::string reportFile_;
    std::vector<Piece> pieces_;
    JoinedLine line_;
};

// Returns the texts between double quotes; nothing if there is no double quote at all.
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

// Returns the longest name of a format that the text begins with.
std::string_view leadingFormat(std::string_view text, FormatNames formats) {
    std::string_view longest;
    for (const std::string_view name : formats)
        if (text.starts_with(name) && name.size() > longest.size()) longest = name;
    return longest;
}

// Returns what stands behind the first `option` outside of double quotes; inside of them are names, which may
// hold anything.
std::optional<std::string_view> behind(std::string_view line, std::string_view option) {
    bool bare = true;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '"') bare = !bare;
        if (bare && line.substr(at).starts_with(option)) return line.substr(at + option.size());
    }
    return std::nullopt;
}

std::string formatIn(std::string_view line, FormatNames formats) {
    for (auto rest = behind(line, kFormatNamed); rest; rest = behind(*rest, kFormatNamed))
        if (const std::string_view name = leadingFormat(*rest, formats); !name.empty())
            return std::string(name);
    return {};
}

// Returns what stands behind each `option` of the line, up to a blank.
std::vector<std::string> valuesOf(std::string_view line, std::string_view option) {
    std::vector<std::string> values;
    for (auto rest = behind(line, option); rest; rest = behind(*rest, option))
        values.push_back(decoded(rest->substr(0, rest->find(' '))));
    return values;
}

std::string valueOf(std::string_view line, std::string_view option) {
    const auto values = valuesOf(line, std::string(option) + "=");
    return values.empty() ? "" : values.front();
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
                         const PathRules& rules, FormatNames formats) {
    Joiner joiner(cwd, rules, formats);
    for (const std::string& argument : arguments) joiner.add(argument);
    return joiner.take();
}

bool isSilentLine(std::string_view line) {
    return line.starts_with("-s");
}

std::string openedByCommand(std::string_view line) {
    return valueOf(line, kOpenOption);
}

std::vector<std::string> GetFoldersFromCommand(std::string_view line) {
    if (areSwitches(line)) return {};
    if (auto texts = quotedTexts(line)) return std::move(*texts);
    return {std::string(line)};
}

SilentOrder KZGetFoldersFromCommand(std::string_view line, FormatNames formats) {
    SilentOrder order;
    std::string_view rest = trimBlanks(line);
    rest.remove_prefix(std::min<std::size_t>(2, rest.size()));
    order.levels = leadingNumber(rest);
    const std::size_t delimiter = rest.find("-d");
    if (delimiter != std::string_view::npos && delimiter + 2 < rest.size() && isDigit(rest[delimiter + 2]))
        order.delimiterIndex = rest[delimiter + 2] - '0';
    order.balance = behind(rest, kBalance).has_value();
    if (const auto filters = valuesOf(rest, kFindNamed); !filters.empty()) order.find = filters.front();
    order.format = formatIn(rest, order.find      ? FormatNames(kFindFormats)
                                  : order.balance ? FormatNames(kBalanceFormats)
                                                  : formats);
    if (!order.find && !order.balance && order.format.empty()) order.format = formatIn(rest, kProgramFormats);
    order.exclude = valuesOf(rest, std::string(kExclude) + "=");
    order.excludeFrom = valuesOf(rest, std::string(kExcludeFrom) + "=");
    order.excludeCaches = behind(rest, kExcludeCaches).has_value();
    order.noNames = behind(rest, kNoNames).has_value();
    order.open = valueOf(rest, kOpenOption);
    order.compare = valueOf(rest, kCompareOption);
    if (const auto grown = sizeOfArgument(valueOf(rest, kGrownOption))) order.grown = grown->bytes;
    order.jsonProgress = valueOf(rest, kProgressOption) == "json";
    const auto texts = quotedTexts(rest);
    if (!texts || texts->empty()) return order;
    order.outputFile = texts->front();
    order.sources.assign(texts->begin() + 1, texts->end());
    return order;
}

}  // namespace hl
