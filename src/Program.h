#pragma once

#include "Composition.h"
#include "menubar/KelvoApp.h"

class QApplication;

namespace kelvo {

/// Silences warnings of Qt about what the program can do without, and lets Qt draw without a delay. Call it before the
/// QApplication is made and before another thread starts.
void prepareProcess();

/// Sets the name, version and icon of the application, lets it run without a window, and makes termination signals quit it.
void prepareApplication(QApplication &application);

/// The whole program: the ring, the stores and the views, on top of the given boundaries. Requires an application that was
/// passed to `prepareApplication`.
class Program
{
public:
    Program(Boundaries boundaries, ViewsFactory makeViews);

    KelvoApp &app() { return app_; }

    /// What the user sees after starting the running program again, or after starting it through the bus: the popover, or the
    /// onboarding window until it is completed.
    void activate();

private:
    Composition composition_;
    KelvoApp app_;
};

} // namespace kelvo
