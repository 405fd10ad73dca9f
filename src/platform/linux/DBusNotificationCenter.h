#pragma once

#include "platform/NotificationCenter.h"
#include "platform/linux/BusNameOwner.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace kelvo {

/// Desktop notifications over the session bus, by whichever server runs or can be started when one is posted.
class DBusNotificationCenter : public NotificationCenter
{
public:
    explicit DBusNotificationCenter(std::shared_ptr<BusConnection> sessionBus);

    bool canServeThisProcess() const override;
    /// A desktop asks no permission: authorized where there is, or can be started, a server.
    QFuture<AuthorizationStatus> authorizationStatus() override;
    QFuture<void> requestAuthorization() override;
    void add(const LocalNotification &notification) override;

private:
    void onServerChanged();
    void askCapabilities();
    void post(const LocalNotification &notification);

    std::shared_ptr<BusConnection> bus_;
    BusNameOwner server_;
    std::optional<QStringList> capabilities_;
    std::unique_ptr<QObject> question_;
    QList<LocalNotification> waiting_;
};

} // namespace kelvo
