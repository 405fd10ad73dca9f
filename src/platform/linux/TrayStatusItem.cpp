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

/// The maximum time that the start blocks for the answer of the tray. A running tray answers within two milliseconds.
constexpr auto firstAnswerAtMost = 200ms;

/// Asks whether a host shows the items of the watcher. A watcher without a host is not a tray.
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

/// The time to wait for a tray on the bus when an XEmbed tray is present, because a panel with both starts them one after
/// the other.
constexpr auto busTrayGrace = 3s;

} // namespace

TrayStatusItem::TrayStatusItem(std::shared_ptr<BusConnection> sessionBus)
    : bus_(std::move(sessionBus))
    , watcher_(bus_, watcherName)
{
    watcher_.listen(watcherPath, watcherName, u"StatusNotifierHostRegistered"_s, this, SLOT(awaitHost()));
    connect(&watcher_, &BusNameOwner::changed, this, &TrayStatusItem::awaitHost);
    connect(&xembed_, &XEmbedTray::appeared, this, &TrayStatusItem::awaitHost);
    // The item on the bus is lost with the bus.
    connect(bus_.get(), &BusConnection::disconnected, this, [this] {
        busItem_.reset();
        registeredWith_.clear();
    });
    busTrayGrace_.setSingleShot(true);
    connect(&busTrayGrace_, &QTimer::timeout, this, &TrayStatusItem::settleForXEmbed);
}

void TrayStatusItem::setIcon(const QIcon &icon)
{
    icon_ = icon;
    if (busItem_) {
        busItem_->setIcon(icon);
    }
    if (embedded_) {
        embedded_->setIcon(icon);
    }
}

void TrayStatusItem::setToolTip(const QString &text)
{
    toolTip_ = text;
    if (busItem_) {
        busItem_->setToolTip(text);
    }
    if (embedded_) {
        embedded_->setToolTip(text);
    }
}

void TrayStatusItem::setMenu(QMenu *menu)
{
    menu_ = menu;
    if (busItem_) {
        busItem_->setMenu(menu);
    }
    if (embedded_) {
        embedded_->setContextMenu(menu);
    }
}

QRect TrayStatusItem::geometry() const
{
    return embedded_ ? embedded_->geometry() : QRect();
}

void TrayStatusItem::show()
{
    if (shown_) {
        return;
    }
    shown_ = true;
    if (!bus_->isConnected()) {
        embed();
        return;
    }
    // Ask once synchronously, so that the ring appears before the rest of the start if the tray is running.
    onHostKnown(
        bus_->connection().call(hostQuestion(watcherName), QDBus::Block, static_cast<int>(firstAnswerAtMost.count())));
    awaitHost();
}

void TrayStatusItem::awaitHost()
{
    if (!shown_ || embedded_) {
        return;
    }
    if (!watcher_.isOwned()) {
        if (xembed_.isPresent()) {
            busTrayGrace_.start(busTrayGrace);
        }
        return;
    }
    busTrayGrace_.stop();
    bus_->call(hostQuestion(watcher_.owner()), this, [this](const QDBusMessage &answer) { onHostKnown(answer); });
}

void TrayStatusItem::onHostKnown(const QDBusMessage &answer)
{
    if (saysRegistered(answer) && !embedded_) {
        placeOnBus(answer.service());
    }
}

void TrayStatusItem::settleForXEmbed()
{
    if (!busItem_ && xembed_.isPresent()) {
        embed();
    }
}

/// Registers the item once with each tray. A tray that has restarted has a new unique name.
void TrayStatusItem::placeOnBus(const QString &watcher)
{
    busTrayGrace_.stop();
    if (!busItem_) {
        busItem_ = std::make_unique<StatusNotifierItem>(bus_->connection());
        busItem_->setIcon(icon_);
        busItem_->setToolTip(toolTip_);
        busItem_->setMenu(menu_);
        connect(busItem_.get(), &StatusNotifierItem::activated, this,
                [this](QPoint point) { Q_EMIT activated(point); });
    }
    if (registeredWith_ != watcher) {
        registeredWith_ = watcher;
        busItem_->registerWith(watcher);
    }
}

/// Shows the item in an XEmbed tray. QSystemTrayIcon decides at its first use whether the process embeds its items, so it
/// is made only here.
void TrayStatusItem::embed()
{
    if (embedded_) {
        return;
    }
    busTrayGrace_.stop();
    embedded_ = std::make_unique<QSystemTrayIcon>(icon_);
    embedded_->setToolTip(toolTip_);
    embedded_->setContextMenu(menu_);
    connect(embedded_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            Q_EMIT activated(std::nullopt);
        }
    });
    embedded_->show();
}

} // namespace kelvo
