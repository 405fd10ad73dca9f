#pragma once

#include "http/HttpSession.h"
#include "platform/NotificationCenter.h"
#include "settings/SettingsStore.h"

#include <QFuture>
#include <QObject>

#include <optional>

namespace kelvo {

/// The one way out for every alert: to this computer, and to the channel that the user armed.
class NotifierStore : public QObject
{
    Q_OBJECT

public:
    /// The bounds of every post to a remote channel.
    static const HttpLimits limits;

    /// Reads the permission once. `session` carries the posts to remote channels.
    NotifierStore(SettingsStore &settings, NotificationCenter &center, HttpSession &session);
    /// The notifier of this process. Available once the program is composed.
    static NotifierStore &shared();

    /// The system's permission as last read.
    AuthorizationStatus authorizationStatus() const { return authorizationStatus_; }
    /// How the last test went, in words for the user; nothing before the first.
    std::optional<QString> lastTestResult() const { return lastTestResult_; }

    /// Reads the permission again. Returns at once.
    void refreshAuthorization();
    /// Asks the user for the permission, where the system has such a question, and reads it again.
    QFuture<void> requestAuthorization();
    /// Delivers one alert and returns at once. A failed delivery is dropped. The post to the channel that is armed now
    /// begins on the next turn of the event loop, with that channel's details as they are then.
    void send(const QString &title, const QString &body);
    /// Sends the test message over one remote channel, armed or not, and sets `lastTestResult`.
    QFuture<void> sendTest(RemoteChannel channel);

    /// Posts to a Slack incoming webhook (https://api.slack.com/messaging/webhooks). True when it was accepted; false
    /// on any failure, and without a request when `webhook` is no web address.
    QFuture<bool> postSlack(const QString &text, const QString &webhook);
    /// Posts as a Telegram bot (https://core.telegram.org/bots/api#sendmessage). Results as for Slack; no request when
    /// `token` or `chatID` is empty.
    QFuture<bool> postTelegram(const QString &text, const QString &token, const QString &chatID);

Q_SIGNALS:
    void objectWillChange();
    void authorizationStatusChanged();
    void lastTestResultChanged();

private:
    /// What the armed channel, or the tested one, makes of a text. False at once for channels that deliver nothing.
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
