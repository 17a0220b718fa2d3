#include "platform/qt/preview/media_module.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSlider>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>
#include <utility>

#include "platform/picture_size.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/preview/media_engine.h"
#include "platform/qt/preview/media_sources.h"

namespace hl {

namespace {

constexpr QtGuard kMediaModuleGuard{};
constexpr QtGuard kFilmGuard{"FilmView"};

constexpr int kVolumes = 100;
constexpr float kFirstVolume = 0.7F;
constexpr int kStep = 5000;  // In milliseconds, like the next ones.
constexpr int kPatience = 8000;
constexpr int kPatienceWithStream = 60'000;  // Its disk may be slow; one that is silent is noticed before.
constexpr int kWatch = 200;                  // How often a disk that may not answer is looked at.
constexpr int kUnnoticed = 1000;             // How long such a disk may take before the user is told.
constexpr int kSilent = 10'000;              // How long it may take before it is given up.

QString timeText(qint64 milliseconds) {
    const qint64 seconds = milliseconds / 1000;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

/// Shows the film's pictures, scaled to fit. They are painted like anything else, so that it works on every
/// screen.
class FilmView final : public QWidget {
  public:
    FilmView(QWidget* parent, WindowEvents& events, MediaEngine& engine)
        : QWidget(parent), events_(events), engine_(engine) {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        setObjectName(QStringLiteral("film"));
    }
    /// Shows a text in place of the pictures, until it is empty.
    void showNotice(const QString& notice) {
        if (notice == accessibleDescription()) return;
        setAccessibleDescription(notice);
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        kFilmGuard(events_, [this] {
            QPainter painter(this);
            if (const QString notice = accessibleDescription(); !notice.isEmpty())
                return painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, notice);
            const QImage image = engine_.frame().toImage();
            if (image.isNull() || width() < 1 || height() < 1) return;
            const auto drawn = ZoomPicture({image.width(), image.height()}, {width(), height()}, false).drawn;
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawImage(
                QRect((width() - drawn.width) / 2, (height() - drawn.height) / 2, drawn.width, drawn.height),
                image);
        });
    }

  private:
    WindowEvents& events_;
    MediaEngine& engine_;
};

/// A button with a plain sign in the text's colour; the style's own icons are black even on a dark desktop.
class SignButton final : public QToolButton {
  public:
    enum Sign { kPlay, kPause, kStop };
    SignButton(Sign sign, const std::string& name, QWidget* parent) : QToolButton(parent), sign_(sign) {
        setAccessibleName(qtText(name));
        setToolTip(qtText(name));
        setAutoRaise(true);
        setFocusPolicy(Qt::TabFocus);
    }
    void setSign(Sign sign) {
        sign_ = sign;
        update();
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QToolButton::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().buttonText());
        const qreal side = std::min(width(), height()) * 0.5;
        painter.translate((width() - side) / 2, (height() - side) / 2);
        if (sign_ == kPlay) painter.drawPolygon(QPolygonF({{0, 0}, {side, side / 2}, {0, side}}));
        if (sign_ == kStop) painter.drawRect(QRectF(0, 0, side, side));
        if (sign_ != kPause) return;
        painter.drawRect(QRectF(0, 0, side * 0.35, side));
        painter.drawRect(QRectF(side * 0.65, 0, side * 0.35, side));
    }

  private:
    Sign sign_;
};

class Player final : public MediaView {
  public:
    explicit Player(const MediaStart& start);

    std::string unavailable() const override;
    void play(std::unique_ptr<OpenFile> file) override;
    void close() override;

  private:
    void addControls(const PreviewTexts& texts);
    SignButton* addButton(SignButton::Sign sign, const std::string& name);
    QSlider* addSlider(const std::string& name, int most);
    void connectPlayer();
    void showState();
    void playPressed();
    void stopPressed();
    void watchDisk();
    bool isWaitNoticed() const { return engine_.waiting() > kUnnoticed; }
    void fail(const QString& error);
    template <class Body>
    auto guarded(const char* where, Body body) {
        return [this, where, body](auto...) { kMediaModuleGuard(events_, where, body); };
    }

    WindowEvents& events_;
    const std::string waitingText_, silentText_;
    MediaEngine engine_;
    FilmView* film_;
    QHBoxLayout* controls_ = nullptr;
    SignButton* play_ = nullptr;
    SignButton* stop_ = nullptr;
    QSlider* position_ = nullptr;
    QSlider* volume_ = nullptr;
    QLabel* time_ = nullptr;
    QTimer patience_;       ///< Limits the time of a file that neither loads nor fails.
    QTimer watch_;          ///< Runs while a file is played whose disk may not answer.
    bool playing_ = false;  ///< A file is played and has not failed.
};

Player::Player(const MediaStart& start)
    : MediaView(start.parent),
      events_(start.events),
      waitingText_(start.texts.waiting),
      silentText_(start.texts.silent),
      film_(new FilmView(this, start.events, engine_)) {
    auto* rows = new QVBoxLayout(this);
    rows->addWidget(film_, 1);
    controls_ = new QHBoxLayout;
    rows->addLayout(controls_);
    addControls(start.texts);
    engine_.setVolume(kFirstVolume);
    connectPlayer();
}

SignButton* Player::addButton(SignButton::Sign sign, const std::string& name) {
    auto* button = new SignButton(sign, name, this);
    controls_->addWidget(button);
    return button;
}

QSlider* Player::addSlider(const std::string& name, int most) {
    auto* slider = new QSlider(Qt::Horizontal, this);
    slider->setRange(0, most);
    slider->setAccessibleName(qtText(name));
    slider->setToolTip(qtText(name));
    return slider;
}

void Player::addControls(const PreviewTexts& texts) {
    play_ = addButton(SignButton::kPlay, texts.play);
    play_->setObjectName(QStringLiteral("play"));
    stop_ = addButton(SignButton::kStop, texts.stop);
    stop_->setObjectName(QStringLiteral("stop"));
    position_ = addSlider(texts.position, 0);
    position_->setObjectName(QStringLiteral("position"));
    position_->setSingleStep(kStep);
    controls_->addWidget(position_, 1);
    time_ = new QLabel(this);
    controls_->addWidget(time_);
    volume_ = addSlider(texts.volume, kVolumes);
    volume_->setObjectName(QStringLiteral("volume"));
    volume_->setValue(static_cast<int>(kFirstVolume * kVolumes));
    volume_->setMaximumWidth(volume_->sizeHint().width());
    controls_->addWidget(volume_);
}

void Player::connectPlayer() {
    connect(play_, &QToolButton::clicked, this, guarded("play", [this] { playPressed(); }));
    connect(stop_, &QToolButton::clicked, this, guarded("stop", [this] { stopPressed(); }));
    // The user moved it, by mouse or keys; the player moves it with signals blocked.
    connect(position_, &QSlider::valueChanged, this,
            guarded("position", [this] { engine_.setPosition(position_->value()); }));
    connect(volume_, &QSlider::valueChanged, this, guarded("volume", [this] {
                engine_.setVolume(static_cast<float>(volume_->value()) / static_cast<float>(kVolumes));
            }));
    engine_.onFrame = guarded("frame", [this] { film_->update(); });
    engine_.onState = guarded("state", [this] { showState(); });
    engine_.onError = [this](const QString& error) {
        kMediaModuleGuard(events_, "error", [&] { fail(error); });
    };
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, guarded("timeout", [this] {
        if (engine_.state().loads) fail({});
    }));
    watch_.setInterval(kWatch);
    connect(&watch_, &QTimer::timeout, this, guarded("watch", [this] { watchDisk(); }));
}

void Player::fail(const QString& error) {
    if (std::exchange(playing_, false) && failed) failed(utf8(error));
}

std::string Player::unavailable() const {
    const QString& reason = engine_.unavailable();
    return reason.isEmpty() ? std::string() : utf8(reason) + " (QtMultimedia)";
}

void Player::play(std::unique_ptr<OpenFile> file) {
    playing_ = true;
    const bool hasStream = file->stream() != nullptr;
    patience_.start(hasStream ? kPatienceWithStream : kPatience);
    if (hasStream) watch_.start();
    engine_.load(std::move(file));
}

void Player::close() {
    playing_ = false;
    patience_.stop();
    watch_.stop();
    film_->showNotice({});
    engine_.close();
    showState();
    film_->update();
}

void Player::playPressed() {
    if (engine_.state().plays) {
        engine_.pause();
    } else {
        engine_.play();
    }
}

// A player that waits for the disk does not obey; then the file is given up.
void Player::stopPressed() {
    if (isWaitNoticed()) return fail(qtText(silentText_));
    engine_.stop();
}

void Player::watchDisk() {
    if (engine_.waiting() > kSilent) return fail(qtText(silentText_));
    film_->showNotice(isWaitNoticed() ? qtText(waitingText_) : QString());
}

void Player::showState() {
    constexpr qint64 kMost = std::numeric_limits<int>::max();
    const MediaEngine::State& state = engine_.state();
    play_->setSign(state.plays ? SignButton::kPause : SignButton::kPlay);
    const QSignalBlocker quiet(position_);
    position_->setMaximum(static_cast<int>(std::clamp<qint64>(state.duration, 0, kMost)));
    if (!position_->isSliderDown())
        position_->setValue(static_cast<int>(std::clamp<qint64>(state.position, 0, kMost)));
    time_->setText(timeText(state.position) + QLatin1String(" / ") + timeText(state.duration));
}

}  // namespace

}  // namespace hl

hl::MediaView* harborlanternMedia(const hl::MediaStart& start) {
    hl::GuardedRoutine::countWith(start.guardedDepth);
    hl::prepareMediaLibrary(start.cache);
    return new hl::Player(start);
}
