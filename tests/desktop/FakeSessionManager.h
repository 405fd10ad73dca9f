#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <memory>
#include <vector>

class QSocketNotifier;

namespace kelvo {

/// A session manager for one program, by the X session management protocol. It records the properties that the program sets.
class FakeSessionManager
{
public:
    FakeSessionManager();
    ~FakeSessionManager();
    FakeSessionManager(const FakeSessionManager &) = delete;
    FakeSessionManager &operator=(const FakeSessionManager &) = delete;

    /// The value of SESSION_MANAGER for the program.
    QString address() const;
    /// Whether the program has registered.
    bool hasClient() const;
    /// Whether the program has answered the last request to save.
    bool isSaved() const;
    /// The first byte of a property, which is its value if it is a number; -1 when the program has not set it.
    int number(const QByteArray &property) const;

    /// Asks the program to save its state because the session ends.
    void endSession();
    /// Tells the program to exit.
    void tellToExit();

private:
    struct Connections;
    std::unique_ptr<Connections> connections_;
};

} // namespace kelvo
