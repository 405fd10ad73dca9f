#pragma once

#include "ProxiedProcess.h"

#include <QTemporaryDir>

namespace kelvo {

/// The real program, as a user's session would start it, with settings of its own, in the simulated internet.
class KelvoProcess : public ProxiedProcess
{
public:
    explicit KelvoProcess(SimulatedInternet &internet);
    ~KelvoProcess();

    /// The settings file's content; takes effect at the next start.
    void writeSettings(const QByteArray &content);
    QString settingsFile() const;

private:
    QTemporaryDir configuration_;
};

} // namespace kelvo
