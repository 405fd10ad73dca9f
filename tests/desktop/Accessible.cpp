#include "Accessible.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

const auto accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const auto actionInterface = u"org.a11y.atspi.Action"_s;
const auto eventInterface = u"org.a11y.atspi.Event.Object"_s;
const auto registry = u"org.a11y.atspi.Registry"_s;
const auto stateChanged = u"StateChanged"_s;

QDBusConnection busOfAccessibility()
{
    const auto name = u"org.a11y.Bus"_s;
    auto bus = QDBusConnection(name);
    if (!bus.isConnected()) {
        const QDBusReply<QString> address = QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(name, u"/org/a11y/bus"_s, name, u"GetAddress"_s));
        bus = QDBusConnection::connectToBus(address.value(), name);
    }
    return bus;
}

/// Waits for the first value of the reply. Returns an invalid value when the call fails.
QVariant answerTo(QDBusPendingCall call)
{
    call.waitForFinished();
    return call.reply().type() == QDBusMessage::ReplyMessage ? call.reply().arguments().value(0) : QVariant();
}

QVariant propertyIn(const QDBusPendingCall &call)
{
    return answerTo(call).value<QDBusVariant>().variant();
}

} // namespace

Accessible::Accessible(QDBusConnection bus, QString service, QString path)
    : bus_(std::move(bus))
    , service_(std::move(service))
    , path_(std::move(path))
{
}

std::optional<Accessible> Accessible::program(qint64 processId)
{
    const auto bus = busOfAccessibility();
    const Accessible desktop(bus, registry, u"/org/a11y/atspi/accessible/root"_s);
    for (const auto &program : desktop.children()) {
        if (bus.interface()->servicePid(program.service_) == processId) {
            return program;
        }
    }
    return std::nullopt;
}

uint Accessible::role() const
{
    return answerTo(ask(accessibleInterface, u"GetRole"_s)).toUInt();
}

QString Accessible::name() const
{
    return propertyIn(askProperty(accessibleInterface, u"Name"_s)).toString();
}

QString Accessible::description() const
{
    return propertyIn(askProperty(accessibleInterface, u"Description"_s)).toString();
}

bool Accessible::isChecked() const
{
    return hasState(ask(accessibleInterface, u"GetState"_s), checked);
}

QRect Accessible::geometry() const
{
    const uint onScreen = 0;
    const auto extents =
        answerTo(ask(u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {onScreen})).value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    return {x, y, width, height};
}

QStringList Accessible::actions() const
{
    QStringList names;
    const auto actions = answerTo(ask(actionInterface, u"GetActions"_s)).value<QDBusArgument>();
    actions.beginArray();
    while (!actions.atEnd()) {
        QString name;
        QString description;
        QString key;
        actions.beginStructure();
        actions >> name >> description >> key;
        actions.endStructure();
        names.append(name);
    }
    return names;
}

void Accessible::act(const QString &action) const
{
    ask(actionInterface, u"DoAction"_s, {static_cast<int>(actions().indexOf(action))}).waitForFinished();
}

QList<Accessible> Accessible::children() const
{
    return childrenIn(ask(accessibleInterface, u"GetChildren"_s));
}

// A program that is drawing answers once per frame, so all calls of a level are sent together.
std::optional<Accessible> Accessible::find(Role role, const QString &name) const
{
    QList<Accessible> level{*this};
    while (!level.isEmpty()) {
        QList<QDBusPendingCall> lists;
        for (const auto &parent : level) {
            lists.append(parent.ask(accessibleInterface, u"GetChildren"_s));
        }
        QList<Accessible> next;
        for (qsizetype i = 0; i < level.size(); ++i) {
            next += level[i].childrenIn(lists[i]);
        }
        level = next;

        QList<QDBusPendingCall> roles;
        QList<QDBusPendingCall> names;
        QList<QDBusPendingCall> states;
        for (const auto &each : level) {
            roles.append(each.ask(accessibleInterface, u"GetRole"_s));
            names.append(each.askProperty(accessibleInterface, u"Name"_s));
            states.append(each.ask(accessibleInterface, u"GetState"_s));
        }
        for (qsizetype i = 0; i < level.size(); ++i) {
            if (answerTo(roles[i]).toUInt() == role && propertyIn(names[i]).toString().startsWith(name)
                && hasState(states[i], showing)) {
                return level[i];
            }
        }
    }
    return std::nullopt;
}

QList<Accessible> Accessible::childrenIn(QDBusPendingCall call) const
{
    QList<Accessible> children;
    const auto references = answerTo(call).value<QDBusArgument>();
    // An object that no longer exists has answered with an error.
    if (references.currentType() != QDBusArgument::ArrayType) {
        return children;
    }
    references.beginArray();
    while (!references.atEnd()) {
        QString service;
        QDBusObjectPath path;
        references.beginStructure();
        references >> service >> path;
        references.endStructure();
        children.append(Accessible(bus_, service, path.path()));
    }
    return children;
}

bool Accessible::hasState(QDBusPendingCall call, State state)
{
    const auto words = answerTo(call).value<QDBusArgument>();
    QList<uint> bits;
    if (words.currentType() == QDBusArgument::ArrayType) {
        words >> bits;
    }
    return bits.value(0) & (1u << state);
}

QDBusPendingCall Accessible::ask(const QString &interface, const QString &method, const QVariantList &arguments) const
{
    auto message = QDBusMessage::createMethodCall(service_, path_, interface, method);
    message.setArguments(arguments);
    return bus_.asyncCall(message);
}

QDBusPendingCall Accessible::askProperty(const QString &interface, const QString &name) const
{
    return ask(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
}

AccessibilityEvents::AccessibilityEvents()
    : bus_(busOfAccessibility())
{
    if (!bus_.connect({}, {}, eventInterface, stateChanged, this, SLOT(hear(QDBusMessage)))) {
        qFatal("The events of accessibility cannot be received");
    }
    // Programs send the events that somebody has asked for.
    ask(u"RegisterEvent"_s);
}

AccessibilityEvents::~AccessibilityEvents()
{
    ask(u"DeregisterEvent"_s);
    bus_.disconnect({}, {}, eventInterface, stateChanged, this, SLOT(hear(QDBusMessage)));
}

void AccessibilityEvents::ask(const QString &method)
{
    auto message = QDBusMessage::createMethodCall(registry, u"/org/a11y/atspi/registry"_s, registry, method);
    message.setArguments({u"object:state-changed"_s});
    bus_.call(message);
}

void AccessibilityEvents::hear(const QDBusMessage &message)
{
    const auto state = message.arguments().value(0).toString();
    const bool isSet = message.arguments().value(1).toInt() == 1;
    const Accessible object(bus_, message.service(), message.path());
    if (state == u"checked") {
        heard_.append(object.name() + (isSet ? u": on"_s : u": off"_s));
    } else if (state == u"showing" && isSet && object.role() == Accessible::Notification) {
        heard_.append(object.name());
    }
}

} // namespace kelvo
