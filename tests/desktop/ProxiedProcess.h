#pragma once

#include "simulator/CertificateAuthority.h"
#include "simulator/SimulatedInternet.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

namespace kelvo {

/// A program that uses a simulated internet: it reaches it through the proxy in its environment, and trusts its
/// certificates because they are in the system's certificate directory.
class ProxiedProcess
{
public:
    ProxiedProcess(SimulatedInternet &internet, QString program, QStringList arguments = {});
    /// Ends the program if it is still running.
    ~ProxiedProcess();
    ProxiedProcess(const ProxiedProcess &) = delete;
    ProxiedProcess &operator=(const ProxiedProcess &) = delete;

    void setEnvironment(const QString &name, const QString &value);

    void start();
    /// Ends the program with a signal, by default SIGTERM. Returns its exit code, or -1 when the signal killed it or it
    /// never ran. Sends no signal when it has already ended.
    int stop(int signal = 15);
    /// Waits until the program exits by itself. Returns its exit code, or -1.
    int waitForEnd();
    bool isRunning() const { return process_.state() == QProcess::Running; }
    qint64 processId() const { return process_.processId(); }
    void writeLine() { process_.write("\n"); }
    /// Returns the output of the program since the last call.
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
