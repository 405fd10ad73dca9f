#pragma once

#include "platform/ContinuousClock.h"

#include <QString>

#include <functional>
#include <list>
#include <memory>

class QWindow;

namespace kelvo {

/// Brings a window of this program to the front that is about to appear. Looks for the window every 50 milliseconds and
/// gives up after 20 attempts.
class WindowOpener
{
public:
    using Predicate = std::function<bool(const QWindow &)>;

    /// The title of the onboarding window. It distinguishes this window from the settings window.
    static QString onboardingTitle();

    /// The clock must outlive this object.
    explicit WindowOpener(ContinuousClock &clock);
    ~WindowOpener();

    /// Brings the first visible window for which `matching` returns true to the front.
    void bringForward(Predicate matching);
    /// Brings the window with this title to the front.
    void bringForward(const QString &title);
    /// Brings the first visible window to the front that has a title bar and is neither a panel nor the onboarding
    /// window.
    void bringSettingsForward();

private:
    struct Search
    {
        Predicate matching;
        int attempts = 0;
        std::unique_ptr<ContinuousClock::Timer> pause;
    };
    using Place = std::list<Search>::iterator;

    void wait(Place search);
    void attempt(Place search);

    ContinuousClock &clock_;
    std::list<Search> searches_;
};

} // namespace kelvo
