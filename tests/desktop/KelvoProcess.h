#pragma once

#include "Accessible.h"
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
    /// Something in the configuration directory that the program is given.
    QString configurationPath(const QString &name) const { return configuration_.filePath(name); }

    /// What a person sees under that name, or a name that begins so. Waits a while for it to appear.
    std::optional<Accessible> find(Accessible::Role role, const QString &name) const;
    /// Clicks on the middle of it. False when it is not there.
    bool clickOn(Accessible::Role role, const QString &name) const;

private:
    QTemporaryDir configuration_;
};

} // namespace kelvo
