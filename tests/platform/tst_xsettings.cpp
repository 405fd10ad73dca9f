// The settings that a desktop shares on X11, on a display without a window manager.

#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/XSettings.h"
#include "support/FakePortal.h"
#include "support/FakeXSettings.h"
#include "support/RunOnVirtualDisplay.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const auto theme = "Net/ThemeName"_ba;
const auto animations = "Gtk/EnableAnimations"_ba;
const auto gnomeGroup = u"org.gnome.desktop.interface"_s;

/// A setting of each type, with names and texts of all lengths that need other padding.
const FakeXSettings::Settings everyType{
    {"a", 1},          {"ab", u"x"_s}, {"abc", QByteArray("\1\2\3\4\5\6\7\10")},
    {"abcd", u"xy"_s}, {"abcde", -2},  {"f", u"xyz"_s},
    {"g", u"wxyz"_s},  {"h", u""_s},   {"i", u"Größe"_s},
};
const XSettings::Values everyTypeDecoded{
    {"a", 1},        {"ab", u"x"_s},   {"abcd", u"xy"_s}, {"abcde", -2},
    {"f", u"xyz"_s}, {"g", u"wxyz"_s}, {"h", u""_s},      {"i", u"Größe"_s},
};

} // namespace

class XSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodesBothByteOrders()
    {
        QCOMPARE(XSettings::decode(FakeXSettings::encoded(everyType)), everyTypeDecoded);
        QCOMPARE(XSettings::decode(FakeXSettings::encoded(everyType, FakeXSettings::ByteOrder::bigEndian)),
                 everyTypeDecoded);
    }

    void decodesWhatIsThereOfAPropertyThatEndsEarly()
    {
        const auto whole = FakeXSettings::encoded(everyType);
        qsizetype most = 0;
        for (qsizetype size = 0; size <= whole.size(); ++size) {
            // A copy, so that a read behind its end is found.
            const auto values = XSettings::decode(QByteArray(whole.constData(), size));
            for (auto value = values.begin(); value != values.end(); ++value) {
                QCOMPARE(value.value(), everyTypeDecoded.value(value.key()));
            }
            QVERIFY(values.size() >= most);
            most = values.size();
        }
        QCOMPARE(most, everyTypeDecoded.size());
    }

    void endsAtATypeThatDoesNotExist()
    {
        auto property = FakeXSettings::encoded({{"a", 1}, {"b", 2}, {"c", 3}});
        constexpr qsizetype second = 12 + 16;
        QCOMPARE(property[second], '\0');
        property[second] = '\3';
        QCOMPARE(XSettings::decode(property), XSettings::Values({{"a", 1}}));
    }

    void sizesBeyondTheEndGiveNothing()
    {
        auto property = FakeXSettings::encoded({{"a", u"text"_s}});
        constexpr qsizetype textSize = 12 + 4 + 4 + 4;
        QCOMPARE(property[textSize], '\4');
        property.replace(textSize, 4, "\xff\xff\xff\xff");
        QCOMPARE(XSettings::decode(property), XSettings::Values());
        // More settings than there are.
        property = FakeXSettings::encoded({{"a", 1}});
        property.replace(8, 4, "\xff\xff\xff\xff");
        QCOMPARE(XSettings::decode(property), XSettings::Values({{"a", 1}}));
    }

    void readsTheSettingsThatAreThere()
    {
        const FakeXSettings desktop(display(), {{theme, u"Menta"_s}, {animations, 1}});
        const XSettings settings;
        QCOMPARE(settings.value(theme), QVariant(u"Menta"_s));
        QCOMPARE(settings.value(animations), QVariant(1));
        QVERIFY(!settings.value("Net/IconThemeName").isValid());
    }

    void followsChanges()
    {
        const FakeXSettings desktop(display(), {{theme, u"Menta"_s}});
        const XSettings settings;
        const QSignalSpy changed(&settings, &XSettings::changed);
        desktop.set({{theme, u"BlackMATE"_s}});
        QTRY_COMPARE(settings.value(theme), QVariant(u"BlackMATE"_s));
        QCOMPARE(changed.count(), 1);
        desktop.set({{theme, u"BlackMATE"_s}}); // no change
        desktop.setOtherProperty();
        desktop.set({});
        QTRY_VERIFY(!settings.value(theme).isValid());
        QCOMPARE(changed.count(), 2);
    }

    void aPropertyOfAnotherFormGivesNothing()
    {
        const FakeXSettings desktop(display(), {{theme, u"Menta"_s}});
        const XSettings settings;
        desktop.setProperty(FakeXSettings::encoded({{theme, u"Dark"_s}}), 32);
        QTRY_VERIFY(!settings.value(theme).isValid());
    }

    void followsADesktopThatStartsLaterEndsAndRestarts()
    {
        const XSettings settings;
        QVERIFY(!settings.value(theme).isValid());
        for (const auto &name : {u"Menta"_s, u"BlackMATE"_s}) {
            auto desktop = std::make_unique<FakeXSettings>(display(), FakeXSettings::Settings{{theme, name}});
            QTRY_COMPARE(settings.value(theme), QVariant(name));
            desktop.reset();
            QTRY_VERIFY(!settings.value(theme).isValid());
        }
    }

    void followsADesktopThatReplacesAnother()
    {
        const FakeXSettings first(display(), {{theme, u"Menta"_s}});
        const XSettings settings;
        const FakeXSettings second(display(), {{theme, u"BlackMATE"_s}});
        QTRY_COMPARE(settings.value(theme), QVariant(u"BlackMATE"_s));
        second.set({{theme, u"Clearlooks"_s}});
        QTRY_COMPARE(settings.value(theme), QVariant(u"Clearlooks"_s));
    }

    void theAppearanceFollowsTheTheme_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("dark");
        QTest::addColumn<bool>("highContrast");
        QTest::newRow("Menta") << u"Menta"_s << false << false;
        QTest::newRow("BlackMATE") << u"BlackMATE"_s << true << false;
        QTest::newRow("Mint-Y-Dark") << u"Mint-Y-Dark"_s << true << false;
        QTest::newRow("ContrastHigh") << u"ContrastHigh"_s << false << true;
        QTest::newRow("ContrastHighInverse") << u"ContrastHighInverse"_s << true << true;
    }

    void theAppearanceFollowsTheTheme()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, dark);
        QFETCH(const bool, highContrast);
        // The portal answers for GNOME, whose setting nobody changes on another desktop.
        FakePortal portal(*daemon_, {{gnomeGroup, {{u"gtk-theme"_s, dark ? u"Adwaita"_s : u"Adwaita-dark"_s}}}});
        const FakeXSettings desktop(display(), {{theme, dark ? u"Menta"_s : u"BlackMATE"_s}});
        const auto appearance = this->appearance();
        QCOMPARE(appearance->isDark(), !dark);
        desktop.set({{theme, name}});
        QTRY_COMPARE(appearance->isDark(), dark);
        QTRY_COMPARE(appearance->highContrast(), highContrast);
        QTRY_VERIFY(portal.reads() > 0);
        QCOMPARE(appearance->isDark(), dark);
        desktop.set({});
        QTRY_COMPARE(appearance->isDark(), !dark);
    }

    void thePreferenceOfThePortalGoesBeforeTheTheme()
    {
        const FakePortal portal(*daemon_, {{u"org.freedesktop.appearance"_s, {{u"color-scheme"_s, 2U}}}});
        const FakeXSettings desktop(display(), {{theme, u"BlackMATE"_s}});
        const auto appearance = this->appearance();
        QVERIFY(appearance->isDark());
        QTRY_VERIFY(!appearance->isDark());
    }

    void theAppearanceReducesMotionWhenTheDesktopTurnsAnimationsOff()
    {
        const FakeXSettings desktop(display(), {{animations, 1}});
        const auto appearance = this->appearance();
        QVERIFY(!appearance->reduceMotion());
        desktop.set({{animations, 0}});
        QTRY_VERIFY(appearance->reduceMotion());
        desktop.set({});
        QTRY_VERIFY(!appearance->reduceMotion());
    }

    void init()
    {
        daemon_ = std::make_unique<PrivateBus>();
        daemon_->start();
    }
    void cleanup() { daemon_.reset(); }

private:
    static QString display() { return qEnvironmentVariable("DISPLAY"); }

    std::unique_ptr<DesktopAppearance> appearance() const
    {
        return std::make_unique<DesktopAppearance>(std::make_shared<BusConnection>(daemon_->address()), QStringList());
    }

    std::unique_ptr<PrivateBus> daemon_;
};

} // namespace kelvo

int main(int argc, char **argv)
{
    return kelvo::runOnVirtualDisplay<kelvo::XSettingsTest>(argc, argv);
}
#include "tst_xsettings.moc"
