#pragma once

#include <QProcess>
#include <QString>

namespace kelvo {

/// An X11 display of a test's own that nobody sees.
class VirtualDisplay
{
public:
    VirtualDisplay();
    ~VirtualDisplay();

    /// As in DISPLAY.
    const QString &name() const { return name_; }

private:
    QProcess server_;
    QString name_;
};

} // namespace kelvo
