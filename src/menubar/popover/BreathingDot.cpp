#include "menubar/popover/BreathingDot.h"

#include <QQuickWindow>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr auto stepTime = 60ms;
constexpr double faintest = 0.45;

} // namespace

BreathingDot::BreathingDot(QQuickItem *parent)
    : StatusDot(parent)
{
    setImplicitSize(5, 5);
    steps_.setInterval(stepTime);
    connect(&steps_, &QTimer::timeout, this, &BreathingDot::step);
    connect(&tokens_, &Tokens::changed, this, &BreathingDot::startOrStop);
}

bool BreathingDot::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Expose) {
        startOrStop();
    }
    return StatusDot::eventFilter(watched, event);
}

void BreathingDot::itemChange(ItemChange change, const ItemChangeData &value)
{
    StatusDot::itemChange(change, value);
    if (change == ItemSceneChange) {
        if (window_) {
            window_->removeEventFilter(this);
            window_->disconnect(this);
        }
        window_ = value.window;
        if (window_) {
            window_->installEventFilter(this);
            connect(window_, &QWindow::visibleChanged, this, &BreathingDot::startOrStop);
        }
        startOrStop();
    } else if (change == ItemVisibleHasChanged) {
        startOrStop();
    }
}

void BreathingDot::startOrStop()
{
    const bool isSeen = isVisible() && window_ && window_->isVisible() && window_->isExposed();
    const bool breathes = isSeen && !tokens_.reduceMotion();
    if (breathes == isBreathing()) {
        return;
    }
    if (breathes) {
        sinceStart_.start();
        steps_.start();
    } else {
        steps_.stop();
        setOpacity(1);
    }
    Q_EMIT isBreathingChanged();
}

void BreathingDot::step()
{
    const auto half = tokens_.breath();
    const auto time = sinceStart_.elapsed() % (2 * half.duration);
    const double progress = static_cast<double>(time % half.duration) / half.duration;
    const double eased = half.curve.valueForProgress(progress);
    const double dimmed = time < half.duration ? eased : 1 - eased;
    setOpacity(1 - (1 - faintest) * dimmed);
}

} // namespace kelvo
