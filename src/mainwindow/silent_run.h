// A run without a window: reads sources and writes a report. There are no status panels, the lists stay
// empty, and what could not be read goes to standard error, one line each. For the thread of the logic only.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "mainwindow/session.h"
#include "output/report_file.h"
#include "output/report_order.h"
#include "platform/files.h"
#include "scan/driver.h"
#include "scan/find_filter.h"
#include "scan/saved/scan_reader.h"

namespace hl {

class SilentRun final : public ScanHost, public Controls {
  public:
    explicit SilentRun(const Services& services);

    /// Reads the options and sets up the grids.
    void load() { Form_Load(session_); }

    /// Takes over the rules of a silent command line for what is left out. Returns what keeps them from being
    /// read; empty if nothing does. Rules of the settings that cannot be read are told, and passed over.
    std::string takeRules(const std::string& commandLine);

    /// Reads the filter of the line, if it has one. Returns why it makes no sense, in one sentence; else
    /// empty.
    std::string takeFilter(const std::string& commandLine);

    /// Reads the sources of a silent command line and writes the report, or the balance of each source, or
    /// what the filter finds. The report's target is opened before anything is read. Returns true if
    /// everything was read and the report was written completely; anything that failed has then been
    /// reported. After a stop no report is written, and an older one stays. REQUIRES: load() was called, and
    /// takeFilter() with the same line.
    bool run(const std::string& commandLine);

    /// Tells whether something has grown by more than the line allows.
    bool grewTooMuch() const { return grewTooMuch_; }

    /// Is called with true before something is read, and with false after it: meanwhile a wish to stop must
    /// reach the pump instead of ending the process. May be empty.
    std::function<void(bool on)> noteStop;

    Session& session() { return session_; }
    ScanContext& scan() { return scan_; }

    // ScanHost
    void runEnded(RunEnd end) override;
    void folderEntered(std::string_view path) override;
    void entriesCame(const ScanProgress& progress) override;
    void sourceMissing(const std::string& source, const std::string& reason) override;
    void diskSilent(const std::string& text) override;
    void notRead(std::string_view path, const std::string& reason) override;

    // Controls
    void setBusyPointer(bool) override {}
    void lockControls(bool noStop) override;
    void unlockControls() override;

  private:
    const Services& services() const { return session_.services; }
    void read();
    std::string addRule(std::string_view line, const std::string& place);
    std::string addRulesOf(const std::string& file);
    void tellLeftOut(Unshown leftOut);
    static ProgramFormat formatOf(const SilentOrder& line);
    void prepare(const SilentOrder& line);
    bool writeWanted(const SilentOrder& line, const ReportOrder& order, ReplacingFile& target);
    void watchForStop(const std::function<void()>& work);
    bool find(const SilentOrder& line, ReplacingFile& target);
    bool takeEarlier(const SilentOrder& line);
    bool openInstead(const std::string& path);
    bool writeGrowth(const SilentOrder& line, ReplacingFile& target);
    bool writeNcdu(const SilentOrder& line, ReplacingFile& target);
    bool commit(const std::string& path, ReportFile& file, const ReplacingFile& target);
    bool writeBalance(const SilentOrder& line, ReplacingFile& target);
    bool written(const std::string& file, const ReportOutcome& outcome);
    bool reportNotWritten(const std::string& file, const std::string& reason);

    Session session_;
    ScanContext scan_;
    std::optional<FindFilter> filter_;
    std::uint64_t lastProgressTick_ = 0;
    /// When the run began, as the pump's tick count; set if the progress is wanted as JSON.
    std::optional<std::uint64_t> jsonSince_;
    std::uint64_t lastJsonTick_ = 0;
    std::string lastFolder_;           ///< For the progress as JSON.
    std::optional<ScanFile> earlier_;  ///< The scan to compare with.
    bool grewTooMuch_ = false;
    bool somethingFailed_ = false;
    bool stopped_ = false;
};

}  // namespace hl
