#pragma once

#include "Accessible.h"
#include "Patience.h"
#include "ProxiedProcess.h"

#include <QTemporaryDir>

namespace kelvo {

/// The real program, started as in a user's session, with its own settings and a simulated internet.
class KelvoProcess : public ProxiedProcess
{
public:
    explicit KelvoProcess(SimulatedInternet &internet);
    /// Runs a copy of the program.
    KelvoProcess(SimulatedInternet &internet, const QString &program);
    ~KelvoProcess();

    /// The path of the program that was built.
    static QString program();

    /// Starts the program once more while it runs, and verifies that this start ends well, in silence and without requests.
    static void startAgain();

    /// Ends the program if it is still running, and verifies that it ends well and has printed nothing.
    void endInSilence();

    /// Writes the settings file. It takes effect at the next start.
    void writeSettings(const QByteArray &content);
    QString settingsFile() const;
    /// The path of a file in the program's configuration directory.
    QString configurationPath(const QString &name) const { return configuration_.filePath(name); }

    /// Waits for a visible object with this role whose name begins with `name`. Returns nullopt when none appears.
    std::optional<Accessible> find(Accessible::Role role, const QString &name) const;
    /// Waits for such an object and clicks its centre. Returns false when none appears.
    bool clickOn(Accessible::Role role, const QString &name) const;

private:
    QTemporaryDir configuration_;
};

} // namespace kelvo
