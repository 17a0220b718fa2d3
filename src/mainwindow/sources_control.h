// The box of sources, what is dropped on the window, and the queue of what is to be read. For the thread of
// the logic only.
#pragma once

#include <string>
#include <vector>

#include "mainwindow/start_control.h"
#include "platform/window.h"

namespace hl {

struct MainForm;

class SourcesControl final : public SourceEvents {
  public:
    /// A command is on the stack, perhaps with a dialog of its own, as long as this lives: sources that are
    /// handed over meanwhile are not read.
    class AtWork {
      public:
        explicit AtWork(SourcesControl& sources) : sources_(sources) { ++sources_.commands_; }
        ~AtWork() { --sources_.commands_; }
        AtWork(const AtWork&) = delete;
        AtWork& operator=(const AtWork&) = delete;

      private:
        SourcesControl& sources_;
    };

    explicit SourcesControl(MainForm& form) : form_(form), start_(form) {}

    StartControl& start() { return start_; }

    // --- SourceEvents
    void comboText(const std::string& text) override;
    void comboSelected(int index) override;
    void comboKeyDown(int key) override;
    bool comboRemove(int index) override;
    void startChosen(const std::string& tag) override { start_.chosen(tag); }
    void dropped(const std::vector<DroppedPlace>& places) override;

    // --- the box
    /// Fills the box with the drives and with the saved sources.
    void load();
    /// Tells whether load() has ended. Until then nothing of the box is saved.
    bool loaded() const { return loaded_; }
    void save();
    /// The window shows the box as it is now.
    void changed();

    // --- the queue
    /// Queues the sources of the program's own command line before those that were handed over meanwhile.
    void queueOwn();
    /// Queues the sources of the command line of another start, and reads them unless a command is at work.
    /// While a command waits for a disk that does not answer, the sources wait for its end; no Stop discards
    /// them.
    void handOver(const std::string& commandLine);
    /// Queues the sources and reads the queue.
    void read(const std::vector<std::string>& sources);
    /// The run was stopped: what was dropped meanwhile is not read, as little as what waits in the queue,
    /// unless it came while a disk did not answer.
    void runStopped() { dropped_.clear(); }
    /// Sources may be read from now on.
    void ready() { ready_ = true; }
    /// Reads what waits in the queue, unless a command is at work.
    void readWaiting();
    /// Runs a command, and reads then what was handed over meanwhile.
    template <class Body>
    void duringCommand(Body&& body) {
        {
            const AtWork work(*this);
            body();
        }
        readWaiting();
    }

  private:
    void runQueue();
    void queueLate();
    void queueDropped();
    std::string queuePlace(const DroppedPlace& place);
    void selectDroppedFiles();

    MainForm& form_;
    StartControl start_;
    std::vector<DroppedPlace> dropped_;      ///< What was dropped and not looked at yet.
    std::vector<std::string> lateSources_;   ///< What was handed over while a disk did not answer.
    std::vector<DroppedPlace> lateDropped_;  ///< The same of what was dropped.
    std::vector<std::string> droppedFiles_;  ///< Paths of files whose folders are to be read.
    bool loaded_ = false;
    bool ready_ = false;
    int commands_ = 0;  ///< The number of commands on the stack.
};

}  // namespace hl
