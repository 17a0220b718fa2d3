// The program's entry: looks at the command line, puts the parts together, and takes one of the ways of
// starting.
//
// A line that begins with "-s" reads its sources and writes a report with no window. Everything else needs
// the window, which is a module of its own beside the program.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/log.h"
#include "app/product.h"
#include "app/settings.h"
#include "app/texts.h"
#include "app/usage.h"
#include "base/text.h"
#include "mainwindow/main_form.h"
#include "platform/headless/headless.h"
#include "platform/linux/console.h"
#include "platform/linux/fault_signals.h"
#include "platform/linux/file_system.h"
#include "platform/linux/files.h"
#include "platform/linux/system_facts.h"

namespace hl {
namespace {

enum ExitStatus : int {
    kWritten = 0,
    kSomethingFailed = 1,
    kBadCommandLine = 2,
    kNoWindow = 3,
};

// The one thing that a signal handler can reach: where last words go. Set once, before the handler is.
std::string lastWordsLog;

// The report of an error that the program does not survive. The state of the process is unknown: no more is
// done than to put a text that was made by others into two places.
void lastWords(const char* description) {
    std::fputs(description, stderr);
    std::fputs("\n", stderr);
    LinuxFiles().append(lastWordsLog, std::string(description) + "\r\n\r\n");
}

LinuxFaultSignals faultSignals;
void prepareThread() {
    faultSignals.prepareThread();
}

std::string folderOf(const std::filesystem::path& path) {
    return path.parent_path().string();
}

std::string currentFolder() {
    std::error_code error;
    const auto path = std::filesystem::current_path(error);
    return error ? std::string() : path.string();
}

std::string firstSet(SystemFacts& facts, std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (std::string value = facts.environment(name); !value.empty()) return value;
    return {};
}

/// Error reports of a run with no window go to the log and to standard error.
class SilentErrors final : public ErrorSink {
  public:
    SilentErrors(Log& log, Console& console) : log_(log), console_(console) {}
    void LogError(const std::string& text, bool blankLine, bool stamp) override {
        log_.LogError(text, blankLine, stamp);
    }
    void showReport(const std::string& text) override { console_.errorLine(replaceAll(text, "\r\n", "\n")); }

  private:
    Log& log_;
    Console& console_;
};

class Program {
  public:
    explicit Program(const std::vector<std::string>& arguments);
    int Main();

  private:
    int runSilent();

    LinuxSystemFacts facts_;
    LinuxFiles files_;
    LinuxConsole console_;
    HeadlessPump pump_;
    const std::filesystem::path executable_ = LinuxSystemFacts::executablePath();
    const JoinedLine line_;
    const std::string programFolder_;
    const NumberFormat numbers_ = numberFormatOf(firstSet(facts_, {"LC_ALL", "LC_NUMERIC", "LANG"}));
    const DateFormat dates_ = dateFormatOf(firstSet(facts_, {"LC_ALL", "LC_TIME", "LANG"}));
    SettingsStore settings_;
    Log log_;
    SilentErrors errors_;
    AppFacts app_;
    Diagnostics diagnostics_;
    Texts texts_;
};

std::string programFolderBy(SystemFacts& facts, const std::filesystem::path& executable) {
    std::string folder = facts.environment("HARBORLANTERN_HOME");
    if (folder.empty()) return folderOf(executable);
    std::error_code error;
    const auto absolute = std::filesystem::absolute(folder, error);
    return error ? folder : absolute.string();
}

Program::Program(const std::vector<std::string>& arguments)
    : line_(joinArguments(arguments, currentFolder(), kPosixPaths)),
      programFolder_(programFolderBy(facts_, executable_)),
      settings_(files_, joinPath(programFolder_, kIniName, kPosixPaths)),
      log_(files_, programFolder_, dates_),
      errors_(log_, console_),
      diagnostics_(app_, facts_, errors_),
      texts_(files_, settings_, diagnostics_,
             {programFolder_, folderOf(executable_), line_.text,
              messageLocale([this](const std::string& name) { return facts_.environment(name); })}) {
    std::sscanf(HARBORLANTERN_VERSION, "%d.%d.%d", &app_.major, &app_.minor, &app_.revision);
    app_.programFolder = app_.dataFolder = programFolder_;
    app_.executableName = executable_.filename().string();
    app_.commandLine = visible(line_.text);
    app_.dates = dates_;
    app_.numbers = numbers_;
    app_.languageId = [this] { return texts_.languageId(); };
    lastWordsLog = joinPath(programFolder_, kErrorLogName, kPosixPaths);
}

int Program::Main() {
    faultSignals.InstallExceptionFilter(lastWords);
    // A pipe with no reader, and a file at the limit of its size, are errors of the write and not the end of
    // the run.
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
    texts_.Init_Sprache("", std::string(kTranslatorFileName), true);
    texts_.Init_Textbausteine();
    if (line_.asksForHelp || line_.asksForVersion) {
        const std::string answer = line_.asksForHelp ? usageText(texts_) : versionText();
        return console_.outputLine(answer.substr(0, answer.size() - 1)) ? kWritten : kSomethingFailed;
    }
    if (line_.problem != LineProblem::kNone) {
        console_.errorLine(problemText(texts_, line_));
        return kBadCommandLine;
    }
    if (isSilentLine(line_.text)) return runSilent();
    console_.errorLine(texts_.TL(9023,
                                 "Das Fenster ist nicht installiert. Ein Bericht ohne Fenster: harborlantern "
                                 "-s DATEI ORDNER..."));
    return kNoWindow;
}

int Program::runSilent() {
    const bool readAhead = facts_.environment("HARBORLANTERN_READ_AHEAD") != "0";
    LinuxFileSystem fileSystem(limitsOfThisMachine(readAhead), prepareThread);
    MainForm frmMain({settings_, texts_, log_, files_, fileSystem, pump_, console_, facts_, diagnostics_,
                      kPosixPaths, numbers_},
                     true);
    app_.cancelState = [&frmMain] { return frmMain.state().CancelState; };
    frmMain.Form_Load();
    const SilentResult result = frmMain.runSilent(line_.text);
    app_.cancelState = nullptr;
    if (result == SilentResult::kMakesNoSense) {
        console_.errorLine(incompleteSilentLineText(texts_));
        return kBadCommandLine;
    }
    return result == SilentResult::kWritten ? kWritten : kSomethingFailed;
}

}  // namespace
}  // namespace hl

int main(int argc, char** argv) {
    return hl::Program(std::vector<std::string>(argv + 1, argv + argc)).Main();
}
