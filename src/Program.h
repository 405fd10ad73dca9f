#pragma once

#include "Composition.h"
#include "menubar/KelvoApp.h"

class QApplication;

namespace kelvo {

/// Gives the application its name, its icon and its manners: it runs without a window, and quits when the system asks.
void prepareApplication(QApplication &application);

/// The whole program over its boundaries: the ring, the stores and the windows. Needs a prepared application.
class Program
{
public:
    Program(Boundaries boundaries, ViewsFactory makeViews);

    KelvoApp &app() { return app_; }

private:
    Composition composition_;
    KelvoApp app_;
};

} // namespace kelvo
