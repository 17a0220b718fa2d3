// The library's player on a thread of its own, since its calls hold up whoever makes them: to let go of a
// broken film takes it up to a second. All of it is called, and calls back, on the thread of the window.
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
    /// What it is at. Times are milliseconds; a duration of 0 is not known.
    struct State {
        bool plays = false;
        bool loads = false;  ///< Neither loaded nor failed yet.
        qint64 position = 0, duration = 0;
    };

    /// Returns when the player is there; the first one of a run loads what the system has for it.
    MediaEngine();
    /// Waits until the player has let go of its file.
    ~MediaEngine();
    MediaEngine(const MediaEngine&) = delete;
    MediaEngine& operator=(const MediaEngine&) = delete;

    /// Why nothing can be played at all; empty if it can.
    const QString& unavailable() const { return unavailable_; }

    /// Plays it once it is loaded. `file` stays open until the player has let go of it.
    void load(std::shared_ptr<OpenFile> file);
    /// Forgets the file. What it still tells of it is not passed on.
    void close();
    void play();
    void pause();
    /// A file that is still being loaded then does not start.
    void stop();
    /// Of many wishes that come at once, as from a slider that is dragged, the last one counts.
    void setPosition(qint64 milliseconds);
    /// From 0 to 1, linear.
    void setVolume(float volume);

    const State& state() const { return state_; }
    /// The film's picture of this moment; null for none.
    QVideoFrame frame();

    // What happened, one after the other; not after close().
    std::function<void()> onFrame, onState;
    std::function<void(const QString& error)> onError;

  private:
    class Worker;
    static constexpr qint64 kNowhere = -1;
    /// `ask` runs on the player's thread, after what was asked before.
    template <class Ask>
    void post(Ask ask);
    void begin(State state);
    void takeFrame(const QVideoFrame& frame, int run);
    void takeState(const State& state, int run);
    void takeError(const QString& error, int run);

    QThread thread_;
    QObject home_;  ///< Stands for the thread of the window.
    std::unique_ptr<Worker> worker_;
    QString unavailable_;
    State state_;

    QMutex mutex_;  // Of what the player's threads look at.
    QVideoFrame frame_;
    bool frameTold_ = false;                 ///< One notice waits at most, however busy the window is.
    std::atomic<qint64> wanted_ = kNowhere;  ///< The position that is wished, until it is set.
    int run_ = 0;  ///< Counts what is played; what is told of another one than the last is dropped.
};

}  // namespace hl
