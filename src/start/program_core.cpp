#include "start/program_core.h"

#include <cstdio>

#include "app/product.h"
#include "base/text.h"

namespace hl {

ProgramCore::ProgramCore(const CoreParts& parts)
    : parts_(parts),
      settings_(parts.files, joinPath(parts.ownFolder, kIniName, kPosixPaths)),
      log_(parts.files, parts.ownFolder, parts.dates),
      errors_({log_, parts.console, texts_, joinPath(parts.ownFolder, kErrorLogName, kPosixPaths)}),
      diagnostics_(app_, parts.facts, sink_),
      texts_(parts.files, settings_, diagnostics_,
             {parts.ownFolder, parts.textFolder, parts.commandLine, parts.locale}) {
    std::sscanf(HARBORLANTERN_VERSION, "%d.%d.%d", &app_.major, &app_.minor, &app_.revision);
    app_.executable = visible(parts.executable);
    app_.dataFolder = parts.ownFolder;
    app_.portable = parts.portable;
    app_.commandLine = visible(parts.commandLine);
    app_.dates = parts.dates;
    app_.numbers = parts.numbers;
    app_.languageId = [this] { return texts_.languageId(); };
}

Services ProgramCore::services(FileSystem& fileSystem, DiskSpace* diskSpace) {
    return {settings_,      texts_,
            log_,           parts_.files,
            fileSystem,     pump_,
            parts_.console, diagnostics_,
            kPosixPaths,    parts_.numbers,
            parts_.bases,   diskSpace,
            parts_.owners,  parts_.facts.computerName()};
}

WindowServices ProgramCore::windowServices(Drives& drives, FolderVerb& verb, FileOperations& operations,
                                           const Addresses& addresses) {
    return {drives,
            verb,
            operations,
            parts_.executable,
            parts_.ownFolder,
            parts_.commandLine,
            version(),
            addresses,
            [this, mail = addresses.mail](const Window* window, MessagePump* pump) {
                windowThere(window, pump, mail);
            },
            [this] { errors_.windowShown(); },
            parts_.portable};
}

void ProgramCore::windowThere(const Window* window, MessagePump* pump, const std::string& mail) {
    pump_.window = pump;
    app_.screen = nullptr;
    if (window == nullptr) return errors_.setDialog(nullptr);
    app_.screen = [window] { return window->frame.screenFacts(); };
    texts_.storeLanguage();
    desk_ = std::make_unique<WindowDesk>(*window);
    reports_ = std::make_unique<ErrorReports>(ErrorFormServices{
        texts_, parts_.files, *desk_, kPosixPaths, parts_.ownFolder, version(), mail, parts_.endProcess});
    errors_.setDialog(reports_.get());
}

// Returns "1.2", followed by the revision if it is not 0.
std::string ProgramCore::version() const {
    const std::string text = std::to_string(app_.major) + "." + std::to_string(app_.minor);
    return app_.revision == 0 ? text : text + "." + std::to_string(app_.revision);
}

void ProgramCore::Sink::LogError(const std::string& text, bool blankLine, bool stamp) {
    core_.errors_.LogError(text, blankLine, stamp);
}

void ProgramCore::Sink::showReport(const std::string& text, const std::string& summary) {
    if (core_.parts_.reported) core_.parts_.reported(text);
    core_.errors_.showReport(text, summary);
}

}  // namespace hl
