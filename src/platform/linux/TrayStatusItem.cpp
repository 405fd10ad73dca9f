#include "platform/linux/TrayStatusItem.h"

#include <QCursor>
#include <QDBusVariant>
#include <QMenu>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherPath = u"/StatusNotifierWatcher"_s;

/// The maximum time that the start blocks for each of two answers. A running tray answers within two milliseconds.
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

} // namespace

TrayStatusItem::TrayStatusItem(std::shared_ptr<BusConnection> sessionBus, std::chrono::milliseconds busTrayGrace)
    : bus_(std::move(sessionBus))
    , watcher_(bus_, watcherName)
{
    watcher_.listen(watcherPath, watcherName, u"StatusNotifierHostRegistered"_s, this, SLOT(askForHost()));
    watcher_.listen(watcherPath, watcherName, u"StatusNotifierHostUnregistered"_s, this, SLOT(askForHost()));
    connect(&watcher_, &BusNameOwner::changed, this, [this] {
        // A watcher that has restarted does not know the item, even if its process is the same.
        if (!watcher_.isOwned() || watcher_.owner() != hostOf_) {
            registeredWith_.clear();
            setHost({});
        }
        askForHost();
    });
    connect(&xembed_, &XEmbedTray::appeared, this, &TrayStatusItem::choosePlace);
    // The item on the bus is lost with the bus. The watcher is lost before, because it was connected before.
    connect(bus_.get(), &BusConnection::disconnected, this, [this] { busItem_.reset(); });
    busTrayGrace_.setSingleShot(true);
    busTrayGrace_.setInterval(busTrayGrace);
    connect(&busTrayGrace_, &QTimer::timeout, this, [this] {
        if (hostOf_.isEmpty()) {
            embed();
        }
    });
}

void TrayStatusItem::setImage(const StatusItemImage &image, bool barIsDark)
{
    icon_ = barIsDark ? image.onDarkBar : image.onLightBar;
    if (busItem_) {
        busItem_->setIcon(icon_);
    }
    if (embedded_) {
        embedded_->setIcon(icon_);
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
    // Ask once synchronously, so that the ring appears before the rest of the start if the tray is running.
    const auto ask = [this](const QDBusMessage &question) {
        return bus_->connection().call(question, QDBus::Block, static_cast<int>(firstAnswerAtMost.count()));
    };
    if (bus_->isConnected()) {
        const auto watcher = ask(ownerQuestion(watcherName)).arguments().value(0).toString();
        // The text of an error is no bus name.
        if (watcher.startsWith(u':') && saysRegistered(ask(hostQuestion(watcher)))) {
            setHost(watcher);
        }
    }
    choosePlace();
    askForHost();
}

/// Asks the watcher on the bus whether a host shows its items.
void TrayStatusItem::askForHost()
{
    if (!watcher_.isOwned()) {
        return;
    }
    const auto watcher = watcher_.owner();
    bus_->call(hostQuestion(watcher), this, [this, watcher](const QDBusMessage &answer) {
        if (watcher == watcher_.owner()) {
            setHost(saysRegistered(answer) ? watcher : QString());
        }
    });
}

void TrayStatusItem::setHost(const QString &watcher)
{
    hostOf_ = watcher;
    choosePlace();
}

/// Moves the item to where it is visible: to the tray on the bus if there is one, else to the XEmbed tray.
void TrayStatusItem::choosePlace()
{
    if (!shown_) {
        return;
    }
    if (!hostOf_.isEmpty()) {
        embedded_.reset();
        placeOnBus(hostOf_);
    } else if (embedded_ || !bus_->isConnected()) {
        embed();
    } else if (xembed_.window() != 0 && !busTrayGrace_.isActive()) {
        busTrayGrace_.start();
    }
}

/// Registers the item once with each tray. A tray that has restarted has a new unique name.
void TrayStatusItem::placeOnBus(const QString &watcher)
{
    if (!busItem_) {
        busItem_ = std::make_unique<StatusNotifierItem>(bus_->connection());
        busItem_->setIcon(icon_);
        busItem_->setToolTip(toolTip_);
        busItem_->setMenu(menu_);
        connect(busItem_.get(), &StatusNotifierItem::activated, this,
                [this](QPoint point) { Q_EMIT activated(point); });
        connect(busItem_.get(), &StatusNotifierItem::menuRequested, this, &TrayStatusItem::openMenu);
    }
    if (registeredWith_ != watcher) {
        registeredWith_ = watcher;
        busItem_->registerWith(watcher);
    }
}

/// Shows the item in the XEmbed tray, if there is one.
void TrayStatusItem::embed()
{
    const auto tray = xembed_.window();
    if (tray == 0) {
        return;
    }
    if (!embedded_) {
        embedded_ = std::make_unique<XEmbedItem>();
        embedded_->setIcon(icon_);
        embedded_->setToolTip(toolTip_);
        connect(embedded_.get(), &XEmbedItem::activated, this, [this] { Q_EMIT activated(std::nullopt); });
        connect(embedded_.get(), &XEmbedItem::menuRequested, this, [this] { openMenu(QCursor::pos()); });
    }
    embedded_->dock(tray);
}

void TrayStatusItem::openMenu(QPoint point)
{
    if (menu_) {
        menu_->popup(point);
    }
}

} // namespace kelvo
