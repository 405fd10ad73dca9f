#include "platform/linux/DesktopAppearance.h"
#include "support/FakePortal.h"
#include "support/FakeXfconf.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto appearanceGroup = u"org.freedesktop.appearance"_s;
const auto gnomeGroup = u"org.gnome.desktop.interface"_s;
const auto colorScheme = u"color-scheme"_s;
const auto panelChannel = u"xfce4-panel"_s;
const auto panelDarkMode = u"/panels/dark-mode"_s;
const auto themeChannel = u"xsettings"_s;
const auto themeName = u"/Net/ThemeName"_s;

PortalSettings withScheme(uint scheme)
{
    return {{appearanceGroup, {{colorScheme, scheme}}}};
}

QPalette paletteOf(const QColor &window)
{
    auto palette = QGuiApplication::palette();
    palette.setColor(QPalette::Window, window);
    return palette;
}

} // namespace

class DesktopAppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void readsTheColorSchemeOfThePortal_data();
    void readsTheColorSchemeOfThePortal();
    void followsTheColorSchemeLive();
    void followsAPortalThatStartsLater();
    void readsTheSettingsAgainWhenThePortalOrTheBusRestarts();
    void reportsOnlyValuesThatChanged();
    void reducesMotionAsThePortalSays();
    void reducesMotionWhenGnomeTurnsAnimationsOff();
    void raisesTheContrastAsTheDesktopSays_data();
    void raisesTheContrastAsTheDesktopSays();
    void recognizesHighContrastThemes_data();
    void recognizesHighContrastThemes();
    void readsTheThemeWithoutAPreference_data();
    void readsTheThemeWithoutAPreference();
    void followsThePaletteWithoutDesktopSettings();
    void reducesMotionWhenPlasmaTurnsAnimationsOff();
    void knowsTheDefaultPanelsOfTheDesktops_data();
    void knowsTheDefaultPanelsOfTheDesktops();
    void followsTheThemeOfPlasma();
    void readsTheColourOfTheThemeOfPlasma_data();
    void readsTheColourOfTheThemeOfPlasma();
    void otherPanelsFollowTheWindows();
    void followsTheDarkModeOfXfcesPanel();
    void aPanelThatIsNeitherDarkNorLightCountsAsLight_data();
    void aPanelThatIsNeitherDarkNorLightCountsAsLight();
    void detectsXfceByItsPanel();
    void doesNotCallXfconfOnOtherDesktops();
    void readsTheThemeOfXfce();

private:
    std::unique_ptr<DesktopAppearance> appearance(const QStringList &desktops = {}) const
    {
        return std::make_unique<DesktopAppearance>(std::make_shared<BusConnection>(daemon_->address()), desktops);
    }

    std::unique_ptr<PrivateBus> daemon_;
};

void DesktopAppearanceTest::init()
{
    QGuiApplication::setPalette(paletteOf(Qt::white));
    daemon_ = std::make_unique<PrivateBus>();
    daemon_->start();
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void DesktopAppearanceTest::cleanup()
{
    daemon_.reset();
}

void DesktopAppearanceTest::readsTheColorSchemeOfThePortal_data()
{
    QTest::addColumn<uint>("scheme");
    QTest::addColumn<Qt::GlobalColor>("palette");
    QTest::addColumn<bool>("dark");
    QTest::newRow("dark, light palette") << 1U << Qt::white << true;
    QTest::newRow("light, dark palette") << 2U << Qt::black << false;
    QTest::newRow("no preference, light palette") << 0U << Qt::white << false;
    QTest::newRow("no preference, dark palette") << 0U << Qt::black << true;
    QTest::newRow("unheard of, dark palette") << 7U << Qt::black << true;
}

void DesktopAppearanceTest::readsTheColorSchemeOfThePortal()
{
    QFETCH(const uint, scheme);
    QFETCH(const Qt::GlobalColor, palette);
    QFETCH(const bool, dark);
    QGuiApplication::setPalette(paletteOf(palette));
    FakePortal portal(*daemon_, withScheme(scheme));
    const auto appearance = this->appearance();
    QTRY_VERIFY(portal.reads() > 0);
    QTRY_COMPARE(appearance->isDark(), dark);

    // The reaction to a second change shows that the first one was read correctly.
    portal.set(appearanceGroup, colorScheme, dark ? 2U : 1U);
    QTRY_COMPARE(appearance->isDark(), !dark);
}

void DesktopAppearanceTest::followsTheColorSchemeLive()
{
    FakePortal portal(*daemon_, withScheme(1));
    const auto appearance = this->appearance();
    QSignalSpy changed(appearance.get(), &Appearance::changed);
    QTRY_VERIFY(appearance->isDark());
    QCOMPARE(changed.count(), 1);

    portal.set(appearanceGroup, colorScheme, 2U);
    QTRY_VERIFY(!appearance->isDark());
    QCOMPARE(changed.count(), 2);
}

void DesktopAppearanceTest::followsAPortalThatStartsLater()
{
    const auto appearance = this->appearance();
    QVERIFY(!appearance->isDark());
    FakePortal portal(*daemon_, withScheme(1));
    QTRY_VERIFY(appearance->isDark());
}

void DesktopAppearanceTest::readsTheSettingsAgainWhenThePortalOrTheBusRestarts()
{
    auto portal = std::make_unique<FakePortal>(*daemon_, withScheme(1));
    const auto appearance = this->appearance();
    QTRY_VERIFY(appearance->isDark());

    portal.reset();
    portal = std::make_unique<FakePortal>(*daemon_, withScheme(2));
    QTRY_VERIFY(!appearance->isDark());

    daemon_->kill();
    portal.reset();
    daemon_->start();
    portal = std::make_unique<FakePortal>(*daemon_, withScheme(1));
    QTRY_VERIFY(appearance->isDark());
    portal->set(appearanceGroup, colorScheme, 2U);
    QTRY_VERIFY(!appearance->isDark());
}

void DesktopAppearanceTest::reportsOnlyValuesThatChanged()
{
    FakePortal portal(*daemon_, withScheme(1));
    const auto appearance = this->appearance();
    QSignalSpy changed(appearance.get(), &Appearance::changed);
    QTRY_COMPARE(changed.count(), 1);
    portal.set(appearanceGroup, u"accent-color"_s, 1U);
    portal.set(appearanceGroup, colorScheme, 1U);
    portal.set(appearanceGroup, colorScheme, 2U);
    QTRY_VERIFY(!appearance->isDark());
    QCOMPARE(changed.count(), 2);
}

void DesktopAppearanceTest::reducesMotionAsThePortalSays()
{
    FakePortal portal(*daemon_, {{appearanceGroup, {{u"reduced-motion"_s, 1U}}}});
    const auto appearance = this->appearance();
    QVERIFY(!appearance->reduceMotion());
    QTRY_VERIFY(appearance->reduceMotion());
    portal.set(appearanceGroup, u"reduced-motion"_s, 0U);
    QTRY_VERIFY(!appearance->reduceMotion());
}

void DesktopAppearanceTest::reducesMotionWhenGnomeTurnsAnimationsOff()
{
    FakePortal portal(*daemon_, {{gnomeGroup, {{u"enable-animations"_s, false}}}});
    const auto appearance = this->appearance();
    QTRY_VERIFY(appearance->reduceMotion());
    portal.set(gnomeGroup, u"enable-animations"_s, true);
    QTRY_VERIFY(!appearance->reduceMotion());
}

void DesktopAppearanceTest::raisesTheContrastAsTheDesktopSays_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("on");
    QTest::addColumn<QVariant>("off");
    QTest::newRow("portal") << appearanceGroup << u"contrast"_s << QVariant(1U) << QVariant(0U);
    QTest::newRow("GNOME") << u"org.gnome.desktop.a11y.interface"_s << u"high-contrast"_s << QVariant(true)
                           << QVariant(false);
    QTest::newRow("theme") << gnomeGroup << u"gtk-theme"_s << QVariant(u"HighContrast"_s) << QVariant(u"Adwaita"_s);
}

void DesktopAppearanceTest::raisesTheContrastAsTheDesktopSays()
{
    QFETCH(const QString, group);
    QFETCH(const QString, name);
    QFETCH(const QVariant, on);
    QFETCH(const QVariant, off);
    FakePortal portal(*daemon_, {{group, {{name, on}}}});
    const auto appearance = this->appearance();
    const QSignalSpy changed(appearance.get(), &Appearance::changed);
    QVERIFY(!appearance->highContrast());
    QTRY_VERIFY(appearance->highContrast());
    portal.set(group, name, off);
    QTRY_VERIFY(!appearance->highContrast());
    QCOMPARE(changed.count(), 2);
}

void DesktopAppearanceTest::recognizesHighContrastThemes_data()
{
    QTest::addColumn<bool>("high");
    QTest::newRow("HighContrast") << true;
    QTest::newRow("HighContrastInverse") << true;
    QTest::newRow("ContrastHigh") << true;
    QTest::newRow("ContrastHighInverse") << true;
    QTest::newRow("Greybird-dark") << false;
}

void DesktopAppearanceTest::recognizesHighContrastThemes()
{
    QFETCH(const bool, high);
    FakeXfconf xfconf(*daemon_);
    xfconf.set(themeChannel, themeName, !high ? u"HighContrast"_s : u"Greybird"_s);
    const auto appearance = this->appearance({u"XFCE"_s});
    QTRY_COMPARE(appearance->highContrast(), !high);
    xfconf.set(themeChannel, themeName, QString::fromLatin1(QTest::currentDataTag()));
    QTRY_COMPARE(appearance->highContrast(), high);
}

void DesktopAppearanceTest::readsTheThemeWithoutAPreference_data()
{
    QTest::addColumn<QString>("theme");
    QTest::addColumn<bool>("dark");
    QTest::newRow("Adwaita-dark") << u"Adwaita-dark"_s << true;
    QTest::newRow("Yaru-Dark") << u"Yaru-Dark"_s << true;
    QTest::newRow("Adwaita") << u"Adwaita"_s << false;
    QTest::newRow("HighContrast") << u"HighContrast"_s << false;
    QTest::newRow("HighContrastInverse") << u"HighContrastInverse"_s << true;
    QTest::newRow("ContrastHighInverse") << u"ContrastHighInverse"_s << true;
}

void DesktopAppearanceTest::readsTheThemeWithoutAPreference()
{
    QFETCH(const QString, theme);
    QFETCH(const bool, dark);
    QGuiApplication::setPalette(paletteOf(dark ? Qt::white : Qt::black));
    FakePortal portal(*daemon_, {{appearanceGroup, {{colorScheme, 0U}}}, {gnomeGroup, {{u"gtk-theme"_s, theme}}}});
    const auto appearance = this->appearance();
    QCOMPARE(appearance->isDark(), !dark); // from the palette, until the portal has answered
    QTRY_COMPARE(appearance->isDark(), dark);
}

void DesktopAppearanceTest::followsThePaletteWithoutDesktopSettings()
{
    daemon_->kill();
    const auto appearance = this->appearance();
    const QSignalSpy changed(appearance.get(), &Appearance::changed);
    QVERIFY(!appearance->isDark());
    QVERIFY(!appearance->reduceMotion());
    QGuiApplication::setPalette(paletteOf(Qt::black));
    QTRY_VERIFY(appearance->isDark());
    QVERIFY(appearance->panelIsDark());
    QCOMPARE(changed.count(), 1);
    QGuiApplication::setPalette(paletteOf(QColor(128, 128, 128)));
    QTRY_VERIFY(!appearance->isDark());
    QGuiApplication::setPalette(paletteOf(QColor(127, 127, 127)));
    QTRY_VERIFY(appearance->isDark());
}

void DesktopAppearanceTest::knowsTheDefaultPanelsOfTheDesktops_data()
{
    QTest::addColumn<QString>("desktops");
    QTest::addColumn<bool>("darkBesideLightWindows");
    QTest::addColumn<bool>("darkBesideDarkWindows");
    const auto row = [](const char *desktops, bool besideLight, bool besideDark) {
        QTest::newRow(desktops) << QString::fromLatin1(desktops) << besideLight << besideDark;
    };
    row("ubuntu:GNOME", true, true);
    row("GNOME-Classic:GNOME", false, false);
    // A later name does not count, so each desktop whose panel is like the windows is followed by one whose panel is not.
    for (const char *dark : {"GNOME", "Unity", "Budgie", "Pantheon", "X-Cinnamon", "Cinnamon", "sway", "Hyprland",
                             "river", "niri", "wlroots"}) {
        row(dark, true, true);
    }
    for (const char *asWindows : {"KDE:GNOME", "XFCE:GNOME", "LXQt:GNOME", "MATE:GNOME", "unheard of"}) {
        row(asWindows, false, true);
    }
    row("unheard of:sway", true, true);
}

void DesktopAppearanceTest::knowsTheDefaultPanelsOfTheDesktops()
{
    QFETCH(const QString, desktops);
    QFETCH(const bool, darkBesideLightWindows);
    QFETCH(const bool, darkBesideDarkWindows);
    const auto appearance = this->appearance(desktops.split(u':'));
    QVERIFY(!appearance->isDark());
    QCOMPARE(appearance->panelIsDark(), darkBesideLightWindows);
    QGuiApplication::setPalette(paletteOf(Qt::black));
    QTRY_VERIFY(appearance->isDark());
    QCOMPARE(appearance->panelIsDark(), darkBesideDarkWindows);
}

void DesktopAppearanceTest::followsTheThemeOfPlasma()
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(u"config"_s)));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(u"data"_s)));
    const auto write = [&](const QString &path, const QByteArray &text) {
        QVERIFY(QDir().mkpath(QFileInfo(home.filePath(path)).absolutePath()));
        QSaveFile file(home.filePath(path)); // replaces the file, as KDE's programs do
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(text);
        QVERIFY(file.commit());
    };
    write(u"data/plasma/desktoptheme/night/colors"_s, "[Colors:Window]\nBackgroundNormal=49,54,59\n");
    write(u"data/plasma/desktoptheme/day/colors"_s, "[Colors:Window]\nBackgroundNormal=239,240,241\n");
    write(u"config/kdedefaults/plasmarc"_s, "[Theme]\nname=night\n");

    const auto appearance = this->appearance({u"KDE"_s});
    QVERIFY(!appearance->isDark());
    QVERIFY(appearance->panelIsDark());
    // The user's own choice goes before that of the global theme.
    write(u"config/plasmarc"_s, "[Theme]\nname=day\n");
    QTRY_VERIFY(!appearance->panelIsDark());
    write(u"config/plasmarc"_s, "[Theme]\nname=night\n");
    QTRY_VERIFY(appearance->panelIsDark());
    // A theme without colours follows the windows.
    write(u"config/plasmarc"_s, "[Theme]\nname=unheard of\n");
    QTRY_VERIFY(!appearance->panelIsDark());
    QVERIFY(QFile::remove(home.filePath(u"config/plasmarc"_s)));
    QTRY_VERIFY(appearance->panelIsDark());
    write(u"config/kdedefaults/plasmarc"_s, "[Theme]\nname=day\n");
    QTRY_VERIFY(!appearance->panelIsDark());
    // A choice that is final goes before the user's own.
    write(u"config/plasmarc"_s, "[Theme]\nname=day\n");
    write(u"config/kdedefaults/plasmarc"_s, "[Theme]\nname[$i]=night\n");
    QTRY_VERIFY(appearance->panelIsDark());
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DATA_HOME");
}

void DesktopAppearanceTest::readsTheColourOfTheThemeOfPlasma_data()
{
    QTest::addColumn<QByteArray>("colour");
    QTest::addColumn<bool>("windowsAreDark");
    QTest::addColumn<bool>("panelIsDark");
    QTest::newRow("red") << "250,10,10"_ba << true << false;
    QTest::newRow("green") << "10,250,10"_ba << true << false;
    QTest::newRow("blue") << "10,10,250"_ba << true << false;
    QTest::newRow("the darkest light one") << "128,128,128"_ba << true << false;
    QTest::newRow("the lightest dark one") << "127,127,127"_ba << false << true;
    QTest::newRow("incomplete beside light windows") << "10,10"_ba << false << false;
    QTest::newRow("incomplete beside dark windows") << "250,250"_ba << true << true;
}

void DesktopAppearanceTest::readsTheColourOfTheThemeOfPlasma()
{
    QFETCH(const QByteArray, colour);
    QFETCH(const bool, windowsAreDark);
    QFETCH(const bool, panelIsDark);
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    // Without a choice of the user, it is the theme of this name.
    QVERIFY(QDir(home.path()).mkpath(u"plasma/desktoptheme/default"_s));
    QFile colours(home.filePath(u"plasma/desktoptheme/default/colors"_s));
    QVERIFY(colours.open(QFile::WriteOnly));
    colours.write("[Colors:Window]\nBackgroundNormal=" + colour + '\n');
    colours.close();
    QGuiApplication::setPalette(paletteOf(windowsAreDark ? Qt::black : Qt::white));
    const auto appearance = this->appearance({u"KDE"_s});
    QCOMPARE(appearance->isDark(), windowsAreDark);
    QCOMPARE(appearance->panelIsDark(), panelIsDark);
    qunsetenv("XDG_DATA_HOME");
}

void DesktopAppearanceTest::reducesMotionWhenPlasmaTurnsAnimationsOff()
{
    const auto group = u"org.kde.kdeglobals.KDE"_s;
    const auto factor = u"AnimationDurationFactor"_s;
    FakePortal portal(*daemon_, {{group, {{factor, u"0"_s}}}});
    const auto appearance = this->appearance({u"KDE"_s});
    QTRY_VERIFY(appearance->reduceMotion());
    portal.set(group, factor, u"0.5"_s);
    QTRY_VERIFY(!appearance->reduceMotion());
    portal.set(group, factor, u"0"_s);
    QTRY_VERIFY(appearance->reduceMotion());
    portal.set(group, factor, u"fast"_s);
    QTRY_VERIFY(!appearance->reduceMotion());
}

void DesktopAppearanceTest::otherPanelsFollowTheWindows()
{
    FakePortal portal(*daemon_, withScheme(1));
    const auto appearance = this->appearance({u"KDE"_s});
    QVERIFY(!appearance->panelIsDark());
    QTRY_VERIFY(appearance->panelIsDark());
}

void DesktopAppearanceTest::followsTheDarkModeOfXfcesPanel()
{
    FakeXfconf xfconf(*daemon_);
    xfconf.set(panelChannel, panelDarkMode, true);
    const auto appearance = this->appearance({u"XFCE"_s});
    QTRY_VERIFY(appearance->panelIsDark());
    QVERIFY(!appearance->isDark());

    xfconf.set(panelChannel, panelDarkMode, false);
    QTRY_VERIFY(!appearance->panelIsDark());
    xfconf.set(panelChannel, panelDarkMode, true);
    QTRY_VERIFY(appearance->panelIsDark());
    // Without the property the panel follows the theme.
    xfconf.remove(panelChannel, panelDarkMode);
    QTRY_VERIFY(!appearance->panelIsDark());
}

void DesktopAppearanceTest::aPanelThatIsNeitherDarkNorLightCountsAsLight_data()
{
    QTest::addColumn<QVariant>("darkMode");
    QTest::newRow("a text") << QVariant(u"maybe"_s);
    QTest::newRow("a number") << QVariant(7);
}

void DesktopAppearanceTest::aPanelThatIsNeitherDarkNorLightCountsAsLight()
{
    QFETCH(const QVariant, darkMode);
    FakeXfconf xfconf(*daemon_);
    xfconf.set(panelChannel, panelDarkMode, true);
    const auto appearance = this->appearance({u"XFCE"_s});
    QTRY_VERIFY(appearance->panelIsDark());
    xfconf.set(panelChannel, panelDarkMode, darkMode);
    QTRY_VERIFY(!appearance->panelIsDark());
}

void DesktopAppearanceTest::detectsXfceByItsPanel()
{
    FakeXfconf xfconf(*daemon_);
    xfconf.set(panelChannel, panelDarkMode, true);
    const auto appearance = this->appearance();
    QVERIFY(!appearance->panelIsDark());
    const BusService panel(*daemon_, u"org.xfce.Panel"_s, u"/org/xfce/Panel"_s, this,
                           QDBusConnection::ExportScriptableSlots);
    QTRY_VERIFY(appearance->panelIsDark());
}

void DesktopAppearanceTest::doesNotCallXfconfOnOtherDesktops()
{
    FakeXfconf xfconf(*daemon_);
    FakePortal portal(*daemon_, withScheme(1));
    const auto appearance = this->appearance({u"KDE"_s});
    QTRY_VERIFY(appearance->isDark());
    QCOMPARE(xfconf.reads(), 0);
}

void DesktopAppearanceTest::readsTheThemeOfXfce()
{
    FakeXfconf xfconf(*daemon_);
    xfconf.set(themeChannel, themeName, u"Greybird-dark"_s);
    const auto appearance = this->appearance({u"XFCE"_s});
    QTRY_VERIFY(appearance->isDark());
    QVERIFY(appearance->panelIsDark());
    xfconf.set(themeChannel, themeName, u"Greybird"_s);
    QTRY_VERIFY(!appearance->isDark());
}

} // namespace kelvo

QTEST_MAIN(kelvo::DesktopAppearanceTest)
#include "tst_desktopappearance.moc"
