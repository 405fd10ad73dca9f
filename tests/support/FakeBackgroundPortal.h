#pragma once

#include "support/PrivateBus.h"

#include <QDBusContext>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QVariantMap>

namespace kelvo {

/// A fake of the background portal on a private bus. It records the requests and leaves the answers to the test.
class FakeBackgroundPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Background")

public:
    explicit FakeBackgroundPortal(const PrivateBus &bus);

    /// The options of the requests.
    const QList<QVariantMap> &requests() const { return requests_; }
    /// Answers the last request: 0 for success, 1 when the user refused.
    void answer(uint response, const QVariantMap &results);
    /// From now on requests fail, as in a desktop that cannot start programs at login.
    void fail() { fails_ = true; }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusObjectPath RequestBackground(const QString &parent, const QVariantMap &options);

private:
    QList<QVariantMap> requests_;
    QString path_;
    bool fails_ = false;
    BusService service_;
};

} // namespace kelvo
