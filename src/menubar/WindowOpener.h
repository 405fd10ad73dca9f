#pragma once

#include "platform/ContinuousClock.h"

#include <QString>

#include <functional>
#include <list>
#include <memory>

class QWindow;

namespace kelvo {

/// Brings a window of this program to the front that was asked to open and is about to appear. Looks for it 20 times,
/// 50 milliseconds apart, the first time after 50 milliseconds, and then gives up.
class WindowOpener
{
public:
    using Predicate = std::function<bool(const QWindow &)>;

    /// The title of the first-run window, by which it is told from the settings.
    static QString onboardingTitle();

    /// The clock must outlive this.
    explicit WindowOpener(ContinuousClock &clock);
    ~WindowOpener();

    /// The first visible window that satisfies `matching`.
    void bringForward(Predicate matching);
    /// The window with that title.
    void bringForward(const QString &title);
    /// The one that has a title bar and is no panel, and is not the first-run window.
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
