#pragma once

#include "platform/NotificationCenter.h"
#include "platform/linux/BusNameOwner.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace kelvo {

/// Posts desktop notifications over the session bus. The server may start, restart or be replaced at any time.
class DBusNotificationCenter : public NotificationCenter
{
public:
    explicit DBusNotificationCenter(std::shared_ptr<BusConnection> sessionBus);

    bool canServeThisProcess() const override;
    /// Desktops have no permission to ask for: the status is `authorized` when a notification server runs or can be
    /// started by the bus, else `notDetermined`.
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
