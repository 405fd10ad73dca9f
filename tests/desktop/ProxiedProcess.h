#pragma once

#include "simulator/CertificateAuthority.h"
#include "simulator/SimulatedInternet.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

namespace kelvo {

/// A program that lives in the simulated internet: it reaches that through the proxy in its environment, and trusts its
/// certificates because the system does.
class ProxiedProcess
{
public:
    ProxiedProcess(SimulatedInternet &internet, QString program, QStringList arguments = {});
    /// Ends the program if it still runs.
    ~ProxiedProcess();
    ProxiedProcess(const ProxiedProcess &) = delete;
    ProxiedProcess &operator=(const ProxiedProcess &) = delete;

    void setEnvironment(const QString &name, const QString &value);

    void start();
    /// Ends the program with SIGTERM, or another signal. Gives what it exited with, or -1 when a signal killed it or it
    /// never ran. Does nothing when it has ended already.
    int stop(int signal = 15);
    /// Waits for the program to end by itself. Gives what it exited with, or -1.
    int waitForEnd();
    bool isRunning() const { return process_.state() == QProcess::Running; }
    qint64 processId() const { return process_.processId(); }
    void writeLine() { process_.write("\n"); }
    /// Everything that it printed so far.
    QByteArray output() { return process_.readAll(); }

private:
    QString program_;
    QStringList arguments_;
    std::unique_ptr<CertificateAuthority> authority_;
    QTemporaryDir trusted_;
    QProcess process_;
    bool hasRun_ = false;
};

} // namespace kelvo
