#include "menubar/WindowOpener.h"

#include "platform/NativeWindow.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pause = 50ms;
constexpr int mostAttempts = 20;

bool isTitled(const QWindow &window)
{
    return !window.flags().testFlag(Qt::FramelessWindowHint);
}

bool isPanel(const QWindow &window)
{
    return window.type() != Qt::Window && window.type() != Qt::Dialog;
}

QWindow *firstVisible(const WindowOpener::Predicate &matching)
{
    const auto windows = QGuiApplication::topLevelWindows();
    const auto found = std::find_if(windows.begin(), windows.end(), [&matching](const QWindow *window) {
        return window->isVisible() && matching(*window);
    });
    return found == windows.end() ? nullptr : *found;
}

} // namespace

QString WindowOpener::onboardingTitle()
{
    return u"Welcome to Kelvo"_s;
}

WindowOpener::WindowOpener(ContinuousClock &clock)
    : clock_(clock)
{
}

WindowOpener::~WindowOpener() = default;

void WindowOpener::bringForward(Predicate matching)
{
    wait(searches_.insert(searches_.end(), {.matching = std::move(matching), .pause = nullptr}));
}

void WindowOpener::bringForward(const QString &title)
{
    bringForward([title](const QWindow &window) { return window.title() == title; });
}

void WindowOpener::bringSettingsForward()
{
    bringForward([](const QWindow &window) {
        return isTitled(window) && !isPanel(window) && window.title() != onboardingTitle();
    });
}

void WindowOpener::wait(Place search)
{
    search->pause = clock_.after(pause, [this, search] { attempt(search); });
}

void WindowOpener::attempt(Place search)
{
    ++search->attempts;
    if (auto *window = firstVisible(search->matching)) {
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
        NativeWindow::activate(*window);
        searches_.erase(search);
    } else if (search->attempts < mostAttempts) {
        wait(search);
    } else {
        searches_.erase(search);
    }
}

} // namespace kelvo
