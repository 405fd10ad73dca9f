#pragma once

#include <QObject>

#include <memory>

namespace kelvo {

/// Reports that the user's screen was locked. Emits nothing where the system does not tell.
class LockWatch : public QObject
{
    Q_OBJECT

public:
    explicit LockWatch(QObject *parent = nullptr);
    ~LockWatch() override;

    void start();
    /// May be called by a slot of `locked`.
    void stop();

Q_SIGNALS:
    void locked();

private:
    class Native;
    std::unique_ptr<Native> native_;
};

} // namespace kelvo
