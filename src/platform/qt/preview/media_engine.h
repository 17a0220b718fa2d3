// Runs the library's player on a thread of its own, because its calls may block: releasing a broken film
// takes up to a second. No call here waits for the disk of a file. All calls and callbacks are on the
// window's thread.
#pragma once

#include <QMutex>
#include <QObject>
#include <QThread>
#include <QVideoFrame>
#include <atomic>
#include <functional>
#include <memory>

#include "platform/preview_tools.h"

namespace hl {

class MediaEngine {
  public:
    /// What the player is doing. Times are in milliseconds; a duration of 0 is unknown.
    struct State {
        bool plays = false;
        bool loads = false;  ///< The file has neither been loaded nor failed yet.
        qint64 position = 0, duration = 0;
    };

    /// Returns when the player exists; the first one of a process loads what the system has for it.
    MediaEngine();
    /// Waits until the player has released its file.
    ~MediaEngine();
    MediaEngine(const MediaEngine&) = delete;
    MediaEngine& operator=(const MediaEngine&) = delete;

    /// Tells why nothing can be played at all; empty if that is possible.
    const QString& unavailable() const { return unavailable_; }

    /// Plays the file once it is loaded. `file` stays open until the player has released it.
    void load(std::shared_ptr<OpenFile> file);
    /// Forgets the file. What the player still reports about it is dropped.
    void close();
    /// Returns for how many milliseconds the player has been waiting for the file's disk; 0 if it does not.
    qint64 waiting() const;
    void play();
    void pause();
    /// Stops; a file that is still being loaded then does not start.
    void stop();
    /// Of many calls at once, as from a slider that is dragged, the last one counts.
    void setPosition(qint64 milliseconds);
    /// `volume` is from 0 to 1, linear.
    void setVolume(float volume);

    const State& state() const { return state_; }
    /// Returns the film's current picture; null for none.
    QVideoFrame frame();

    // These report what happened, one after the other; not after close().
    std::function<void()> onFrame, onState;
    std::function<void(const QString& error)> onError;

  private:
    class Worker;
    static constexpr qint64 kNowhere = -1;
    /// `ask` runs on the player's thread, after all earlier ones.
    template <class Ask>
    void post(Ask ask);
    void begin(State state, std::shared_ptr<FileStream> stream);
    void takeFrame(const QVideoFrame& frame, int run);
    void takeState(const State& state, int run);
    void takeError(const QString& error, int run);

    QThread thread_;
    QObject home_;  ///< Stands for the window's thread.
    std::unique_ptr<Worker> worker_;
    QString unavailable_;
    State state_;
    std::shared_ptr<FileStream> stream_;  ///< Of the file that is played; null if its disk always answers.

    QMutex mutex_;  // Guards what the player's threads read.
    QVideoFrame frame_;
    bool frameTold_ = false;                 ///< At most one notice waits, however busy the window is.
    std::atomic<qint64> wanted_ = kNowhere;  ///< The wanted position, until it is set.
    int run_ = 0;  ///< Counts the files; a report about another one than the last is dropped.
};

}  // namespace hl
