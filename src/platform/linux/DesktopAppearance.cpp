#include "platform/linux/DesktopAppearance.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

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
const auto plasma = u"org.kde.kdeglobals.KDE"_s;

const auto xfconfName = u"org.xfce.Xfconf"_s;
const auto xfconfPath = u"/org/xfce/Xfconf"_s;
const auto panelChannel = u"xfce4-panel"_s;
const auto panelDarkMode = u"/panels/dark-mode"_s;
const auto themeChannel = u"xsettings"_s;
const auto themeName = u"/Net/ThemeName"_s;

// The names in XSettings.
const auto sharedTheme = "Net/ThemeName"_ba;
const auto sharedAnimations = "Gtk/EnableAnimations"_ba;

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
const auto plasmaAnimations = key(plasma, u"AnimationDurationFactor"_s);
const auto xfcePanelDark = key(panelChannel, panelDarkMode);
const auto xfceTheme = key(themeChannel, themeName);

/// What the portal is asked for.
const QStringList portalSettings{colorScheme, contrast,           reducedMotion,   animations,
                                 gtkTheme,    highContrastSwitch, plasmaAnimations};
const QStringList xfconfSettings{xfcePanelDark, xfceTheme};

struct DesktopPanel
{
    QLatin1StringView desktop; ///< a name in XDG_CURRENT_DESKTOP
    PanelRule rule;
};

// What the panels of the desktops look like by default. Settings that tell more, such as the theme of Plasma and the dark
// mode of Xfce, go before this table.
// clang-format off
constexpr DesktopPanel desktopPanels[] = {
    {"GNOME-Classic"_L1, PanelRule::light},
    {"GNOME"_L1,         PanelRule::dark},
    {"Unity"_L1,         PanelRule::dark},
    {"Budgie"_L1,        PanelRule::dark},
    {"Pantheon"_L1,      PanelRule::dark},
    {"X-Cinnamon"_L1,    PanelRule::dark},
    {"Cinnamon"_L1,      PanelRule::dark},
    {"KDE"_L1,           PanelRule::asWindows},
    {"XFCE"_L1,          PanelRule::asWindows},
    {"LXQt"_L1,          PanelRule::asWindows},
    {"MATE"_L1,          PanelRule::asWindows},
    // waybar and the bars that come with these compositors are dark.
    {"sway"_L1,          PanelRule::dark},
    {"Hyprland"_L1,      PanelRule::dark},
    {"river"_L1,         PanelRule::dark},
    {"niri"_L1,          PanelRule::dark},
    {"wlroots"_L1,       PanelRule::dark},
};
// clang-format on

/// The rule of the first desktop that the table names.
PanelRule panelRule(const QStringList &desktops)
{
    for (const auto &desktop : desktops) {
        for (const auto &row : desktopPanels) {
            if (desktop.compare(row.desktop, Qt::CaseInsensitive) == 0) {
                return row.rule;
            }
        }
    }
    return PanelRule::asWindows;
}

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

/// Whether the value is the number 0, which some portals send as a text.
bool isZero(const QVariant &value)
{
    bool isNumber = false;
    return value.toDouble(&isNumber) == 0 && isNumber;
}

bool isDarkTheme(const QString &name)
{
    const auto contains = [&name](QLatin1StringView word) { return name.contains(word, Qt::CaseInsensitive); };
    return contains("dark"_L1) || contains("black"_L1) || contains("inverse"_L1);
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
    , panelRule_(panelRule(desktops))
    , portal_(bus_, portalName, BusNameOwner::Start::onDemand)
    , xfcePanel_(bus_, u"org.xfce.Panel"_s)
{
    portal_.listen(portalPath, portalInterface, u"SettingChanged"_s, this, SLOT(onPortalChanged(QDBusMessage)));
    connect(&portal_, &BusNameOwner::changed, this, &DesktopAppearance::askPortal);
    connect(&xfcePanel_, &BusNameOwner::changed, this, &DesktopAppearance::followXfce);
    connect(&xSettings_, &XSettings::changed, this, &DesktopAppearance::update);
    if (desktops.contains("XFCE"_L1, Qt::CaseInsensitive)) {
        followXfce();
    }
    if (desktops.contains("KDE"_L1, Qt::CaseInsensitive)) {
        plasmaTheme_ = std::make_unique<PlasmaTheme>();
        connect(plasmaTheme_.get(), &PlasmaTheme::changed, this, &DesktopAppearance::update);
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
    // Read each setting: ReadAll of xdg-desktop-portal 1.16 returns a group twice when two back ends have it.
    for (const auto &setting : portalSettings) {
        const auto group = setting.section(u' ', 0, 0);
        const auto name = setting.section(u' ', 1);
        auto question = QDBusMessage::createMethodCall(portalName, portalPath, portalInterface, u"Read"_s);
        question << group << name;
        bus_->call(question, this, [this, group, name](const QDBusMessage &answer) {
            if (answer.type() == QDBusMessage::ReplyMessage) {
                learn(group, name, answer.arguments().value(0));
            }
        });
    }
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
    const auto setting = key(group, name);
    if (portalSettings.contains(setting) || xfconfSettings.contains(setting)) {
        settings_.insert(setting, unwrapped(value));
        update();
    }
}

DesktopAppearance::Answers DesktopAppearance::answers() const
{
    const bool isDark = windowsAreDark();
    return {
        .isDark = isDark,
        .panelIsDark = panelIsDarkBeside(isDark),
        .highContrast = contrastIsHigh(),
        .reduceMotion = settings_.value(reducedMotion).toUInt() == 1 || !settings_.value(animations, true).toBool()
            || isZero(settings_.value(plasmaAnimations)) || isZero(xSettings_.value(sharedAnimations)),
    };
}

bool DesktopAppearance::panelIsDarkBeside(bool darkWindows) const
{
    if (plasmaTheme_ && plasmaTheme_->isDark()) {
        return *plasmaTheme_->isDark();
    }
    // Xfce's panel uses the dark variant of the theme when its "dark mode" option is on (the default for a new account),
    // and the theme of the windows otherwise.
    if (isTrue(settings_.value(xfcePanelDark))) {
        return true;
    }
    return panelRule_ == PanelRule::asWindows ? darkWindows : panelRule_ == PanelRule::dark;
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

/// The name of the theme of the windows; empty if the desktop does not say. The portal knows GNOME's setting only, which has
/// a value on other desktops, too.
QString DesktopAppearance::theme() const
{
    for (const auto &name : {settings_.value(xfceTheme), xSettings_.value(sharedTheme), settings_.value(gtkTheme)}) {
        if (const auto text = name.toString(); !text.isEmpty()) {
            return text;
        }
    }
    return {};
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
