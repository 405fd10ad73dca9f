#pragma once

#include <QObject>
#include <QStringList>

namespace kelvo {

/// Observes the notifications that Kelvo sends.
class NotificationWatch : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to observe. Returns false, with the reason in `errorString`, when that is not possible.
    virtual bool start() = 0;
    QString errorString() const { return errorString_; }

    /// All notifications so far, each as "title: body".
    const QStringList &seen() const { return seen_; }

Q_SIGNALS:
    /// A notification was seen.
    void notified();

protected:
    void fail(const QString &reason) { errorString_ = reason; }
    void see(const QString &title, const QString &body)
    {
        seen_.append(title + QStringLiteral(": ") + body);
        Q_EMIT notified();
    }

private:
    QString errorString_;
    QStringList seen_;
};

} // namespace kelvo
