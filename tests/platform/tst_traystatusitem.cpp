#include "platform/linux/ClickFilter.h"
#include "platform/linux/StatusNotifierItem.h"
#include "platform/linux/StatusNotifierMenu.h"
#include "support/FakeStatusNotifierWatcher.h"
#include "support/FakeXEmbedTray.h"
#include "support/PrivateBus.h"
#include "support/VirtualDisplay.h"

#include <QColor>
#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantMap>

#include <array>
#include <chrono>
#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

using Host = FakeStatusNotifierWatcher::Host;

namespace {

/// The colour in the middle of the docked window; invalid when there is none.
QColor centreOf(const FakeXEmbedTray &tray)
{
    const auto picture = tray.picture();
    return picture.isNull() ? QColor() : picture.pixelColor(picture.rect().center());
}

/// The bytes of a property that consists of numbers.
template<std::size_t size>
QByteArray bytesOf(const std::array<std::uint32_t, size> &numbers)
{
    return {reinterpret_cast<const char *>(numbers.data()), sizeof numbers};
}

} // namespace

class TrayStatusItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void appearsInATrayOnTheBus_data();
    void appearsInATrayOnTheBus();
    void appearsWhenTheTrayStartsLater();
    void waitsForATrayWithAHost();
    void appearsAgainAfterARestartOfTheTray();
    void appearsAgainAfterARestartOfTheBus();
    void reportsAClick_data();
    void reportsAClick();
    void reportsAChosenMenuEntry();
    void reportsTheChosenMenuEntriesOfAGroup();
    void answersATrayThatIsAboutToShowTheMenu();
    void tellsSinglePropertiesOfMenuEntries();
    void tellsPropertiesOfSeveralMenuEntries();
    void separatorsAndDisabledEntriesAreMarked();
    void tellsChangesOfItsMenuOnly();
    void aTrayReadsEveryProperty();
    void theItemDescribesItselfAndTellsEachChange();
    void showsWhatWasSetBeforeItWasShown();
    void showsWhatWasSetAfterItWasShown();
    void embedsWithoutABus();
    void embedsInATrayOfX11WithoutOneOnTheBus();
    void embedsInATrayOfX11ThatStartsLater();
    void waitsForATrayOnTheBusBeforeItEmbeds();
    void paintsItsIconInATrayOfX11_data();
    void paintsItsIconInATrayOfX11();
    void paintsTheIconThatWasSetWhileTheTrayOfX11WasHidden();
    void introducesItselfToATrayOfX11();
    void tellsItsPlaceInPoints();
    void reportsClicksInATrayOfX11();
    void reportsTheMiddleButtonInATrayOfX11();
    void theWheelHasNoFunctionInATrayOfX11();
    void showsItsToolTipInATrayOfX11();
    void showsAToolTipOnce();
    void showsNoToolTipToAPointerThatDoesNotRest_data();
    void showsNoToolTipToAPointerThatDoesNotRest();
    void hasAPlaceOnlyWhileATrayOfX11HasEmbeddedIt();
    void returnsToATrayOfX11ThatDestroyedIt();
    void staysInATrayOfX11ThatAnnouncesItselfAgain();
    void isInTheTrayOfX11ThatReplacesAnother();
    void prefersTheTrayOnTheBusToOneOfX11();
    void isInExactlyOneTray_data();
    void isInExactlyOneTray();
    void theMiddleButtonAndADoubleClickAreOneClick();
    void theWheelHasNoFunction();
    void keepsTheTokenOfTheTrayForTheNextWindow();
    void dropsTheSecondClickOfADoubleClick();
    void opensTheMenuForATrayThatCannot();

private:
    void startProbe(const QByteArray &commands, std::chrono::milliseconds grace = 200ms);
    void startInATrayOnTheBus(const QByteArray &commands);
    void tell(const QByteArray &commands);
    void click(const QString &method);
    void movePointer(const QStringList &commands) const;
    QByteArray said();
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments);
    QVariant ask(const QString &path, const QString &interface, const QString &method, const QVariantList &arguments);
    QDBusMessage callItem(const QString &method, const QVariantList &arguments);
    QDBusMessage callMenu(const QString &method, const QVariantList &arguments);
    QVariant itemProperty(const QString &name);
    QString toolTip();
    QString menuPath();
    QStringList menuEntries();

    std::unique_ptr<VirtualDisplay> display_;
    std::unique_ptr<PrivateBus> daemon_;
    std::unique_ptr<FakeStatusNotifierWatcher> tray_;
    std::unique_ptr<QProcess> probe_;
    QByteArray said_;
    QString scale_; ///< of the screen; empty if it is 1
    QTemporaryDir runtimeDirectory_;
};

void TrayStatusItemTest::init()
{
    scale_.clear();
    display_ = std::make_unique<VirtualDisplay>();
    daemon_ = std::make_unique<PrivateBus>();
}

void TrayStatusItemTest::cleanup()
{
    if (probe_) {
        probe_->closeWriteChannel();
        QVERIFY(probe_->waitForFinished());
        QCOMPARE(probe_->exitStatus(), QProcess::NormalExit);
        QCOMPARE(probe_->readAllStandardError(), QByteArray());
        probe_.reset();
    }
    tray_.reset();
    daemon_.reset();
    display_.reset();
}

/// Starts the probe, which waits for a tray on the bus for the time `grace` before it takes one of X11.
void TrayStatusItemTest::startProbe(const QByteArray &commands, std::chrono::milliseconds grace)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, display_->name());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, daemon_->address());
    environment.insert(u"QT_SCALE_FACTOR"_s, scale_);
    environment.remove(u"XDG_CURRENT_DESKTOP"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, runtimeDirectory_.path());
    said_.clear();
    probe_ = std::make_unique<QProcess>();
    probe_->setProcessEnvironment(environment);
    probe_->start(QCoreApplication::applicationDirPath() + u"/TrayProbe"_s, {QString::number(grace.count())});
    QVERIFY(probe_->waitForStarted());
    tell(commands);
}

/// Starts the bus, a tray on it and the probe, and waits until the tray has its item.
void TrayStatusItemTest::startInATrayOnTheBus(const QByteArray &commands)
{
    daemon_->start();
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
    startProbe(commands);
    QTRY_COMPARE(tray_->items().size(), 1);
}

void TrayStatusItemTest::tell(const QByteArray &commands)
{
    probe_->write(commands);
}

/// Calls a method of the item that takes a point, with (10, 20).
void TrayStatusItemTest::click(const QString &method)
{
    auto call = QDBusMessage::createMethodCall(tray_->items().last(), u"/StatusNotifierItem"_s,
                                               u"org.kde.StatusNotifierItem"_s, method);
    call << 10 << 20;
    tray_->connection().send(call);
}

/// Moves the pointer of the display and presses its buttons with these commands of xdotool.
void TrayStatusItemTest::movePointer(const QStringList &commands) const
{
    QProcess hand;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, display_->name());
    hand.setProcessEnvironment(environment);
    hand.start(u"xdotool"_s, commands);
    QVERIFY(hand.waitForFinished());
    QCOMPARE(hand.exitCode(), 0);
}

/// Returns everything that the probe has printed so far.
QByteArray TrayStatusItemTest::said()
{
    return said_ += probe_->readAllStandardOutput();
}

/// Returns the answer of the item, or an error.
QDBusMessage TrayStatusItemTest::call(const QString &path, const QString &interface, const QString &method,
                                      const QVariantList &arguments)
{
    auto question = QDBusMessage::createMethodCall(tray_->items().last(), path, interface, method);
    question.setArguments(arguments);
    const auto answer = tray_->connection().asyncCall(question);
    return QTest::qWaitFor([&] { return answer.isFinished(); })
        ? answer.reply()
        : QDBusMessage::createError(QDBusError::NoReply, u"no answer"_s);
}

/// Returns the last value of the answer; invalid when the item answers with an error.
QVariant TrayStatusItemTest::ask(const QString &path, const QString &interface, const QString &method,
                                 const QVariantList &arguments)
{
    const auto answer = call(path, interface, method, arguments);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(answer.arguments().size() - 1)
                                                       : QVariant();
}

QDBusMessage TrayStatusItemTest::callItem(const QString &method, const QVariantList &arguments)
{
    return call(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method, arguments);
}

QDBusMessage TrayStatusItemTest::callMenu(const QString &method, const QVariantList &arguments)
{
    return call(menuPath(), u"com.canonical.dbusmenu"_s, method, arguments);
}

QVariant TrayStatusItemTest::itemProperty(const QString &name)
{
    return ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
               {u"org.kde.StatusNotifierItem"_s, name})
        .value<QDBusVariant>()
        .variant();
}

QString TrayStatusItemTest::toolTip()
{
    const auto property = itemProperty(u"ToolTip"_s).value<QDBusArgument>();
    if (property.currentSignature() != "(sa(iiay)ss)"_L1) {
        return {};
    }
    QString iconName;
    QString title;
    property.beginStructure();
    property >> iconName;
    property.beginArray();
    while (!property.atEnd()) {
        property.asVariant();
    }
    property.endArray();
    property >> title;
    property.endStructure();
    return title;
}

QString TrayStatusItemTest::menuPath()
{
    return itemProperty(u"Menu"_s).value<QDBusObjectPath>().path();
}

QStringList TrayStatusItemTest::menuEntries()
{
    const auto layout = ask(menuPath(), u"com.canonical.dbusmenu"_s, u"GetLayout"_s, {0, 1, QStringList{u"label"_s}})
                            .value<QDBusArgument>();
    if (layout.currentSignature() != "(ia{sv}av)"_L1) {
        return {};
    }
    int id = 0;
    QVariantMap properties;
    QVariantList children;
    layout.beginStructure();
    layout >> id >> properties >> children;
    layout.endStructure();

    QStringList labels;
    for (const auto &child : children) {
        const auto entry = child.value<QDBusArgument>();
        entry.beginStructure();
        entry >> id >> properties;
        entry.endStructure();
        labels.append(properties.value(u"label"_s).toString());
    }
    return labels;
}

void TrayStatusItemTest::appearsInATrayOnTheBus_data()
{
    QTest::addColumn<QString>("scale");
    QTest::newRow("on a usual screen") << QString();
    QTest::newRow("on a fine screen") << u"2"_s;
}

void TrayStatusItemTest::appearsInATrayOnTheBus()
{
    QFETCH(const QString, scale);
    scale_ = scale;
    startInATrayOnTheBus("icon red\nshow\n");
    QTRY_COMPARE(itemProperty(u"Status"_s), QVariant(u"Active"_s));

    const auto pixmaps = itemProperty(u"IconPixmap"_s).value<QDBusArgument>();
    QCOMPARE(pixmaps.currentSignature(), u"a(iiay)"_s);
    pixmaps.beginArray();
    QSet<int> sizes;
    while (!pixmaps.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray argb;
        pixmaps.beginStructure();
        pixmaps >> width >> height >> argb;
        pixmaps.endStructure();
        QCOMPARE(width, height);
        sizes.insert(width);
        const auto centre = (height / 2 * width + width / 2) * 4;
        QCOMPARE(argb.mid(centre, 4), QByteArray("\xff\xff\x00\x00", 4));
        QCOMPARE(argb.at(0), '\0');
    }
    pixmaps.endArray();
    // Trays do not enlarge a picture at 200 % if there is one of twice the size.
    for (const int usual : {16, 22, 24, 32}) {
        QVERIFY(sizes.contains(usual) && sizes.contains(2 * usual));
    }
}

void TrayStatusItemTest::appearsWhenTheTrayStartsLater()
{
    daemon_->start();
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
    QTRY_COMPARE(tray_->items().size(), 1);
}

void TrayStatusItemTest::waitsForATrayWithAHost()
{
    daemon_->start();
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::none);
    startProbe("icon red\nshow\n");
    QTRY_VERIFY(tray_->questions() > 0);
    QCOMPARE(tray_->items().size(), 0);
    tray_->registerHost();
    QTRY_COMPARE(tray_->items().size(), 1);
}

void TrayStatusItemTest::appearsAgainAfterARestartOfTheTray()
{
    startInATrayOnTheBus("icon red\nshow\n");
    for (int round = 0; round < 2; ++round) {
        tray_.reset();
        tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
        QTRY_COMPARE(tray_->items().size(), 1);
    }
}

void TrayStatusItemTest::appearsAgainAfterARestartOfTheBus()
{
    startInATrayOnTheBus("icon red\ntooltip Claude\nshow\n");
    daemon_->kill();
    tray_.reset();
    daemon_->start();
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
    QTRY_COMPARE(tray_->items().size(), 1);
    QTRY_COMPARE(itemProperty(u"Status"_s), QVariant(u"Active"_s));
    QCOMPARE(toolTip(), u"Claude"_s);
}

void TrayStatusItemTest::reportsAClick_data()
{
    QTest::addColumn<QString>("method");
    QTest::newRow("left button") << u"Activate"_s;
    QTest::newRow("middle button") << u"SecondaryActivate"_s;
}

void TrayStatusItemTest::reportsAClick()
{
    QFETCH(const QString, method);
    startInATrayOnTheBus("icon red\nmenu Quit\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    click(method);
    QTRY_COMPARE(said(), QByteArray("shown\nactivated 10 20\n"));
}

void TrayStatusItemTest::reportsAChosenMenuEntry()
{
    startInATrayOnTheBus("icon red\nmenu Settings\nmenu Quit\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    const auto event = [&](int entry, const QString &kind) {
        ask(menuPath(), u"com.canonical.dbusmenu"_s, u"Event"_s,
            {entry, kind, QVariant::fromValue(QDBusVariant(0)), 0U});
    };
    event(2, u"hovered"_s);
    event(7, u"clicked"_s); // there is no such entry
    event(2, u"clicked"_s);
    QTRY_COMPARE(said(), QByteArray("shown\nchosen Quit\n"));
}

void TrayStatusItemTest::reportsTheChosenMenuEntriesOfAGroup()
{
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    startInATrayOnTheBus("icon red\nmenu Settings\nmenu Quit\nshow\n");
    const auto event = [](int entry, const QString &kind) { return MenuEvent{entry, kind, QDBusVariant(0), 0}; };
    constexpr int least = std::numeric_limits<int>::min();
    const QList<MenuEvent> events{event(0, u"opened"_s),  event(2, u"hovered"_s), event(3, u"clicked"_s),
                                  event(1, u"clicked"_s), event(-1, u"closed"_s), event(least, u"clicked"_s),
                                  event(2, u"clicked"_s)};
    const auto answer = callMenu(u"EventGroup"_s, {QVariant::fromValue(events)});
    QCOMPARE(answer.signature(), u"ai"_s);
    QCOMPARE(qdbus_cast<QList<int>>(answer.arguments().value(0)), (QList<int>{3, -1, least}));
    QTRY_COMPARE(said(), QByteArray("shown\nchosen Settings\nchosen Quit\n"));
}

void TrayStatusItemTest::answersATrayThatIsAboutToShowTheMenu()
{
    startInATrayOnTheBus("icon red\nmenu Settings\nmenu Quit\nshow\n");
    QCOMPARE(callMenu(u"AboutToShow"_s, {0}).arguments(), QVariantList{false});

    const auto answer = callMenu(u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int>{0, 1, 3})});
    QCOMPARE(answer.signature(), u"aiai"_s);
    QCOMPARE(qdbus_cast<QList<int>>(answer.arguments().value(0)), QList<int>());
    QCOMPARE(qdbus_cast<QList<int>>(answer.arguments().value(1)), QList<int>{3});
}

void TrayStatusItemTest::tellsSinglePropertiesOfMenuEntries()
{
    startInATrayOnTheBus("icon red\nmenu Settings\nmenu Quit\nshow\n");
    const auto property = [this](int entry, const QString &name) {
        return callMenu(u"GetProperty"_s, {entry, name}).arguments().value(0).value<QDBusVariant>().variant();
    };
    QCOMPARE(property(2, u"label"_s), QVariant(u"Quit"_s));
    QCOMPARE(property(2, u"enabled"_s), QVariant(true));
    QCOMPARE(property(2, u"unheard-of"_s), QVariant(QString()));
    QCOMPARE(property(3, u"label"_s), QVariant(QString()));
}

void TrayStatusItemTest::tellsPropertiesOfSeveralMenuEntries()
{
    startInATrayOnTheBus("icon red\nmenu Settings\nmenu Quit\nshow\n");
    const auto answer = callMenu(u"GetGroupProperties"_s,
                                 {QVariant::fromValue(QList<int>{1, 2}), QStringList{u"label"_s}});
    QCOMPARE(answer.signature(), u"a(ia{sv})"_s);
    const auto entries = qdbus_cast<QList<MenuEntry>>(answer.arguments().value(0));
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries[0].id, 1);
    QCOMPARE(entries[0].properties, (QVariantMap{{u"label"_s, u"Settings"_s}}));
    QCOMPARE(entries[1].id, 2);
    QCOMPARE(entries[1].properties, (QVariantMap{{u"label"_s, u"Quit"_s}}));
}

void TrayStatusItemTest::separatorsAndDisabledEntriesAreMarked()
{
    QMenu menu;
    menu.addAction(u"Open_it"_s);
    menu.addSeparator();
    menu.addAction(u"Quit"_s)->setEnabled(false);
    StatusNotifierMenu onBus;
    QSignalSpy updates(&onBus, &StatusNotifierMenu::LayoutUpdated);
    onBus.setMenu(&menu);
    QCOMPARE(updates.size(), 1);

    MenuLayout layout;
    const auto revision = onBus.GetLayout(0, -1, {}, layout);
    QCOMPARE(updates.last(), (QVariantList{revision, 0}));
    QCOMPARE(layout.properties, (QVariantMap{{u"children-display"_s, u"submenu"_s}}));
    QList<QVariantMap> entries;
    for (const auto &child : layout.children) {
        entries.append(child.value<MenuLayout>().properties);
    }
    const QList<QVariantMap> expected{
        {{u"label"_s, u"Open__it"_s}, {u"enabled"_s, true}, {u"visible"_s, true}},
        {{u"type"_s, u"separator"_s}},
        {{u"label"_s, u"Quit"_s}, {u"enabled"_s, false}, {u"visible"_s, true}},
    };
    QCOMPARE(entries, expected);
    const auto asked = onBus.GetGroupProperties({3, 9}, {u"enabled"_s});
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked.first().id, 3);
    QCOMPARE(asked.first().properties, (QVariantMap{{u"enabled"_s, false}}));

    menu.actions().last()->setEnabled(true);
    QCOMPARE(updates.size(), 2);
    const auto next = onBus.GetLayout(0, 0, {}, layout);
    QVERIFY(next > revision);
    QCOMPARE(updates.last(), (QVariantList{next, 0}));
    QVERIFY(layout.children.isEmpty());
}

void TrayStatusItemTest::tellsChangesOfItsMenuOnly()
{
    QMenu former;
    QMenu menu;
    StatusNotifierMenu onBus;
    const QSignalSpy updates(&onBus, &StatusNotifierMenu::LayoutUpdated);
    onBus.setMenu(&former);
    onBus.setMenu(&menu);
    QCOMPARE(updates.size(), 2);
    former.addAction(u"Settings"_s);
    QCOMPARE(updates.size(), 2);
    menu.addAction(u"Quit"_s);
    QCOMPARE(updates.size(), 3);
}

void TrayStatusItemTest::aTrayReadsEveryProperty()
{
    startInATrayOnTheBus("icon red\nmenu Quit\nshow\n");
    const auto properties = [this](const QString &path, const QString &interface) {
        return qdbus_cast<QVariantMap>(
            ask(path, u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s, {interface}).value<QDBusArgument>());
    };
    auto ofItem = properties(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s);
    QCOMPARE(ofItem.take(u"Menu"_s).value<QDBusObjectPath>().path(), menuPath());
    for (const auto &[name, signature] :
         {std::pair(u"IconPixmap"_s, u"a(iiay)"_s), std::pair(u"OverlayIconPixmap"_s, u"a(iiay)"_s),
          std::pair(u"AttentionIconPixmap"_s, u"a(iiay)"_s), std::pair(u"ToolTip"_s, u"(sa(iiay)ss)"_s)}) {
        QCOMPARE(ofItem.take(name).value<QDBusArgument>().currentSignature(), signature);
    }
    QCOMPARE(ofItem,
             (QVariantMap{{u"AttentionIconName"_s, QString()},
                          {u"Category"_s, u"ApplicationStatus"_s},
                          {u"IconName"_s, QString()},
                          {u"IconThemePath"_s, QString()},
                          {u"Id"_s, u"TrayProbe"_s},
                          {u"ItemIsMenu"_s, false},
                          {u"OverlayIconName"_s, QString()},
                          {u"Status"_s, u"Active"_s},
                          {u"Title"_s, QString()},
                          {u"WindowId"_s, 0}}));
    QCOMPARE(properties(menuPath(), u"com.canonical.dbusmenu"_s),
             (QVariantMap{{u"IconThemePath"_s, QStringList()},
                          {u"Status"_s, u"normal"_s},
                          {u"TextDirection"_s, u"ltr"_s},
                          {u"Version"_s, 3U}}));
}

void TrayStatusItemTest::theItemDescribesItselfAndTellsEachChange()
{
    StatusNotifierItem item(QDBusConnection(u"none"_s));
    const QSignalSpy newIcon(&item, &StatusNotifierItem::NewIcon);
    const QSignalSpy newTitle(&item, &StatusNotifierItem::NewTitle);
    const QSignalSpy newToolTip(&item, &StatusNotifierItem::NewToolTip);
    QCOMPARE(item.category(), u"ApplicationStatus"_s);
    QCOMPARE(item.status(), u"Active"_s);
    QCOMPARE(item.id(), QGuiApplication::applicationName());
    QCOMPARE(item.menuPath().path(), u"/MenuBar"_s);
    QVERIFY(item.pixmaps().isEmpty());
    QCOMPARE(item.title(), QString());

    QPixmap picture(64, 64);
    picture.fill(QColor(0x12, 0x34, 0x56));
    item.setIcon(picture);
    QCOMPARE(newIcon.size(), 1);
    QList<int> sizes;
    const auto pixmaps = item.pixmaps();
    for (const auto &pixmap : pixmaps) {
        sizes.append(pixmap.width);
        QCOMPARE(pixmap.height, pixmap.width);
        QCOMPARE(pixmap.argb, QByteArray("\xff\x12\x34\x56").repeated(pixmap.width * pixmap.height));
    }
    QCOMPARE(sizes, (QList<int>{16, 22, 24, 32, 44, 48, 64}));

    item.setToolTip(u"Claude"_s);
    QCOMPARE(newTitle.size(), 1);
    QCOMPARE(newToolTip.size(), 1);
    QCOMPARE(item.title(), item.id());
    QCOMPARE(item.toolTip().title, u"Claude"_s);
    QCOMPARE(newIcon.size(), 1);
}

void TrayStatusItemTest::showsWhatWasSetBeforeItWasShown()
{
    daemon_->start();
    startProbe("icon red\ntooltip Claude\nmenu Quit\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
    QTRY_COMPARE(tray_->items().size(), 1);
    QCOMPARE(toolTip(), u"Claude"_s);
    QCOMPARE(menuEntries(), QStringList{u"Quit"_s});
}

void TrayStatusItemTest::showsWhatWasSetAfterItWasShown()
{
    startInATrayOnTheBus("icon red\nshow\n");
    tell("tooltip Cursor\nmenu Settings\n");
    QTRY_COMPARE(toolTip(), u"Cursor"_s);
    QTRY_COMPARE(menuEntries(), QStringList{u"Settings"_s});
}

void TrayStatusItemTest::embedsWithoutABus()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\n", 1h); // at once: without a bus there is no other tray to wait for
    QTRY_COMPARE(tray.dockedCount(), 1);
}

void TrayStatusItemTest::embedsInATrayOfX11WithoutOneOnTheBus()
{
    daemon_->start();
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE_WITH_TIMEOUT(tray.dockedCount(), 1, 10000);
}

void TrayStatusItemTest::embedsInATrayOfX11ThatStartsLater()
{
    daemon_->start();
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    const FakeXEmbedTray tray(display_->name());
    QTRY_COMPARE_WITH_TIMEOUT(tray.dockedCount(), 1, 10000);
}

void TrayStatusItemTest::waitsForATrayOnTheBusBeforeItEmbeds()
{
    daemon_->start();
    const FakeXEmbedTray embedding(display_->name());
    startProbe("icon red\nshow\nlater\n", 1h);
    QTRY_COMPARE(said(), QByteArray("shown\nlater\n"));
    QCOMPARE(embedding.dockedCount(), 0);
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
    QTRY_COMPARE(tray_->items().size(), 1);
    QCOMPARE(embedding.dockedCount(), 0);
}

void TrayStatusItemTest::paintsItsIconInATrayOfX11_data()
{
    using Visual = FakeXEmbedTray::Visual;
    QTest::addColumn<int>("depth");
    QTest::addColumn<Visual>("visual");
    QTest::addColumn<QColor>("aroundTheDisc");
    QTest::newRow("opaque") << 24 << Visual::opaque << FakeXEmbedTray::background;
    QTest::newRow("transparent") << 24 << Visual::transparent << QColor(0, 0, 0, 0);
    QTest::newRow("with few colours") << 16 << Visual::opaque << QColor(0x21, 0x41, 0x63);
    QTest::newRow("with many colours") << 30 << Visual::opaque << FakeXEmbedTray::background;
}

void TrayStatusItemTest::paintsItsIconInATrayOfX11()
{
    QFETCH(const int, depth);
    QFETCH(const FakeXEmbedTray::Visual, visual);
    QFETCH(const QColor, aroundTheDisc);
    display_ = std::make_unique<VirtualDisplay>(depth);
    const FakeXEmbedTray tray(display_->name(), visual);
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    QCOMPARE(tray.picture().pixelColor(0, 0), aroundTheDisc);
    tell("icon blue\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::blue));
    QCOMPARE(tray.picture().pixelColor(0, 0), aroundTheDisc);

    // Nothing of the former icon remains.
    tell("square red\n");
    QTRY_COMPARE(tray.picture().pixelColor(0, 0), QColor(Qt::red));
    tell("icon transparent\n");
    QTRY_COMPARE(centreOf(tray), aroundTheDisc);
    const auto picture = tray.picture();
    for (const QPoint corner : {QPoint(0, 0), QPoint(23, 0), QPoint(0, 23), QPoint(23, 23)}) {
        QCOMPARE(picture.pixelColor(corner), aroundTheDisc);
    }
}

void TrayStatusItemTest::paintsTheIconThatWasSetWhileTheTrayOfX11WasHidden()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    tray.setVisible(false);
    tell("icon blue\ngeometry\n");
    QTRY_COMPARE(said(), QByteArray("shown\nat 30 4 24 24\n"));
    tray.setVisible(true);
    QTRY_COMPARE(centreOf(tray), QColor(Qt::blue));
}

void TrayStatusItemTest::introducesItselfToATrayOfX11()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(tray.dockedCount(), 1);
    QCOMPARE(tray.formerSize(), QSize(22, 22));
    QCOMPARE(tray.property("_XEMBED_INFO"), bytesOf<2>({0, 1})); // the version, and the wish to be visible
    QCOMPARE(tray.property("WM_NORMAL_HINTS"), bytesOf<18>({16, 0, 0, 0, 0, 22, 22})); // the smallest size
    QCOMPARE(tray.property("WM_CLASS"), "TrayProbe\0TrayProbe\0"_ba);
    QCOMPARE(tray.property("WM_NAME"), "TrayProbe"_ba);
}

void TrayStatusItemTest::tellsItsPlaceInPoints()
{
    scale_ = u"2"_s;
    const FakeXEmbedTray tray(display_->name());
    tray.moveTo(1000, 100);
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    QCOMPARE(tray.formerSize(), QSize(44, 44));
    tell("geometry\n");
    QTRY_COMPARE(said(), QByteArray("shown\nat 515 52 12 12\n"));
}

void TrayStatusItemTest::reportsClicksInATrayOfX11()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nmenu Quit\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    constexpr int left = 1;
    constexpr int right = 3;
    tray.click(left);
    QTRY_COMPARE(said(), QByteArray("shown\nactivated in 30 4 24 24\n"));
    tell("token\n"); // with the time of the click, for the window that it opens
    QTRY_COMPARE(said(), QByteArray("shown\nactivated in 30 4 24 24\ntoken TrayProbe_TIME0\n"));
    tray.click(left); // the second click of a double click
    tray.click(right);
    QTRY_COMPARE(said(), QByteArray("shown\nactivated in 30 4 24 24\ntoken TrayProbe_TIME0\nmenu opens\n"));
}

void TrayStatusItemTest::reportsTheMiddleButtonInATrayOfX11()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    constexpr int middle = 2;
    tray.click(middle);
    QTRY_COMPARE(said(), QByteArray("shown\nactivated in 30 4 24 24\n"));
}

void TrayStatusItemTest::theWheelHasNoFunctionInATrayOfX11()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nmenu Quit\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    for (const int wheel : {4, 5, 6, 7}) {
        tray.click(wheel);
    }
    constexpr int right = 3;
    tray.click(right);
    QTRY_COMPARE(said(), QByteArray("shown\nmenu opens\n"));
}

void TrayStatusItemTest::showsItsToolTipInATrayOfX11()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\ntooltip Claude\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    const QStringList toTheItem{u"mousemove"_s, u"42"_s, u"16"_s};
    QByteArray expected = "shown\n";
    movePointer(toTheItem);
    expected += "tool tip Claude\n";
    QTRY_COMPARE(said(), expected);
    movePointer({u"mousemove"_s, u"600"_s, u"400"_s});
    expected += "tool tip ends\n";
    QTRY_COMPARE(said(), expected);

    tell("tooltip Cursor\ngeometry\n");
    expected += "at 30 4 24 24\n";
    QTRY_COMPARE(said(), expected);
    movePointer(toTheItem);
    expected += "tool tip Cursor\n";
    QTRY_COMPARE(said(), expected);
    movePointer({u"click"_s, u"1"_s});
    expected += "activated in 30 4 24 24\ntool tip ends\n";
    QTRY_COMPARE(said(), expected);
}

void TrayStatusItemTest::showsAToolTipOnce()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\ntooltip Claude\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    movePointer({u"mousemove"_s, u"42"_s, u"16"_s});
    QTRY_COMPARE(said(), "shown\ntool tip Claude\n"_ba);
    tell("hide tooltip\nlater\n"); // as Qt does after some seconds, while the pointer still rests
    QTRY_VERIFY(said().endsWith("later\n"));
    QCOMPARE(said(), "shown\ntool tip Claude\ntool tip ends\nlater\n"_ba);
}

void TrayStatusItemTest::showsNoToolTipToAPointerThatDoesNotRest_data()
{
    QTest::addColumn<QStringList>("next");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("crosses the item") << QStringList{u"mousemove"_s, u"600"_s, u"400"_s} << "shown\nlater\n"_ba;
    QTest::newRow("clicks") << QStringList{u"click"_s, u"1"_s} << "shown\nactivated in 30 4 24 24\nlater\n"_ba;
}

void TrayStatusItemTest::showsNoToolTipToAPointerThatDoesNotRest()
{
    QFETCH(const QStringList, next);
    QFETCH(const QByteArray, expected);
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\ntooltip Claude\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    movePointer(QStringList{u"mousemove"_s, u"42"_s, u"16"_s} + next);
    tell("later\n");
    QTRY_VERIFY(said().endsWith("later\n"));
    QCOMPARE(said(), expected);
}

void TrayStatusItemTest::hasAPlaceOnlyWhileATrayOfX11HasEmbeddedIt()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\ngeometry\n");
    // The tray does not embed the item yet, because no event loop runs here.
    while (said().count('\n') < 2) {
        QVERIFY(probe_->waitForReadyRead());
    }
    QByteArray expected = "shown\nat 0 0 0 0\n";
    QCOMPARE(said(), expected);
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    tell("geometry\n");
    expected += "at 30 4 24 24\n";
    QTRY_COMPARE(said(), expected);
}

void TrayStatusItemTest::returnsToATrayOfX11ThatDestroyedIt()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(tray.dockedCount(), 1);
    tray.destroyItem();
    QTRY_COMPARE(tray.dockedCount(), 0);
    tray.announce();
    QTRY_COMPARE(tray.dockedCount(), 1);
}

void TrayStatusItemTest::staysInATrayOfX11ThatAnnouncesItselfAgain()
{
    const FakeXEmbedTray tray(display_->name());
    startProbe("icon red\nmenu Quit\nshow\n");
    QTRY_COMPARE(centreOf(tray), QColor(Qt::red));
    tray.announce();
    constexpr int right = 3;
    tray.click(right); // in the same window, after the announcement
    QTRY_COMPARE(said(), QByteArray("shown\nmenu opens\n"));
    QCOMPARE(tray.dockedCount(), 1);
}

void TrayStatusItemTest::isInTheTrayOfX11ThatReplacesAnother()
{
    const FakeXEmbedTray first(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(first.dockedCount(), 1);
    const FakeXEmbedTray second(display_->name());
    QTRY_COMPARE(second.dockedCount(), 1);
    QTRY_COMPARE(first.dockedCount(), 0);
}

void TrayStatusItemTest::prefersTheTrayOnTheBusToOneOfX11()
{
    daemon_->start();
    const FakeXEmbedTray embedding(display_->name());
    startProbe("icon red\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::registered);
    QTRY_COMPARE(tray_->items().size(), 1);
    QTRY_COMPARE(embedding.dockedCount(), 0);
}

void TrayStatusItemTest::isInExactlyOneTray_data()
{
    QTest::addColumn<QStringList>("events");
    const auto row = [](const char *events) { QTest::newRow(events) << QString::fromLatin1(events).split(u", "_s); };
    // Each row ends in a state in which a ring can be seen.
    row("bus, x11, watcher, start");
    row("bus, watcher, start, x11");
    row("bus, watcher, x11, start, host");
    row("bus, watcher, x11, start, embedded, host");
    row("start, bus, watcher, host");
    row("start, x11, embedded, bus, watcher, host");
    row("start, bus, x11, embedded, watcher, host, no host");
    row("bus, x11, watcher, host, start, no watcher");
    row("bus, x11, watcher, host, start, no bus");
    row("bus, x11, watcher, host, start, no bus, bus, watcher, host");
    row("bus, x11, watcher, host, start, no host, host");
    row("bus, x11, start, embedded, no x11, x11");
    row("bus, x11, start, embedded, no x11, watcher, host");
}

void TrayStatusItemTest::isInExactlyOneTray()
{
    QFETCH(const QStringList, events);
    std::unique_ptr<FakeXEmbedTray> embedding;
    const auto embedded = [&] { return embedding ? embedding->dockedCount() : 0; };
    const auto onBus = [&] { return tray_ && tray_->hasHost() ? tray_->items().size() : 0; };
    for (const auto &event : events) {
        if (event == "start"_L1) {
            startProbe("icon red\nshow\n");
            QTRY_COMPARE(said(), QByteArray("shown\n"));
        } else if (event == "bus"_L1) {
            daemon_->start();
        } else if (event == "no bus"_L1) {
            daemon_->kill();
            tray_.reset();
        } else if (event == "watcher"_L1) {
            tray_ = std::make_unique<FakeStatusNotifierWatcher>(*daemon_, Host::none);
        } else if (event == "no watcher"_L1) {
            tray_.reset();
        } else if (event == "host"_L1) {
            tray_->registerHost();
        } else if (event == "no host"_L1) {
            tray_->unregisterHost();
        } else if (event == "x11"_L1) {
            embedding = std::make_unique<FakeXEmbedTray>(display_->name());
        } else if (event == "no x11"_L1) {
            embedding.reset();
        } else if (event == "embedded"_L1) {
            QTRY_COMPARE_WITH_TIMEOUT(embedded(), 1, 10'000);
        } else {
            QFAIL(qPrintable(event));
        }
    }
    QTRY_COMPARE_WITH_TIMEOUT(embedded() + onBus(), 1, 10'000);
    QTRY_COMPARE_WITH_TIMEOUT(embedded(), onBus() == 1 ? 0 : 1, 10'000);
}

void TrayStatusItemTest::theMiddleButtonAndADoubleClickAreOneClick()
{
    startInATrayOnTheBus("icon red\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    click(u"SecondaryActivate"_s);
    click(u"Activate"_s);
    itemProperty(u"Status"_s); // answered after the clicks
    QTRY_COMPARE(said(), QByteArray("shown\nactivated 10 20\n"));
    QTest::qWait(0);
    QCOMPARE(said(), QByteArray("shown\nactivated 10 20\n"));
}

void TrayStatusItemTest::theWheelHasNoFunction()
{
    startInATrayOnTheBus("icon red\nmenu Quit\nshow\n");
    QCOMPARE(callItem(u"Scroll"_s, {120, u"vertical"_s}).type(), QDBusMessage::ReplyMessage);
    tell("geometry\n"); // answered after the effect of the wheel
    QTRY_COMPARE(said(), QByteArray("shown\nat 0 0 0 0\n"));
}

void TrayStatusItemTest::keepsTheTokenOfTheTrayForTheNextWindow()
{
    startInATrayOnTheBus("icon red\nshow\n");
    QCOMPARE(callItem(u"ProvideXdgActivationToken"_s, {u"panel-7"_s}).type(), QDBusMessage::ReplyMessage);
    tell("token\n");
    QTRY_COMPARE(said(), QByteArray("shown\ntoken panel-7\n"));
}

void TrayStatusItemTest::dropsTheSecondClickOfADoubleClick()
{
    ClickFilter clicks(400ms);
    const ClickFilter::Instant start(1h);
    QVERIFY(clicks.accepts(start));
    QVERIFY(!clicks.accepts(start + 399ms));
    QVERIFY(clicks.accepts(start + 400ms));
    QVERIFY(!clicks.accepts(start + 401ms));
}

void TrayStatusItemTest::opensTheMenuForATrayThatCannot()
{
    startInATrayOnTheBus("icon red\nmenu Quit\nshow\n");
    QTRY_COMPARE(said(), QByteArray("shown\n"));
    click(u"ContextMenu"_s);
    QTRY_COMPARE(said(), QByteArray("shown\nmenu opens\n"));
}

} // namespace kelvo

QTEST_MAIN(kelvo::TrayStatusItemTest)
#include "tst_traystatusitem.moc"
