#include "FakeDesktop.h"

#include "platform/Compositing.h"
#include "platform/LayerShell.h"
#include "platform/LockWatch.h"
#include "platform/NativeWindow.h"
#include "platform/PressWatch.h"

#include <QScreen>

namespace kelvo {

namespace {

FakeDesktop *theDesktop = nullptr;
PressWatch *presses = nullptr;
LockWatch *locks = nullptr;

} // namespace

FakeDesktop::FakeDesktop()
{
    theDesktop = this;
    presses = nullptr;
    locks = nullptr;
}

FakeDesktop::~FakeDesktop()
{
    theDesktop = nullptr;
}

bool FakeDesktop::press()
{
    if (!presses) {
        return false;
    }
    Q_EMIT presses->pressed();
    return true;
}

bool FakeDesktop::lock()
{
    if (!locks) {
        return false;
    }
    Q_EMIT locks->locked();
    return true;
}

namespace WindowSystem {

PopoverKind popoverKind()
{
    return theDesktop->popoverKind;
}

std::optional<QPoint> pointer()
{
    return std::nullopt;
}

QRect availableGeometry(const QScreen &screen)
{
    return screen.geometry();
}

QRect geometryWithoutBars(const QScreen &screen)
{
    return screen.geometry();
}

} // namespace WindowSystem

namespace NativeWindow {

void makePopover(QWindow &window)
{
    theDesktop->popover = &window;
}

void setDrawnShadow(QWindow &, const QMargins &shadow)
{
    theDesktop->shadow = shadow;
}

void bringToThisWorkspace(QWindow &) { }

void activate(QWindow &window)
{
    theDesktop->activated = &window;
}

} // namespace NativeWindow

bool isCompositing()
{
    return theDesktop->isCompositing;
}

void placeInCorner(QWindow &, Qt::Edges corner)
{
    theDesktop->corner = corner;
}

class PressWatch::Native
{
};

PressWatch::PressWatch(QObject *parent)
    : QObject(parent)
{
}

PressWatch::~PressWatch() = default;

void PressWatch::start()
{
    presses = this;
}

void PressWatch::stop()
{
    presses = nullptr;
}

class LockWatch::Native
{
};

LockWatch::LockWatch(QObject *parent)
    : QObject(parent)
{
}

LockWatch::~LockWatch() = default;

void LockWatch::start()
{
    locks = this;
}

void LockWatch::stop()
{
    locks = nullptr;
}

} // namespace kelvo
