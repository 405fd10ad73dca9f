#pragma once

#include "http/HttpSession.h"
#include "platform/NotificationCenter.h"
#include "settings/SettingsStore.h"

#include <QFuture>
#include <QObject>

#include <optional>

namespace kelvo {

/// Sends alerts to this computer and to the remote channel that the user armed.
class NotifierStore : public QObject
{
    Q_OBJECT

public:
    /// The limits of every post to a remote channel.
    static const HttpLimits limits;

    /// Reads the permission once. `session` sends the posts to remote channels.
    NotifierStore(SettingsStore &settings, NotificationCenter &center, HttpSession &session);
    /// The notifier of this process. Requires a living Composition.
    static NotifierStore &shared();

    /// The permission to post notifications, as last read from the system.
    AuthorizationStatus authorizationStatus() const { return authorizationStatus_; }
    /// The result of the last test message, as a text for the user; nullopt before the first test.
    std::optional<QString> lastTestResult() const { return lastTestResult_; }

    /// Starts to read the permission again and returns at once.
    void refreshAuthorization();
    /// Reads whether the system hides the notifications; see NotificationCenter::turnedOffIn. Never fails.
    QFuture<QString> notificationsTurnedOffIn();
    /// Asks the user for the permission, if the system has such a dialog, and then reads it again. The future finishes
    /// when the user has answered.
    QFuture<void> requestAuthorization();
    /// Sends one alert and returns at once. A failed delivery is not reported or repeated. The post goes to the channel
    /// that is armed now; it starts on the next turn of the event loop and reads that channel's settings then.
    void send(const QString &title, const QString &body);
    /// Sends the test message to a remote channel, armed or not. Sets `lastTestResult` when the post has ended.
    QFuture<void> sendTest(RemoteChannel channel);

    /// Posts to a Slack incoming webhook (https://api.slack.com/messaging/webhooks). Gives true when the server answers
    /// with a 2xx status and false on any failure. Sends no request when `webhook` is not a web address.
    QFuture<bool> postSlack(const QString &text, const QString &webhook);
    /// Posts as a Telegram bot (https://core.telegram.org/bots/api#sendmessage). Gives the same results as `postSlack`.
    /// Sends no request when `token` or `chatID` is empty.
    QFuture<bool> postTelegram(const QString &text, const QString &token, const QString &chatID);

Q_SIGNALS:
    void objectWillChange();
    void authorizationStatusChanged();
    void lastTestResultChanged();

private:
    /// Posts `text` to `channel`. Gives false at once for channels that deliver nothing.
    QFuture<bool> post(const QString &text, RemoteChannel channel);
    QFuture<bool> postJson(const QString &address, const QJsonObject &message);
    void setLastTestResult(const QString &result);

    SettingsStore &settings_;
    NotificationCenter &center_;
    HttpSession &session_;
    AuthorizationStatus authorizationStatus_ = AuthorizationStatus::notDetermined;
    std::optional<QString> lastTestResult_;
};

} // namespace kelvo
