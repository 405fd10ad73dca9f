#pragma once

#include <QProcess>
#include <QString>

namespace kelvo {

/// A private X11 display without a screen (Xvfb).
class VirtualDisplay
{
public:
    /// `depth` is the number of bits per pixel.
    explicit VirtualDisplay(int depth = 24);
    ~VirtualDisplay();

    /// The name of the display, as in the environment variable DISPLAY.
    const QString &name() const { return name_; }

private:
    QProcess server_;
    QString name_;
};

} // namespace kelvo
