#include "mainwindow/silent_run.h"

#include <algorithm>
#include <utility>

#include "base/date_format.h"
#include "base/json_text.h"
#include "base/text.h"
#include "mainwindow/saved_files.h"
#include "mainwindow/silent_find.h"
#include "output/balance_source.h"
#include "output/growth.h"
#include "output/json_lines.h"
#include "output/ncdu_export.h"
#include "output/report_file.h"
#include "output/report_writer.h"
#include "output/scan_output.h"
#include "robustness/api_error_text.h"
#include "robustness/trap.h"
#include "scan/file_system_calls.h"
#include "scan/find_terms.h"
#include "scan/left_out.h"
#include "scan/rollup.h"
#include "scan/scan_options_text.h"
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
    const SilentOrder line = KZGetFoldersFromCommand(commandLine, formatNames());
    session_.state.leaving.caches = line.excludeCaches;
    std::string problem;
    for (const std::string& rule : session_.options.Exclude)
        if (const RuleProblem why = readRule(rule).problem; problem.empty() && why != RuleProblem::kNone)
            problem = ruleProblemText(services().texts, "[Optionen] Exclude: " + rule, why);
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
    if (line.jsonProgress) jsonSince_ = services().pump.GetTickCount();
    if (filter_) return find(line, **target);
    if (formatOf(line) == ProgramFormat::kNcdu) return writeNcdu(line, **target);
    prepare(line);
    if (!takeEarlier(line)) return false;
    session_.state.balance.wanted = line.balance;
    session_.state.SourceQueue.assign(line.sources.begin(), line.sources.end());
    const std::uint32_t errorsBefore = services().diagnostics.errcount();
    if (line.open.empty())
        read();
    else if (!openInstead(line.open))
        return false;
    services().console.progress("");
    tellLeftOut(leftOutOf(session_.tvwPL));
    // Nobody knows what an error of the program has left out, so an older report is worth more.
    const bool whole = services().diagnostics.errcount() == errorsBefore;
    if (!whole)
        reportNotWritten(order.path, services().texts.TL(9611, "ein unerwarteter Fehler"));
    else if (stopped_)
        reportNotWritten(order.path, services().texts.TL(9810, "angehalten"));
    const bool done = whole && !stopped_ && writeWanted(line, order, **target);
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
    // What takes every file must be asked for: a script may have lost its filter.
    if (filterTerms(*line.find).empty())
        return services().texts.TL(9967,
                                   "Zu --find gehört ein Filter, zum Beispiel 'size>1G age>1y name=*.iso'.");
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
    bool entered = false;
    watchForStop([&] {
        SilentFind found(scan_, *this, file, lines);
        for (const std::string& source : line.sources)
            if (!found.run(source, order)) break;
        entered = found.entered();
    });
    services().console.progress("");
    if (!entered && !stopped_)
        return reportNotWritten(line.outputFile, services().texts.TL(9610, "es wurde nichts eingelesen"));
    tellLeftOut(session_.state.leaving.ofSearch);
    return commit(line.outputFile, file, target);
}

// Puts a file in place that was written while its content was read.
bool SilentRun::commit(const std::string& path, ReportFile& file, const ReplacingFile& target) {
    if (services().diagnostics.errcount() != 0)
        return reportNotWritten(path, services().texts.TL(9611, "ein unerwarteter Fehler"));
    if (stopped_) return reportNotWritten(path, services().texts.TL(9810, "angehalten"));
    return written(path, commitReport(file, target)) && !somethingFailed_;
}

bool SilentRun::writeNcdu(const SilentOrder& line, ReplacingFile& target) {
    const std::string& source = line.sources.front();
    if (const Result<> exists = xExistFolder_W(scan_, source); !exists) {
        sourceMissing(source, isNotThere(exists.error()) ? "" : ApiErrorText(true, exists.error()));
        return reportNotWritten(line.outputFile, services().texts.TL(9610, "es wurde nichts eingelesen"));
    }
    ReportFile file(target);
    watchForStop([&] {
        guarded(services().diagnostics, {.routine = "NcduExport"},
                [&] { return NcduExport(scan_, file).run(source); });
    });
    services().console.progress("");
    tellLeftOut(session_.state.leaving.ofSearch);
    return commit(line.outputFile, file, target);
}

// --- the report and the balance

ProgramFormat SilentRun::formatOf(const SilentOrder& line) {
    return line.balance || line.find ? ProgramFormat::kNone : programFormatOf(line.format, line.outputFile);
}

// Says before the reading what has to be kept of it.
void SilentRun::prepare(const SilentOrder& line) {
    const ProgramFormat format = formatOf(line);
    const bool isReport = format == ProgramFormat::kNone || format == ProgramFormat::kJsonLines;
    if (isReport && !line.balance && line.compare.empty())
        session_.state.deepestRows = static_cast<std::uint32_t>(orderOf(line).levels);
    const bool keeps = format != ProgramFormat::kNone || !line.compare.empty() || !line.open.empty();
    if (!keeps) return;
    scan_.facts = &session_.facts;
    if (!line.compare.empty() || format == ProgramFormat::kNone) return;
    if (format == ProgramFormat::kJsonLines) return session_.facts.leaveIdentitiesOut();
    scan_.statistics = &session_.statistics;
    scan_.largest = &session_.largest;
    session_.options.CreateStatistics = 1;
}

// --- saved scans

// Reads the scan to compare with, before anything else takes its time.
bool SilentRun::takeEarlier(const SilentOrder& line) {
    if (line.compare.empty()) return true;
    Yield wait(session_.state, services().pump);
    auto file = readScanFile(services(), line.compare, &wait);
    if (const auto* problem = std::get_if<std::string>(&file))
        return services().console.errorLine(*problem), false;
    earlier_ = std::get<ScanFile>(std::move(file));
    const std::string others = differingOptions(earlier_->scan->header.options, scanOptionsJson(scan_));
    if (others.empty()) return true;
    services().console.errorLine(services().texts.TL(
        9047, "%1 wurde mit anderen Optionen eingelesen (%2) und kann deshalb nicht verglichen werden.",
        {visible(line.compare), visible(others)}));
    return false;
}

bool SilentRun::openInstead(const std::string& path) {
    bool opened = false;
    watchForStop([&] {
        Yield wait(session_.state, services().pump);
        const SavedFile file = readSavedFile(services(), path, &wait);
        if (const auto* problem = std::get_if<std::string>(&file))
            return services().console.errorLine(*problem);
        guarded(services().diagnostics, {.routine = "openSavedFile"}, [&] {
            const Row row = openSavedFile(scan_, file);
            opened = row != kNoRow;
            Report_Sort(scan_);
            somethingFailed_ = somethingFailed_ || (opened && !isWhole(scan_, row));
        });
    });
    return opened;
}

bool SilentRun::writeGrowth(const SilentOrder& line, ReplacingFile& target) {
    const Row source = session_.tvwPL.firstRoot();
    ReportFile file(target);
    guarded(services().diagnostics, {.routine = "writeGrowth"}, [&] {
        const FolderList before = FolderList::of(*earlier_), after = FolderList::of(scan_, source);
        const auto rows =
            growthRows(compareScans(before, after), before, after, std::string(session_.tvwPL.text(source)));
        const bool complete = earlier_->scan->header.complete && isWhole(scan_, source);
        file.block() += growthText(rows, growthFormatOf(line.format, line.outputFile), complete);
        for (const GrowthRow& row : rows)
            grewTooMuch_ =
                grewTooMuch_ || (line.grown && row.change() > static_cast<std::int64_t>(*line.grown));
    });
    return commit(line.outputFile, file, target);
}

bool SilentRun::writeWanted(const SilentOrder& line, const ReportOrder& order, ReplacingFile& target) {
    if (line.balance) return writeBalance(line, target);
    if (session_.tvwPL.rowCount() == 0)
        return reportNotWritten(order.path, services().texts.TL(9610, "es wurde nichts eingelesen"));
    if (!line.compare.empty()) return writeGrowth(line, target);
    const auto unlessFault = [&](const auto& write) {
        return written(order.path, guarded(services().diagnostics, {.routine = "writeWanted"}, write));
    };
    switch (formatOf(line)) {
        case ProgramFormat::kJsonLines:
            return unlessFault([&] { return writeJsonLines(scan_, order.levels, target); });
        case ProgramFormat::kScan:
            return unlessFault([&] {
                return writeScan(scan_, session_.tvwPL.firstRoot(),
                                 line.noNames ? ScanNames::kNone : ScanNames::kAll, target);
            });
        default:
            return written(order.path, SPEICHERN(scan_, order, target));
    }
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
    if (jsonSince_) lastFolder_ = path;
    if (jsonSince_ || !services().console.showsProgress()) return;
    const std::uint64_t tick = services().pump.GetTickCount();
    if (tick < lastProgressTick_ + kProgressInterval) return;
    lastProgressTick_ = tick;
    services().console.progress(visible(path));
}

void SilentRun::entriesCame(const ScanProgress& progress) {
    if (!jsonSince_) return;
    constexpr std::uint64_t kSecond = 1000;  // Milliseconds.
    const std::uint64_t tick = services().pump.GetTickCount();
    if (tick < std::max(lastJsonTick_, *jsonSince_) + kSecond) return;
    lastJsonTick_ = tick;
    const ScanCounts counts = progress.soFar();
    std::string line = "{\"files\":" + std::to_string(counts.files);
    line.append(",\"folders\":").append(std::to_string(counts.folders));
    line.append(",\"bytes\":").append(std::to_string(static_cast<std::int64_t>(counts.bytes)));
    line.append(",\"seconds\":").append(std::to_string((tick - *jsonSince_) / kSecond)).append(",\"path\":");
    appendJsonString(line, lastFolder_);
    services().console.errorLine(line + "}");
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
