#include "mainwindow/silent_run.h"

#include <utility>

#include "base/date_format.h"
#include "base/text.h"
#include "mainwindow/silent_find.h"
#include "output/balance_source.h"
#include "output/report_file.h"
#include "output/report_writer.h"
#include "robustness/api_error_text.h"
#include "scan/left_out.h"
#include "scan/yield.h"
#include "views/find_texts.h"

namespace hl {

namespace {
constexpr std::uint64_t kProgressInterval = 200;  // Milliseconds between two changes of the progress line.
constexpr std::size_t kLongestRules = std::size_t{16} << 20;  // Bytes of a file of rules.
}  // namespace

SilentRun::SilentRun(const Services& services)
    : session_(services), scan_(scanContext(session_, *this, *this)) {
    session_.state.SilentRun = true;
}

// --- what is left out

std::string SilentRun::takeRules(const std::string& commandLine) {
    const Texts& texts = services().texts;
    for (const std::string& rule : session_.options.Exclude)
        if (const RuleProblem problem = readRule(rule).problem; problem != RuleProblem::kNone)
            services().console.errorLine(ruleProblemText(texts, rule, problem));
    const SilentOrder line = KZGetFoldersFromCommand(commandLine, formatNames());
    session_.state.leaving.caches = line.excludeCaches;
    std::string problem;
    for (const std::string& rule : line.exclude)
        if (problem.empty()) problem = addRule(rule, "");
    for (const std::string& file : line.excludeFrom)
        if (problem.empty()) problem = addRulesOf(file);
    return problem;
}

std::string SilentRun::addRule(std::string_view line, const std::string& place) {
    const RuleReading reading = readRule(line);
    if (reading.problem != RuleProblem::kNone)
        return ruleProblemText(services().texts, place + std::string(line), reading.problem);
    if (reading.rule) session_.state.leaving.rules.emplace_back(line);
    return {};
}

std::string SilentRun::addRulesOf(const std::string& file) {
    const Result<std::string> text = services().files.readWhole(file, kLongestRules);
    if (!text)
        return services().texts.TL(9934, "Die Regeln in %1 können nicht gelesen werden: %2",
                                   {visible(file), ApiErrorText(false, text.error())});
    std::size_t number = 0;
    for (const std::string_view line : ruleLines(*text)) {
        std::string problem = addRule(line, file + ":" + std::to_string(++number) + ": ");
        if (!problem.empty()) return problem;
    }
    return {};
}

void SilentRun::tellLeftOut(Unshown leftOut) {
    const std::string text = leftOutText(services().texts, services().numbers, leftOut);
    if (!text.empty()) services().console.errorLine(text);
}

// --- a run with no window

bool SilentRun::run(const std::string& commandLine) {
    const SilentOrder line = KZGetFoldersFromCommand(commandLine, formatNames());
    const ReportOrder order = orderOf(line);
    const auto target = services().files.replace(order.path);
    if (!target) return reportNotWritten(order.path, ApiErrorText(false, target.error()));
    if (filter_) return find(line, **target);
    session_.state.balance.wanted = line.balance;
    session_.state.SourceQueue.assign(line.sources.begin(), line.sources.end());
    const std::uint32_t errorsBefore = services().diagnostics.errcount();
    read();
    services().console.progress("");
    tellLeftOut(leftOutOf(session_.tvwPL));
    // Nobody knows what an error of the program has left out, so an older report is worth more.
    const bool whole = services().diagnostics.errcount() == errorsBefore;
    if (!whole)
        reportNotWritten(order.path, services().texts.TL(9611, "ein unerwarteter Fehler"));
    else if (stopped_)
        reportNotWritten(order.path, services().texts.TL(9810, "angehalten"));
    const bool done =
        whole && !stopped_ && (line.balance ? writeBalance(line, **target) : writeReport(order, **target));
    return done && !somethingFailed_ && services().diagnostics.errcount() == 0;
}

void SilentRun::read() {
    watchForStop([this] { Ordnerliste_Abarbeiten(scan_); });
}

// A wish to stop that comes after the last pause of the reading counts, too.
void SilentRun::watchForStop(const std::function<void()>& work) {
    if (noteStop) noteStop(true);
    work();
    services().pump.PumpMessages();
    stopped_ = stopped_ || session_.state.CancelState == kCancelStop;
    if (noteStop) noteStop(false);
}

// --- files that are found

std::string SilentRun::takeFilter(const std::string& commandLine) {
    const SilentOrder line = KZGetFoldersFromCommand(commandLine, formatNames());
    if (!line.find) return {};
    auto filter = FindFilter::read(*line.find, [this](const std::string& name) {
        OwnerNames* owners = services().owners;
        return owners != nullptr ? owners->numberOf(name) : std::nullopt;
    });
    if (const auto* problem = std::get_if<FilterProblem>(&filter))
        return filterProblemText(services().texts, *problem);
    filter_ = std::get<FindFilter>(std::move(filter));
    return {};
}

bool SilentRun::find(const SilentOrder& line, ReplacingFile& target) {
    const FoundFormat format = foundFormatNamed(line.format);
    const FoundLines lines(format, services().owners, target.isTerminal());
    const FindOrder order = {.filter = *filter_,
                             .started = secondsNow(),
                             .detail = format == FoundFormat::kNul ? FindDetail::kPath : FindDetail::kFacts};
    ReportFile file(target);
    watchForStop([&] {
        SilentFind found(scan_, *this, file, lines);
        for (const std::string& source : line.sources)
            if (!found.run(source, order)) break;
    });
    services().console.progress("");
    tellLeftOut(session_.state.leaving.ofSearch);
    if (services().diagnostics.errcount() != 0)
        return reportNotWritten(line.outputFile, services().texts.TL(9611, "ein unerwarteter Fehler"));
    if (stopped_) return reportNotWritten(line.outputFile, services().texts.TL(9810, "angehalten"));
    ReportOutcome outcome;
    const Result<> committed = file.commit();
    outcome.written = bool{committed};
    if (!committed) outcome.error = committed.error();
    outcome.leftBehind = target.leftBehind();
    return written(line.outputFile, outcome) && !somethingFailed_;
}

// --- the report and the balance

bool SilentRun::writeReport(const ReportOrder& order, ReplacingFile& target) {
    if (session_.tvwPL.rowCount() == 0)
        return reportNotWritten(order.path, services().texts.TL(9610, "es wurde nichts eingelesen"));
    return written(order.path, SPEICHERN(scan_, order, target));
}

bool SilentRun::writeBalance(const SilentOrder& line, ReplacingFile& target) {
    const bool json =
        line.format.empty() ? lowerCase(line.outputFile).ends_with(".json") : line.format == "json";
    std::string text = json ? "{\"v\":1,\"balances\":[" : "";
    const std::string emptyText = text;
    Yield wait(session_.state, services().pump);
    Grid& report = session_.tvwPL;
    for (Row source = report.firstRoot(); source != kNoRow; source = report.nextSibling(source)) {
        const auto balance = balanceOfSource(scan_, source, &wait);
        if (!balance) return reportNotWritten(line.outputFile, services().texts.TL(9810, "angehalten"));
        if (text != emptyText) text.append(json ? "," : kLineEnd);
        if (json) {
            appendBalanceJson(text, *balance);
        } else {
            appendBalanceText(text, {services().texts, services().numbers}, *balance);
        }
        const std::string why = whyNoBalance(services().texts, *balance);
        if (!why.empty()) services().console.errorLine(why);
        somethingFailed_ = somethingFailed_ || !why.empty();
    }
    if (text == emptyText)
        return reportNotWritten(line.outputFile, services().texts.TL(9610, "es wurde nichts eingelesen"));
    if (json) text += "]}\n";
    Result<> done = target.write(text);
    if (done) done = target.commit();
    ReportOutcome outcome{.written = static_cast<bool>(done), .leftBehind = target.leftBehind()};
    if (!done) outcome.error = done.error();
    return written(line.outputFile, outcome);
}

// Reports what kept the file from being written; returns whether it was.
bool SilentRun::written(const std::string& file, const ReportOutcome& outcome) {
    const Texts& texts = services().texts;
    if (outcome.written) return true;
    // The reader of a pipe may leave when it has read enough; that is no failure to report.
    if (outcome.error && outcome.error->kind == ErrorKind::kReaderGone) return false;
    const std::string reason =
        outcome.error ? ApiErrorText(false, *outcome.error) : texts.TL(9611, "ein unerwarteter Fehler");
    return reportNotWritten(file, reason + leftBehindText(texts, outcome.leftBehind));
}

// Reports that the report was not written; returns false for the caller to return.
bool SilentRun::reportNotWritten(const std::string& file, const std::string& reason) {
    const Texts& texts = services().texts;
    const std::string name = file == kStandardOutput ? texts.TL(9612, "(Standardausgabe)") : visible(file);
    services().console.errorLine(
        texts.TL(9020, "Der Bericht %1 wurde nicht geschrieben: %2", {name, reason}));
    return false;
}

// --- what a scan tells

void SilentRun::lockControls(bool) {
    for (Grid* grid : {&session_.tvwPL, &session_.lvwTOP, &session_.lvwHardlinks, &session_.lvwJunctions})
        grid->setEnabled(false);
}

void SilentRun::unlockControls() {
    for (Grid* grid : {&session_.tvwPL, &session_.lvwTOP, &session_.lvwHardlinks, &session_.lvwJunctions})
        grid->setEnabled(true);
}

void SilentRun::runEnded(RunEnd end) {
    stopped_ = end == RunEnd::kStopped;
    services().console.progress("");
}

void SilentRun::folderEntered(std::string_view path) {
    if (!services().console.showsProgress()) return;
    const std::uint64_t tick = services().pump.GetTickCount();
    if (tick < lastProgressTick_ + kProgressInterval) return;
    lastProgressTick_ = tick;
    services().console.progress(visible(path));
}

void SilentRun::sourceMissing(const std::string& source, const std::string& reason) {
    if (!reason.empty()) return notRead(source, reason);
    services().console.errorLine(
        services().texts.TL(9021, "Die Quelle %1 gibt es nicht.", {visible(source)}));
    somethingFailed_ = true;
}

void SilentRun::diskSilent(const std::string& text) {
    services().console.errorLine(text);
}

void SilentRun::notRead(std::string_view path, const std::string& reason) {
    services().console.errorLine(services().texts.TL(9022, "Nicht gelesen: %1: %2", {visible(path), reason}));
    somethingFailed_ = true;
}

}  // namespace hl
