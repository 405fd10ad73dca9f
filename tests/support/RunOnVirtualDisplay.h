#pragma once

#include "support/VirtualDisplay.h"

#include <QGuiApplication>
#include <QTest>

namespace kelvo {

/// Runs a test as a program of a private X11 display, which has no window manager. Returns the exit code.
template<typename Test>
int runOnVirtualDisplay(int argc, char **argv)
{
    const VirtualDisplay display;
    qputenv("DISPLAY", display.name().toLatin1());
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QGuiApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace kelvo
