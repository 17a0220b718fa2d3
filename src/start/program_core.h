// What every way of starting has: settings, log, texts and the report of errors, put together once. The
// program, the tests of its window and the benchmarks use it. For the thread of the logic only.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/log.h"
#include "app/settings.h"
#include "app/texts.h"
#include "mainwindow/error_form.h"
#include "mainwindow/main_form.h"
#include "mainwindow/session.h"
#include "platform/console.h"
#include "platform/files.h"
#include "platform/system_facts.h"
#include "start/headless_pump.h"
#include "start/program_errors.h"

namespace hl {

/// What the core is given. The references must outlive it.
struct CoreParts {
    SystemFacts& facts;
    Files& files;
    Console& console;
    std::string ownFolder;   ///< The folder of settings and logs.
    std::string textFolder;  ///< The folder of the language libraries.
    std::string commandLine;
    std::string executable;  ///< The executable's full path.
    bool portable = true;    ///< True if no package installed the program.
    NumberFormat numbers;
    DateFormat dates;
    std::string locale;    ///< The locale of messages, "de_DE".
    PathBases bases = {};  ///< What a typed source is relative to.
    /// Is called for each report of an error, before the user sees it; may be empty.
    std::function<void(const std::string& report)> reported = {};
    /// Ends the process at once, when the user wants that after an error.
    std::function<void()> endProcess = {};
    OwnerNames* owners = nullptr;  ///< Null if users have no names here.
};

class ProgramCore {
  public:
    explicit ProgramCore(const CoreParts& parts);
    ProgramCore(const ProgramCore&) = delete;
    ProgramCore& operator=(const ProgramCore&) = delete;

    /// What a run works with. `fileSystem` and `diskSpace` (null: no balance) must outlive the run.
    Services services(FileSystem& fileSystem, DiskSpace* diskSpace = nullptr);
    /// What a window needs besides. The references must outlive the window.
    WindowServices windowServices(Drives& drives, FolderVerb& verb, FileOperations& operations,
                                  const Addresses& addresses);
    /// Is called when the window exists, and with null when it no longer does: reports of errors are shown in
    /// it, and its pump runs the messages.
    void windowThere(const Window* window, MessagePump* pump, const std::string& mail);

    /// Has the messages of a run without a window run by this pump; null takes it away.
    void setPump(MessagePump* pump) { pump_.window = pump; }

    Texts& texts() { return texts_; }
    SettingsStore& settings() { return settings_; }
    ProgramErrors& errors() { return errors_; }
    AppFacts& app() { return app_; }
    MessagePump& pump() { return pump_; }

  private:
    /// Forwards to the window's pump once there is a window; before, nothing waits for messages.
    class Pump final : public MessagePump {
      public:
        void PumpMessages() override {
            if (window != nullptr) window->PumpMessages();
        }
        bool GetInputState() override { return window != nullptr && window->GetInputState(); }
        std::uint64_t GetTickCount() override { return headless_.GetTickCount(); }

        MessagePump* window = nullptr;

      private:
        HeadlessPump headless_;
    };
    /// Tells of a report before it is shown.
    class Sink final : public ErrorSink {
      public:
        explicit Sink(ProgramCore& core) : core_(core) {}
        void LogError(const std::string& text, bool blankLine, bool stamp) override;
        void showReport(const std::string& text, const std::string& summary) override;

      private:
        ProgramCore& core_;
    };

    std::string version() const;

    CoreParts parts_;
    Pump pump_;
    SettingsStore settings_;
    Log log_;
    ProgramErrors errors_;
    Sink sink_{*this};
    AppFacts app_;
    Diagnostics diagnostics_;
    Texts texts_;
    std::unique_ptr<WindowDesk> desk_;
    std::unique_ptr<ErrorReports> reports_;
};

}  // namespace hl
