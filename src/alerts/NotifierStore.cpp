#include "alerts/NotifierStore.h"

#include "ReadyFuture.h"
#include "WhileAlive.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

namespace kelvo {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const HttpLimits NotifierStore::limits{.idleTimeout = 60s};

NotifierStore::NotifierStore(SettingsStore &settings, NotificationCenter &center, HttpSession &session)
    : settings_(settings)
    , center_(center)
    , session_(session)
{
    refreshAuthorization();
}

void NotifierStore::refreshAuthorization()
{
    if (!center_.canServeThisProcess()) {
        return;
    }
    center_.authorizationStatus().then(whileAlive(this, [this](AuthorizationStatus status) {
        Q_EMIT objectWillChange();
        authorizationStatus_ = status;
        Q_EMIT authorizationStatusChanged();
    }));
}

QFuture<QString> NotifierStore::notificationsTurnedOffIn()
{
    return center_.canServeThisProcess() ? center_.turnedOffIn() : readyFuture(QString());
}

QFuture<void> NotifierStore::requestAuthorization()
{
    if (!center_.canServeThisProcess()) {
        return readyFuture();
    }
    return center_.requestAuthorization().then(whileAlive(this, [this] { refreshAuthorization(); }));
}

// The stored permission is not consulted: it may be out of date, and the system drops what it does not permit.
void NotifierStore::send(const QString &title, const QString &body)
{
    if (center_.canServeThisProcess()) {
        center_.add({QUuid::createUuid().toString(QUuid::WithoutBraces), title, body});
    }
    // The post starts on the next turn of the event loop and reads the address or token then, because the caller may
    // change it before it returns.
    QMetaObject::invokeMethod(
        this, [this, text = title + ". "_L1 + body, channel = settings_.armedChannel()] { post(text, channel); },
        Qt::QueuedConnection);
}

QFuture<void> NotifierStore::sendTest(RemoteChannel channel)
{
    const auto told = [this](bool sent) {
        setLastTestResult(sent ? u"Test sent"_s : u"Couldn’t send — check the details"_s);
    };
    return post(u"Kelvo is set up. Claude is back. You can continue working."_s, channel).then(whileAlive(this, told));
}

QFuture<bool> NotifierStore::post(const QString &text, RemoteChannel channel)
{
    switch (channel) {
    case RemoteChannel::slack: return postSlack(text, settings_.slackWebhookURL());
    case RemoteChannel::telegram: return postTelegram(text, settings_.telegramBotToken(), settings_.telegramChatID());
    case RemoteChannel::thisMac:
    case RemoteChannel::email:
    case RemoteChannel::whatsapp: break;
    }
    return readyFuture(false);
}

QFuture<bool> NotifierStore::postSlack(const QString &text, const QString &webhook)
{
    return postJson(webhook, {{u"text"_s, text}});
}

QFuture<bool> NotifierStore::postTelegram(const QString &text, const QString &token, const QString &chatID)
{
    if (token.isEmpty() || chatID.isEmpty()) {
        return readyFuture(false);
    }
    return postJson("https://api.telegram.org/bot"_L1 + token + "/sendMessage"_L1,
                    {{u"chat_id"_s, chatID}, {u"text"_s, text}});
}

QFuture<bool> NotifierStore::postJson(const QString &address, const QJsonObject &message)
{
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid()) {
        return readyFuture(false);
    }
    return session_.postJson(url, QJsonDocument(message).toJson(QJsonDocument::Compact))
        .then([](const HttpResponse &response) {
            return response.status && *response.status >= 200 && *response.status <= 299;
        });
}

void NotifierStore::setLastTestResult(const QString &result)
{
    Q_EMIT objectWillChange();
    lastTestResult_ = result;
    Q_EMIT lastTestResultChanged();
}

} // namespace kelvo
