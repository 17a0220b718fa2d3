#include "platform/qt/preview/media_engine.h"

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QMutexLocker>
#include <QUrl>
#include <QVideoSink>
#include <utility>

#include "platform/qt/preview/media_sources.h"
#include "platform/qt/preview/stream_source.h"

namespace hl {

/// Lives on the player's thread, with everything that it owns.
class MediaEngine::Worker : public QObject {
  public:
    explicit Worker(MediaEngine& engine) : engine_(engine) {}

    /// Returns why nothing can be played.
    QString open();
    void leave(QThread* thread);
    void load(std::shared_ptr<OpenFile> file, int run);
    void play();
    void stop();
    void close();
    QMediaPlayer& player() { return parts_->player; }
    QAudioOutput& audio() { return parts_->audio; }

  private:
    struct Parts {
        QMediaPlayer player;
        QAudioOutput audio;
        QVideoSink sink;
    };

    QUrl address() const;
    void tellState();
    bool isLoadedInVain(QMediaPlayer::MediaStatus status);
    void failLater();
    /// `tell` runs on the window's thread, with the number of what is played.
    template <class Tell>
    void post(Tell tell) {
        QMetaObject::invokeMethod(
            &engine_.home_, [tell, run = run_.load()] { tell(run); }, Qt::QueuedConnection);
    }

    MediaEngine& engine_;
    std::unique_ptr<Parts> parts_;
    std::shared_ptr<OpenFile> file_;
    std::atomic<int> run_ = 0;
    bool starts_ = false;  ///< Plays the file once it is loaded.
};

QString MediaEngine::Worker::open() {
    parts_ = std::make_unique<Parts>();
    QMediaPlayer& player = parts_->player;
    player.setAudioOutput(&parts_->audio);
    player.setVideoSink(&parts_->sink);
    const auto changed = [this] { tellState(); };
    connect(&player, &QMediaPlayer::positionChanged, this, changed);
    connect(&player, &QMediaPlayer::durationChanged, this, changed);
    connect(&player, &QMediaPlayer::playbackStateChanged, this, changed);
    connect(&player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
        tellState();
        if (status == QMediaPlayer::InvalidMedia || isLoadedInVain(status)) return failLater();
        if (status == QMediaPlayer::LoadedMedia && std::exchange(starts_, false)) parts_->player.play();
    });
    connect(&player, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error, const QString& error) {
        post([this, error](int run) { engine_.takeError(error, run); });
    });
    // This runs on the thread that decoded the picture.
    connect(
        &parts_->sink, &QVideoSink::videoFrameChanged, this,
        [this](const QVideoFrame& frame) { engine_.takeFrame(frame, run_); }, Qt::DirectConnection);
    if (!player.isAvailable()) return player.errorString();
    return allowLocalFilesAlone() && addStreamSource() ? QString() : QStringLiteral("GStreamer");
}

void MediaEngine::Worker::leave(QThread* thread) {
    close();
    parts_.reset();
    moveToThread(thread);
}

void MediaEngine::Worker::tellState() {
    const State state{.plays = player().playbackState() == QMediaPlayer::PlayingState,
                      .loads = player().mediaStatus() == QMediaPlayer::LoadingMedia,
                      .position = player().position(),
                      .duration = player().duration()};
    post([this, state](int run) { engine_.takeState(state, run); });
}

// Without a decoder for anything in the file, the player loads it without an error and then plays nothing.
bool MediaEngine::Worker::isLoadedInVain(QMediaPlayer::MediaStatus status) {
    return status == QMediaPlayer::LoadedMedia && !player().hasAudio() && !player().hasVideo();
}

// An error that the player reports itself comes at once, says more, and counts first.
void MediaEngine::Worker::failLater() {
    starts_ = false;
    QMetaObject::invokeMethod(
        this,
        [this, failed = run_.load()] {
            if (run_ != failed) return;
            post([this, error = player().errorString()](int run) { engine_.takeError(error, run); });
        },
        Qt::QueuedConnection);
}

void MediaEngine::Worker::load(std::shared_ptr<OpenFile> file, int run) {
    close();
    run_ = run;
    file_ = std::move(file);
    // Playing starts when it is loaded, because an error during a start may be lost.
    starts_ = true;
    player().setSource(address());
}

// The player only takes a name; this one means the open file, whatever its real name is.
QUrl MediaEngine::Worker::address() const {
    const auto stream = file_->stream();
    offerStream(stream);
    return stream ? QUrl(QLatin1String(kStreamAddress))
                  : QUrl(QStringLiteral("file:///proc/self/fd/%1").arg(file_->descriptor()));
}

void MediaEngine::Worker::play() {
    starts_ = player().mediaStatus() == QMediaPlayer::LoadingMedia;
    if (!starts_) player().play();
}

void MediaEngine::Worker::stop() {
    starts_ = false;
    player().stop();
}

void MediaEngine::Worker::close() {
    starts_ = false;
    player().stop();
    player().setSource({});
    offerStream(nullptr);
    file_.reset();
}

// --- on the thread of the window

MediaEngine::MediaEngine() : worker_(std::make_unique<Worker>(*this)) {
    worker_->moveToThread(&thread_);
    thread_.start();
    QMetaObject::invokeMethod(
        worker_.get(), [this] { unavailable_ = worker_->open(); }, Qt::BlockingQueuedConnection);
}

MediaEngine::~MediaEngine() {
    begin({}, nullptr);
    QThread* here = QThread::currentThread();
    QMetaObject::invokeMethod(
        worker_.get(), [this, here] { worker_->leave(here); }, Qt::BlockingQueuedConnection);
    thread_.quit();
    thread_.wait();
}

template <class Ask>
void MediaEngine::post(Ask ask) {
    QMetaObject::invokeMethod(worker_.get(), ask, Qt::QueuedConnection);
}

// The player may be waiting for the disk of the file before; it does not wait any longer.
void MediaEngine::begin(State state, std::shared_ptr<FileStream> stream) {
    if (stream_) stream_->end();
    stream_ = std::move(stream);
    state_ = state;
    const QMutexLocker lock(&mutex_);
    ++run_;
    frame_ = {};
    frameTold_ = false;
}

void MediaEngine::load(std::shared_ptr<OpenFile> file) {
    begin({.loads = true}, file->stream());
    post([this, file = std::move(file), run = run_] { worker_->load(file, run); });
}

void MediaEngine::close() {
    begin({}, nullptr);
    post([this] { worker_->close(); });
}

qint64 MediaEngine::waiting() const {
    return stream_ ? stream_->waiting().count() : 0;
}

void MediaEngine::play() {
    post([this] { worker_->play(); });
}

void MediaEngine::pause() {
    post([this] { worker_->player().pause(); });
}

void MediaEngine::stop() {
    post([this] { worker_->stop(); });
}

void MediaEngine::setPosition(qint64 milliseconds) {
    if (wanted_.exchange(milliseconds) != kNowhere) return;
    post([this] { worker_->player().setPosition(wanted_.exchange(kNowhere)); });
}

void MediaEngine::setVolume(float volume) {
    post([this, volume] { worker_->audio().setVolume(volume); });
}

QVideoFrame MediaEngine::frame() {
    const QMutexLocker lock(&mutex_);
    frameTold_ = false;
    return frame_;
}

void MediaEngine::takeState(const State& state, int run) {
    if (run != run_) return;
    state_ = state;
    if (onState) onState();
}

void MediaEngine::takeError(const QString& error, int run) {
    if (run == run_ && onError) onError(error);
}

// --- on a thread of the player

void MediaEngine::takeFrame(const QVideoFrame& frame, int run) {
    const QMutexLocker lock(&mutex_);
    if (run != run_) return;
    frame_ = frame;
    if (std::exchange(frameTold_, true)) return;
    QMetaObject::invokeMethod(
        &home_,
        [this, run] {
            if (run == run_ && onFrame) onFrame();
        },
        Qt::QueuedConnection);
}

}  // namespace hl
