#pragma once

#include "platform/WindowSystem.h"

#include <QMargins>
#include <QWindow>

#include <optional>

namespace kelvo {

/// The desktop of a program that links FakeDesktop.cpp, instead of the one on which the program runs. It stands in for
/// WindowSystem, NativeWindow, LayerShell, Compositing, PressWatch and LockWatch. One may exist at a time.
class FakeDesktop
{
public:
    FakeDesktop();
    ~FakeDesktop();
    FakeDesktop(const FakeDesktop &) = delete;
    FakeDesktop &operator=(const FakeDesktop &) = delete;

    WindowSystem::PopoverKind popoverKind = WindowSystem::PopoverKind::managed;
    bool isCompositing = true;

    /// What the program asked for last.
    QWindow *popover = nullptr;
    QWindow *activated = nullptr;
    QMargins shadow;
    std::optional<Qt::Edges> corner;

    /// Presses a mouse button anywhere. Returns whether the program watches for that.
    bool press();
    /// Locks the screen. Returns whether the program watches for that.
    bool lock();
};

} // namespace kelvo
