#pragma once

#include <QProcess>
#include <QString>

namespace kelvo {

/// A network namespace with its own interfaces, addresses, routes and packet filters. It exists until its last process
/// ends.
class Namespace
{
public:
    /// Returns the namespace of this process.
    static Namespace current();
    /// Makes a new namespace that contains only a loopback interface. Throws a Defect when the kernel refuses.
    static Namespace make();

    Namespace(Namespace &&other) noexcept;
    ~Namespace();

    /// Makes `process` start in this namespace.
    void adopt(QProcess &process) const;
    /// Runs a command in this namespace and waits for it. Throws a Defect when it fails.
    void run(const QString &command, const QByteArray &input = {}) const;
    /// Like `run`, and returns the output of the command.
    QByteArray ask(const QString &command) const;

private:
    explicit Namespace(int descriptor);

    int descriptor_;
};

} // namespace kelvo
