#pragma once

#include <QObject>

#include <memory>

namespace kelvo {

/// Reports presses of mouse buttons anywhere on the screen, including the windows of other programs and the empty
/// desktop. The press takes effect there as usual. Emits nothing where the window system does not tell.
class PressWatch : public QObject
{
    Q_OBJECT

public:
    /// Requires a QGuiApplication.
    explicit PressWatch(QObject *parent = nullptr);
    ~PressWatch() override;

    void start();
    void stop();

Q_SIGNALS:
    /// A button was pressed, not the wheel.
    void pressed();

private:
    class Native;
    std::unique_ptr<Native> native_;
};

} // namespace kelvo
