#include "platform/linux/TrayStatusItem.h"

#include <QDBusVariant>
#include <QMenu>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;

/// How long the start may wait for the tray's first answer. One that is there answers within a millisecond or two.
constexpr auto firstAnswerAtMost = 200ms;

/// Asks for what Qt looks at too: it takes a watcher without a host for no tray at all.
QDBusMessage hostQuestion(const QString &watcher)
{
    auto question = QDBusMessage::createMethodCall(watcher, watcherPath, u"org.freedesktop.DBus.Properties"_s,
                                                   u"Get"_s);
    question.setAutoStartService(false);
    question << watcherName << u"IsStatusNotifierHostRegistered"_s;
    return question;
}

bool saysRegistered(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ReplyMessage
        && answer.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

/// A panel that offers both kinds of tray does not start them in one moment.
constexpr auto busTrayGrace = 3s;

} // namespace

TrayStatusItem::TrayStatusItem(std::shared_ptr<BusConnection> sessionBus)
    : bus_(std::move(sessionBus))
    , watcher_(bus_, watcherName)
{
    watcher_.listen(watcherPath, watcherName, u"StatusNotifierHostRegistered"_s, this, SLOT(awaitHost()));
    connect(&watcher_, &BusNameOwner::changed, this, &TrayStatusItem::awaitHost);
    connect(&xembed_, &XEmbedTray::appeared, this, &TrayStatusItem::awaitHost);
    // An item on the bus ends with the bus.
    connect(bus_.get(), &BusConnection::disconnected, this, [this] {
        if (isOnBus_) {
            item_.reset();
        }
    });
    busTrayGrace_.setSingleShot(true);
    connect(&busTrayGrace_, &QTimer::timeout, this, &TrayStatusItem::settleForXEmbed);
}

void TrayStatusItem::setIcon(const QIcon &icon)
{
    icon_ = icon;
    if (item_) {
        item_->setIcon(icon);
    }
}

void TrayStatusItem::setToolTip(const QString &text)
{
    toolTip_ = text;
    if (item_) {
        item_->setToolTip(text);
    }
}

void TrayStatusItem::setMenu(QMenu *menu)
{
    menu_ = menu;
    if (item_) {
        item_->setContextMenu(menu);
    }
}

QRect TrayStatusItem::geometry() const
{
    return item_ ? item_->geometry() : QRect();
}

void TrayStatusItem::show()
{
    if (shown_) {
        return;
    }
    shown_ = true;
    if (!bus_->isConnected()) {
        place();
        return;
    }
    // Asked once while waiting, so that a ring whose tray is there does not come behind all else that starts.
    onHostKnown(saysRegistered(
        bus_->connection().call(hostQuestion(watcherName), QDBus::Block, static_cast<int>(firstAnswerAtMost.count()))));
    awaitHost();
}

void TrayStatusItem::awaitHost()
{
    if (!shown_ || item_) {
        return;
    }
    if (!watcher_.isOwned()) {
        if (xembed_.isPresent()) {
            busTrayGrace_.start(busTrayGrace);
        }
        return;
    }
    busTrayGrace_.stop();
    bus_->call(hostQuestion(watcher_.owner()), this,
               [this](const QDBusMessage &answer) { onHostKnown(saysRegistered(answer)); });
}

void TrayStatusItem::onHostKnown(bool registered)
{
    if (registered && !item_) {
        isOnBus_ = true;
        place();
    }
}

void TrayStatusItem::settleForXEmbed()
{
    if (!item_ && xembed_.isPresent()) {
        place();
    }
}

void TrayStatusItem::place()
{
    if (item_) {
        return;
    }
    busTrayGrace_.stop();
    item_ = std::make_unique<QSystemTrayIcon>(icon_);
    item_->setToolTip(toolTip_);
    item_->setContextMenu(menu_);
    connect(item_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            Q_EMIT activated();
        }
    });
    item_->show();
}

} // namespace kelvo
