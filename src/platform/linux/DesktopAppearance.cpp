#include "platform/linux/DesktopAppearance.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto portalName = u"org.freedesktop.portal.Desktop"_s;
const auto portalPath = u"/org/freedesktop/portal/desktop"_s;
const auto portalInterface = u"org.freedesktop.portal.Settings"_s;
const auto appearance = u"org.freedesktop.appearance"_s;
const auto gnome = u"org.gnome.desktop.interface"_s;
const auto gnomeAccessibility = u"org.gnome.desktop.a11y.interface"_s;

const auto xfconfName = u"org.xfce.Xfconf"_s;
const auto xfconfPath = u"/org/xfce/Xfconf"_s;
const auto panelChannel = u"xfce4-panel"_s;
const auto panelDarkMode = u"/panels/dark-mode"_s;
const auto themeChannel = u"xsettings"_s;
const auto themeName = u"/Net/ThemeName"_s;

/// The values of org.freedesktop.appearance color-scheme; 0 means no preference.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
/// The value of org.freedesktop.appearance contrast; 0 means no preference.
constexpr uint preferHigherContrast = 1;

QString key(const QString &group, const QString &name)
{
    return group + u' ' + name;
}

const auto colorScheme = key(appearance, u"color-scheme"_s);
const auto contrast = key(appearance, u"contrast"_s);
const auto reducedMotion = key(appearance, u"reduced-motion"_s);
const auto animations = key(gnome, u"enable-animations"_s);
const auto gtkTheme = key(gnome, u"gtk-theme"_s);
const auto highContrastSwitch = key(gnomeAccessibility, u"high-contrast"_s);
const auto xfcePanelDark = key(panelChannel, panelDarkMode);
const auto xfceTheme = key(themeChannel, themeName);

/// Removes nested variants: portals wrap a value in one or two of them.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// Whether the value is the Boolean `true`; QVariant would take most texts for it too.
bool isTrue(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool();
}

bool isDarkTheme(const QString &name)
{
    return name.contains("dark"_L1, Qt::CaseInsensitive) || name.contains("inverse"_L1, Qt::CaseInsensitive);
}

/// HighContrast and HighContrastInverse are GNOME's and Xfce's themes, ContrastHigh and ContrastHighInverse are MATE's.
bool isHighContrastTheme(const QString &name)
{
    return name.contains("HighContrast"_L1, Qt::CaseInsensitive)
        || name.contains("ContrastHigh"_L1, Qt::CaseInsensitive);
}

bool paletteIsDark()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

} // namespace

DesktopAppearance::DesktopAppearance(std::shared_ptr<BusConnection> sessionBus, const QStringList &desktops)
    : bus_(std::move(sessionBus))
    , isGnome_(desktops.contains("GNOME"_L1, Qt::CaseInsensitive))
    , portal_(bus_, portalName, BusNameOwner::Start::onDemand)
    , xfcePanel_(bus_, u"org.xfce.Panel"_s)
{
    portal_.listen(portalPath, portalInterface, u"SettingChanged"_s, this, SLOT(onPortalChanged(QDBusMessage)));
    connect(&portal_, &BusNameOwner::changed, this, &DesktopAppearance::askPortal);
    connect(&xfcePanel_, &BusNameOwner::changed, this, &DesktopAppearance::followXfce);
    if (desktops.contains("XFCE"_L1, Qt::CaseInsensitive)) {
        followXfce();
    }
    qGuiApp->installEventFilter(this);
    answers_ = answers();
}

bool DesktopAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qGuiApp) {
        update();
    }
    return Appearance::eventFilter(watched, event);
}

void DesktopAppearance::askPortal()
{
    if (!portal_.isOwned()) {
        return;
    }
    auto question = QDBusMessage::createMethodCall(portalName, portalPath, portalInterface, u"ReadAll"_s);
    question << QStringList{appearance, gnome, gnomeAccessibility};
    bus_->call(question, this, [this](const QDBusMessage &answer) {
        if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "a{sa{sv}}"_L1) {
            return;
        }
        const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(answer.arguments().constFirst());
        for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
            for (auto setting = group->cbegin(); setting != group->cend(); ++setting) {
                learn(group.key(), setting.key(), *setting);
            }
        }
    });
}

void DesktopAppearance::onPortalChanged(const QDBusMessage &signal)
{
    const auto arguments = signal.arguments();
    if (arguments.size() == 3) {
        learn(arguments[0].toString(), arguments[1].toString(), arguments[2]);
    }
}

void DesktopAppearance::followXfce()
{
    // Called at the first sign of Xfce. Its panel may start after this program and may restart.
    if (xfconf_) {
        return;
    }
    xfconf_ = std::make_unique<BusNameOwner>(bus_, xfconfName, BusNameOwner::Start::onDemand);
    xfconf_->listen(xfconfPath, xfconfName, u"PropertyChanged"_s, this, SLOT(onXfconfChanged(QDBusMessage)));
    xfconf_->listen(xfconfPath, xfconfName, u"PropertyRemoved"_s, this, SLOT(onXfconfChanged(QDBusMessage)));
    connect(xfconf_.get(), &BusNameOwner::changed, this, &DesktopAppearance::askXfconf);
}

void DesktopAppearance::askXfconf()
{
    if (!xfconf_->isOwned()) {
        return;
    }
    for (const auto &[channel, property] :
         {std::pair(panelChannel, panelDarkMode), std::pair(themeChannel, themeName)}) {
        auto question = QDBusMessage::createMethodCall(xfconfName, xfconfPath, xfconfName, u"GetProperty"_s);
        question << channel << property;
        bus_->call(question, this, [this, channel, property](const QDBusMessage &answer) {
            if (answer.type() == QDBusMessage::ReplyMessage) {
                learn(channel, property, answer.arguments().value(0));
            }
        });
    }
}

void DesktopAppearance::onXfconfChanged(const QDBusMessage &signal)
{
    // PropertyRemoved has no value argument; the setting becomes invalid.
    const auto arguments = signal.arguments();
    if (arguments.size() >= 2) {
        learn(arguments[0].toString(), arguments[1].toString(), arguments.value(2));
    }
}

void DesktopAppearance::learn(const QString &group, const QString &name, const QVariant &value)
{
    static const QSet<QString> wanted{colorScheme, contrast,           reducedMotion, animations,
                                      gtkTheme,    highContrastSwitch, xfceTheme,     xfcePanelDark};
    const auto setting = key(group, name);
    if (wanted.contains(setting)) {
        settings_.insert(setting, unwrapped(value));
        update();
    }
}

DesktopAppearance::Answers DesktopAppearance::answers() const
{
    const bool isDark = windowsAreDark();
    return {
        .isDark = isDark,
        // GNOME's top bar is always dark. Xfce's panel uses the dark variant of the theme when its "dark mode" option
        // is on (the default for a new account), and the theme of the windows otherwise.
        .panelIsDark = isDark || isGnome_ || isTrue(settings_.value(xfcePanelDark)),
        .highContrast = contrastIsHigh(),
        .reduceMotion = settings_.value(reducedMotion).toUInt() == 1 || !settings_.value(animations, true).toBool(),
    };
}

bool DesktopAppearance::windowsAreDark() const
{
    const auto scheme = settings_.value(colorScheme).toUInt();
    if (scheme == preferDark || scheme == preferLight) {
        return scheme == preferDark;
    }
    // Without a color-scheme preference, the name of the theme is the only hint.
    const auto name = theme();
    return name.isEmpty() ? paletteIsDark() : isDarkTheme(name);
}

bool DesktopAppearance::contrastIsHigh() const
{
    return settings_.value(contrast).toUInt() == preferHigherContrast || isTrue(settings_.value(highContrastSwitch))
        || isHighContrastTheme(theme());
}

/// The name of the theme of the windows; empty if the desktop does not say.
QString DesktopAppearance::theme() const
{
    const auto xfce = settings_.value(xfceTheme).toString();
    return xfce.isEmpty() ? settings_.value(gtkTheme).toString() : xfce;
}

void DesktopAppearance::update()
{
    const auto now = answers();
    if (answers_ != now) {
        answers_ = now;
        Q_EMIT changed();
    }
}

} // namespace kelvo
