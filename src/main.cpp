// The program's entry: it reads the command line, puts the parts together, and starts in one of two ways.
//
// A line that begins with "-s" reads its sources and writes a report without a window. Everything else needs
// the window, which is a module of its own beside the program.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/addresses.h"
#include "app/command_line.h"
#include "app/instance_start.h"
#include "app/log.h"
#include "app/places.h"
#include "app/product.h"
#include "app/settings.h"
#include "app/texts.h"
#include "base/scope_exit.h"
#include "base/text.h"
#include "mainwindow/silent_run.h"
#include "mainwindow/window_form.h"
#include "output/report_formats.h"
#include "platform/linux/change/file_operations.h"
#include "platform/linux/change/files.h"
#include "platform/linux/change/folder_verb.h"
#include "platform/linux/drives/drives.h"
#include "platform/linux/drives/patience.h"
#include "platform/linux/preview/preview_tools.h"
#include "platform/linux/process/console.h"
#include "platform/linux/process/fault_signals.h"
#include "platform/linux/process/helper.h"
#include "platform/linux/process/instances.h"
#include "platform/linux/process/last_words.h"
#include "platform/linux/process/owner_names.h"
#include "platform/linux/process/programs.h"
#include "platform/linux/process/stop_signals.h"
#include "platform/linux/process/system_facts.h"
#include "platform/linux/scan/file_system.h"
#include "platform/linux/space/disk_space.h"
#include "platform/linux/space/freed_surveys.h"
#include "platform/linux/space/open_files.h"
#include "start/program_core.h"
#include "start/usage.h"

namespace hl {
namespace {

enum ExitStatus : int {
    kWritten = 0,
    kSomethingFailed = 1,
    kBadCommandLine = 2,
    kNoWindow = 3,
    kGrownTooMuch = 5,
};

// The report of an error that the program does not survive. It is global, because a signal handler cannot
// reach it otherwise, and it is made once, before the handler is installed.
std::optional<LastWords> lastWords;
void sayLastWords(const char* description, const void* instruction) {
    lastWords->say(description, instruction);
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

std::string noWindowText(const Texts& texts, WindowResult result) {
    if (result == WindowResult::kOtherVersion)
        return texts.TL(9025,
                        "Programm und Fenster gehören zu verschiedenen Versionen. Ein Bericht ohne Fenster: "
                        "harborlantern -s DATEI ORDNER...");
    return texts.TL(9024,
                    "Es gibt keinen Bildschirm für ein Fenster. Ein Bericht ohne Fenster: harborlantern "
                    "-s DATEI ORDNER...");
}

class Program {
  public:
    explicit Program(const std::vector<std::string>& arguments);
    int Main();

  private:
    int runSilent();
    int runWindow();
    int tellOfSilentInstance(long process);
    WindowModuleFunction windowModule();
    LinuxFileOperations fileOperations(SilentDisks& disks) const;
    int openWindow(LinuxInstances& instances, bool& restart);
    WindowStart windowStart(WindowForm& frmMain, LinuxInstances& instances, LinuxDrives& drives);
    CoreParts coreParts();
    bool wantsWindow() const;
    void makeUserFolder();
    std::string windowModulePath() const { return folderOf(executable_) + "/" + kWindowModuleName; }

    LinuxSystemFacts facts_;
    LinuxFiles files_;
    LinuxConsole console_;
    LinuxDiskSpace diskSpace_{std::make_shared<LinuxOpenFiles>()};
    LinuxOwnerNames owners_;
    const std::filesystem::path executable_ = LinuxSystemFacts::executablePath();
    const JoinedLine line_;
    const Places places_;
    ProgramCore core_;
};

PlaceFacts placeFacts(SystemFacts& facts, const std::filesystem::path& executable) {
    std::string named = facts.environment("HARBORLANTERN_HOME");
    if (!named.empty()) {
        std::error_code error;
        const auto absolute = std::filesystem::absolute(named, error);
        if (!error) named = absolute.string();
    }
    return {folderOf(executable), named, facts.environment("XDG_CONFIG_HOME"), homeFolder()};
}

Program::Program(const std::vector<std::string>& arguments)
    : line_(joinArguments(arguments, currentFolder(), kPosixPaths, formatNames())),
      places_(placesOf(files_, placeFacts(facts_, executable_))),
      core_(coreParts()) {}

CoreParts Program::coreParts() {
    return {facts_,
            files_,
            console_,
            places_.own,
            places_.texts,
            line_.text,
            executable_.string(),
            !places_.installed,
            numberFormatOf(firstSet(facts_, {"LC_ALL", "LC_NUMERIC", "LANG"})),
            dateFormatOf(firstSet(facts_, {"LC_ALL", "LC_TIME", "LANG"})),
            messageLocale([this](const std::string& name) { return facts_.environment(name); }),
            {currentFolder(), homeFolder()},
            {},
            [] { std::_Exit(kSomethingFailed); },
            &owners_};
}

bool Program::wantsWindow() const {
    return !line_.asksForHelp && !line_.asksForVersion && line_.problem == LineProblem::kNone &&
           !isSilentLine(line_.text);
}

// Makes the user's folder of settings, unless the window is not installed: a report needs no settings or
// logs. If the folder cannot be made, the program does without.
void Program::makeUserFolder() {
    if (!places_.ofUser || !files_.exists(windowModulePath())) return;
    std::error_code error;
    if (!std::filesystem::create_directories(places_.own, error)) return;
    std::filesystem::permissions(places_.own, std::filesystem::perms::owner_all, error);
}

int Program::Main() {
    lastWords.emplace(joinPath(places_.own, kErrorLogName, kPosixPaths), core_.app().dates.general(),
                      BuildLastReport(core_.app(), facts_));
    LinuxFaultSignals().InstallExceptionFilter(sayLastWords);
    // Writing to a pipe without a reader, or beyond the limit of a file's size, is an error of the write and
    // must not end the program.
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
    if (wantsWindow()) {
        makeUserFolder();
        core_.errors().waitForWindow(true);
    }
    core_.texts().Init_Sprache("", std::string(kTranslatorFileName));
    if (line_.asksForHelp || line_.asksForVersion) {
        const std::string answer = line_.asksForHelp ? usageText(core_.texts()) : versionText();
        return console_.outputLine(answer.substr(0, answer.size() - 1)) ? kWritten : kSomethingFailed;
    }
    if (line_.problem != LineProblem::kNone) {
        console_.errorLine(problemText(core_.texts(), line_));
        return kBadCommandLine;
    }
    if (isSilentLine(line_.text)) return runSilent();
    const int status = runWindow();
    core_.errors().waitForWindow(false);
    return status;
}

int Program::runSilent() {
    core_.texts().storeLanguage();
    const bool readAhead = facts_.environment("HARBORLANTERN_READ_AHEAD") != "0";
    LinuxFileSystem fileSystem(limitsOfThisMachine(readAhead));
    SilentRun run(core_.services(fileSystem, &diskSpace_));
    HeadlessPump pump(stopAsked, [&run] { run.session().state.CancelState = kCancelStop; });
    core_.setPump(&pump);
    const ScopeExit noPump([this] { core_.setPump(nullptr); });
    run.noteStop = [](bool on) { on ? noteStopSignals() : endNotingStopSignals(); };
    core_.app().cancelState = [&run] { return run.session().state.CancelState; };
    run.load();
    std::string problem = run.takeRules(line_.text);
    if (problem.empty()) problem = run.takeFilter(line_.text);
    if (!problem.empty()) {
        console_.errorLine(problem);
        return kBadCommandLine;
    }
    const bool whole = run.run(line_.text);
    core_.app().cancelState = nullptr;
    endAsAsked();
    if (!whole) return kSomethingFailed;
    return run.grewTooMuch() ? kGrownTooMuch : kWritten;
}

// --- with a window

int Program::runWindow() {
    files_.refuseUnreadPipes();
    bool restart = false;
    int status = kWritten;
    {
        LinuxInstances instances(AppExeName(executable_.filename().string()),
                                 {facts_.environment("XDG_RUNTIME_DIR")});
        const auto sleep = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); };
        if (isRestart(line_.text) && !WaitForMutexGone(instances, core_.pump(), sleep))
            return kSomethingFailed;
        const auto decision = CheckVBinstance(line_.text, singleInstanceWanted(core_.settings()), instances);
        if (decision == StartDecision::kHandedOver) return kWritten;
        if (decision == StartDecision::kNoAnswer) return tellOfSilentInstance(instances.process());
        status = openWindow(instances, restart);
        instances.letGo();
    }
    if (restart) startProgram(executable_.string(), {"-RESTART"});
    return status;
}

int Program::tellOfSilentInstance(long process) {
    console_.errorLine(core_.texts().TL(9653, "Harborlantern läuft schon (Prozess %1), antwortet aber nicht.",
                                        {process != 0 ? std::to_string(process) : "?"}));
    return kSomethingFailed;
}

// Returns the routine that shows the window; null if there is none, which is said then.
WindowModuleFunction Program::windowModule() {
    std::string reason;
    const auto show = loadWindowModule(windowModulePath(), reason);
    if (show != nullptr) return show;
    if (places_.installed && !files_.exists(windowModulePath())) reason = kWindowPackage;
    console_.errorLine(core_.texts().TL(9023,
                                        "Das Fenster ist nicht installiert (%1). Ein Bericht ohne Fenster: "
                                        "harborlantern -s DATEI ORDNER...",
                                        {visible(reason)}));
    return nullptr;
}

LinuxFileOperations Program::fileOperations(SilentDisks& disks) const {
    return {std::make_shared<DirectoryCalls>(),
            {.home = homeFolder(),
             .programFolders = {folderOf(executable_), places_.own},
             .trash = trashSettingsFromEnvironment()},
            &disks};
}

int Program::openWindow(LinuxInstances& instances, bool& restart) {
    const auto show = windowModule();
    if (show == nullptr) return kNoWindow;
    const bool readAhead = facts_.environment("HARBORLANTERN_READ_AHEAD") != "0";
    SilentDisks disks;
    LinuxPatience patience(disks);
    PatientFileSystem fileSystem(std::make_shared<LinuxFileSystem>(limitsOfThisMachine(readAhead)), patience);
    files_.setPatience(&patience);
    const ScopeExit impatient([this] { files_.setPatience(nullptr); });
    DriveSources driveSources;
    LinuxDrives drives(driveSources);
    LinuxFolderVerb verb("harborlantern-folder", facts_.environment("XDG_DATA_HOME"),
                         facts_.environment("HOME"));
    LinuxFileOperations operations = fileOperations(disks);
    LinuxFreedSurveys surveys(std::make_shared<DirectoryCalls>(), std::make_shared<LinuxOpenFiles>(), &disks);
    LinuxPreviewTools previewTools(folderOf(executable_), facts_.environment("PATH"),
                                   facts_.environment("TMPDIR"), places_.own, &disks);
    WindowServices own =
        core_.windowServices(drives, verb, operations, Init_Textbausteine(core_.texts().languageId()));
    own.surveys = &surveys;
    WindowForm frmMain(core_.services(fileSystem, &diskSpace_), own);
    core_.app().cancelState = [&frmMain] { return frmMain.state().CancelState; };
    patience.setWait(&frmMain.diskWait());
    frmMain.parts().patience = &patience;
    frmMain.parts().dataFolder = places_.data;
    frmMain.parts().clipboardHolder = folderOf(executable_) + "/harborlantern-clipboard";
    frmMain.parts().preview.tools = &previewTools;
    const WindowResult result = show(windowStart(frmMain, instances, drives));
    core_.windowThere(nullptr, nullptr, {});
    core_.app().cancelState = nullptr;
    restart = frmMain.restartPending();
    if (result == WindowResult::kClosed) return kWritten;
    console_.errorLine(noWindowText(core_.texts(), result));
    return kNoWindow;
}

WindowStart Program::windowStart(WindowForm& frmMain, LinuxInstances& instances, LinuxDrives& drives) {
    const int handOver = instances.takeFirst() ? instances.listen() : -1;
    return {.parts = frmMain.parts(),
            .events = frmMain,
            .handOverDescriptor = handOver,
            .handOverReady =
                [&] {
                    // Without an answer, the other start goes on by itself.
                    if (frmMain.unloaded()) return;
                    instances.receive([&](const std::string& line) { frmMain.handOver(line); });
                },
            .answersDescriptor = drives.answersDescriptor(),
            .answersReady = [&] { frmMain.takeDriveAnswers(); },
            .executable = executable_.string()};
}

}  // namespace
}  // namespace hl

int main(int argc, char** argv) {
    hl::occupyStandardDescriptors();
    const int status = hl::Program(std::vector<std::string>(argv + 1, argv + argc)).Main();
    // A thread that was left behind may return at any moment and still needs everything, so nothing is
    // destroyed.
    if (hl::HelperSlot::taken() > 0) std::_Exit(status);
    return status;
}
