#include "platform/linux/StatusNotifierItem.h"

#include "platform/linux/ActivationToken.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QStyleHints>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto itemPath = u"/StatusNotifierItem"_s;
const auto menuObjectPath = u"/MenuBar"_s;

/// The usual icon sizes of panels, with one and two pixels per point. A tray chooses the nearest one.
constexpr int iconSizes[] = {16, 22, 24, 32, 44, 48, 64};

IconPixmap iconPixmap(const QIcon &icon, int size)
{
    const auto image = icon.pixmap(QSize(size, size), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    IconPixmap pixmap{image.width(), image.height(), QByteArray(image.sizeInBytes(), Qt::Uninitialized)};
    // The rows of an image with 32 bits per pixel are contiguous.
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / 4, pixmap.argb.data());
    return pixmap;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const IconPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, IconPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &connection)
    : connection_(connection)
    , clicks_(std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval()))
{
    qDBusRegisterMetaType<IconPixmap>();
    qDBusRegisterMetaType<QList<IconPixmap>>();
    qDBusRegisterMetaType<ItemToolTip>();
    connection_.registerObject(itemPath, this, QDBusConnection::ExportScriptableContents);
    connection_.registerObject(menuObjectPath, &menu_, QDBusConnection::ExportScriptableContents);
}

StatusNotifierItem::~StatusNotifierItem()
{
    connection_.unregisterObject(menuObjectPath);
    connection_.unregisterObject(itemPath);
}

void StatusNotifierItem::setIcon(const QIcon &icon)
{
    icon_ = icon;
    Q_EMIT NewIcon();
}

void StatusNotifierItem::setToolTip(const QString &text)
{
    toolTip_ = text;
    Q_EMIT NewTitle();
    Q_EMIT NewToolTip();
}

void StatusNotifierItem::setMenu(QMenu *menu)
{
    menu_.setMenu(menu);
}

void StatusNotifierItem::registerWith(const QString &watcher) const
{
    const auto name = u"org.kde.StatusNotifierWatcher"_s;
    auto request = QDBusMessage::createMethodCall(watcher, u"/StatusNotifierWatcher"_s, name,
                                                  u"RegisterStatusNotifierItem"_s);
    request << connection_.baseService();
    connection_.send(request);
}

QString StatusNotifierItem::category() const
{
    return u"ApplicationStatus"_s;
}

/// A tray uses the id to remember the position of the item between sessions.
QString StatusNotifierItem::id() const
{
    return QGuiApplication::applicationName();
}

/// Trays show the title when there is no tool tip, so without a tool tip there is none.
QString StatusNotifierItem::title() const
{
    return toolTip_.isEmpty() ? QString() : id();
}

QString StatusNotifierItem::status() const
{
    return u"Active"_s;
}

QList<IconPixmap> StatusNotifierItem::pixmaps() const
{
    QList<IconPixmap> pixmaps;
    if (!icon_.isNull()) {
        for (const int size : iconSizes) {
            pixmaps.append(iconPixmap(icon_, size));
        }
    }
    return pixmaps;
}

QDBusObjectPath StatusNotifierItem::menuPath() const
{
    return QDBusObjectPath(menuObjectPath);
}

void StatusNotifierItem::Activate(int x, int y)
{
    click(QPoint(x, y));
}

void StatusNotifierItem::SecondaryActivate(int x, int y)
{
    click(QPoint(x, y));
}

void StatusNotifierItem::ContextMenu(int x, int y)
{
    Q_EMIT menuRequested(QPoint(x, y));
}

void StatusNotifierItem::Scroll(int, const QString &)
{
    // The wheel has no function.
}

void StatusNotifierItem::ProvideXdgActivationToken(const QString &token)
{
    ActivationToken::keep(token);
}

void StatusNotifierItem::click(QPoint point)
{
    if (clicks_.accepts(std::chrono::steady_clock::now())) {
        Q_EMIT activated(point);
    }
}

} // namespace kelvo
