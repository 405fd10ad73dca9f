#pragma once

#include "platform/NotificationCenter.h"
#include "platform/linux/BusNameOwner.h"
#include "platform/linux/NotificationSettings.h"

#include <QDeadlineTimer>
#include <QList>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>

namespace kelvo {

/// Posts desktop notifications over the session bus. The server may start, restart or be replaced at any time.
class DBusNotificationCenter : public NotificationCenter
{
    Q_OBJECT

public:
    /// How long notifications wait for the capabilities of a server. After that they are posted as plain text.
    static constexpr std::chrono::milliseconds answerTimeout{2000};

    /// How long a notification that no server could take is kept for one that starts, such as one that restarts with its
    /// bus.
    static constexpr std::chrono::milliseconds serverPatience{60'000};

    /// `desktops` are the names of the desktop in XDG_CURRENT_DESKTOP.
    explicit DBusNotificationCenter(std::shared_ptr<BusConnection> sessionBus, const QStringList &desktops = {},
                                    std::chrono::milliseconds timeout = DBusNotificationCenter::answerTimeout,
                                    std::chrono::milliseconds patience = DBusNotificationCenter::serverPatience);

    bool canServeThisProcess() const override;
    /// Desktops have no permission to ask for: the status is `authorized` when a notification server runs or can be
    /// started by the bus, else `notDetermined`.
    QFuture<AuthorizationStatus> authorizationStatus() override;
    /// Known on GNOME and Plasma.
    QFuture<QString> turnedOffIn() override { return settings_.turnedOffIn(); }
    QFuture<void> requestAuthorization() override;
    void add(const LocalNotification &notification) override;

private Q_SLOTS:
    void onActivationToken(uint id, const QString &token);
    void onActionInvoked(uint id, const QString &action);
    void onNotificationClosed(uint id, uint reason);

private:
    struct Pending
    {
        LocalNotification notification;
        QDeadlineTimer until;
    };

    void onServerChanged();
    void onConnected();
    void askCapabilities();
    void post(const Pending &pending);
    void wait(const Pending &pending);

    std::shared_ptr<BusConnection> bus_;
    BusNameOwner server_;
    NotificationSettings settings_;
    std::chrono::milliseconds timeout_;
    std::chrono::milliseconds patience_;
    bool hasBus_; ///< the session has a bus, or had one that may come back
    std::optional<QStringList> capabilities_;
    std::unique_ptr<QObject> question_;
    QList<Pending> waiting_;
    QSet<uint> shown_; ///< the notifications that the server has not closed yet
};

} // namespace kelvo
