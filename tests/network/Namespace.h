#pragma once

#include <QProcess>
#include <QString>

namespace kelvo {

/// A network namespace: interfaces, addresses, routes and filters that nobody else sees. It ends with the last process
/// in it.
class Namespace
{
public:
    /// The one that this process is in.
    static Namespace current();
    /// A new one, with nothing but its loopback interface. Throws a Defect where the kernel refuses.
    static Namespace make();

    Namespace(Namespace &&other) noexcept;
    ~Namespace();

    /// Lets `process` start in here.
    void adopt(QProcess &process) const;
    /// Runs a command in here to its end, which must be a good one: otherwise throws a Defect.
    void run(const QString &command, const QByteArray &input = {}) const;
    /// The same, and gives what it printed.
    QByteArray ask(const QString &command) const;

private:
    explicit Namespace(int descriptor);

    int descriptor_;
};

} // namespace kelvo
