#include "support/Looks.h"
#include "support/StatePictures.h"
#include "support/ViewScene.h"

#include "windows/settings/SettingsState.h"

#include <QSignalSpy>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const std::vector<ServiceID> catalogOrder(allServiceIDs.begin(), allServiceIDs.end());

/// The contrast ratio of two opaque colours as WCAG 2 defines it.
double contrast(const QColor &left, const QColor &right)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](double channel) {
            return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(left), luminance(right)});
    return (lighter + 0.05) / (darker + 0.05);
}

struct Scene : ViewScene
{
    using ViewScene::ViewScene;
    ~Scene() { view.setSource({}); }

    void open(QSize size = {})
    {
        show(u"settings/SettingsView.qml"_s, {{u"settings"_s, QVariant::fromValue(&state)}}, size);
    }

    QQuickItem *row(ServiceID id) const { return item(u"service-"_s + rawValue(id)); }
    QQuickItem *part(ServiceID id, const QString &name) const { return findItem(row(id), name); }
    QQuickItem *channel(RemoteChannel channel) const { return item(u"channel-"_s + rawValue(channel)); }
    QQuickItem *part(RemoteChannel of, const QString &name) const { return findItem(channel(of), name); }
    int place(ServiceID id) const { return qRound(row(id)->y() / 34); }
    /// The centre of the row at `index`, in window coordinates.
    QPoint slot(int index) const { return frame(u"services"_s).topLeft().toPoint() + QPoint(16, 34 * index + 17); }

    void press(ServiceID id)
    {
        QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, middle(part(id, u"handle"_s)));
    }
    void moveTo(QPoint point)
    {
        QTest::mouseMove(&view, point);
        settle();
    }
    void release(QPoint point)
    {
        QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, point);
        settle();
    }
    void drag(ServiceID id, QPoint to)
    {
        press(id);
        const auto from = middle(part(id, u"handle"_s));
        moveTo(from + QPoint(0, to.y() > from.y() ? 6 : -6));
        moveTo(to);
    }
    void dragAndDrop(ServiceID id, QPoint to)
    {
        drag(id, to);
        release(to);
    }

    SettingsState state{stores.settings, stores.notifier};
};

} // namespace

class SettingsViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void sectionsAreAtTheirPositions();
    void rowsFollowTheOrderOfTheStore();
    void theOnlyEnabledServiceCannotBeUnchecked();
    void oneOfTwoEnabledServicesCanBeUnchecked();
    void aClickOnTheRowTogglesAndOneOnTheGripDoesNot();
    void aRowLightsUpOnlyWhereAClickHasAnEffect();
    void aRowIsDraggedByItsName();
    void thePrimaryTagStandsOnTheBaselineOfTheName();
    void rowsMakeRoomWhileOneIsDragged();
    void droppingMovesToThatPosition();
    void droppingOnItsOwnPositionWritesNothing();
    void droppingBeyondTheEndPutsItLast();
    void aDropOutsideChangesNothing_data();
    void aDropOutsideChangesNothing();
    void escapeCancelsADrag();
    void disabledServicesCanBeDraggedAndThePrimaryTagStays();
    void theListScrollsAtItsEdgesWhileDragging();
    void altWithTheArrowKeysMovesTheFocusedRow();
    void movedRowsGlideUnlessMotionIsReduced();
    void theIntervalIsChosenByMouseAndArrowKeys();
    void switchesWriteThroughAndFollowTheStore_data();
    void switchesWriteThroughAndFollowTheStore();
    void awayFromYourMacCannotBeSwitchedOn();
    void aRefusedLaunchAtLoginIsReverted();
    void clickingThisMacArmsItAtOnceWithoutASheet();
    void clickingEmailOrWhatsAppDoesNothing();
    void channelRowsShowTheirStates();
    void theRowOfThisMacTellsWhereNotificationsAreAllowed();
    void showOnboardingAgainRequestsTheOnboarding();
    void everyControlIsReachedByTabInOrder();
    void spaceAndEnterOperateTheRows();
    void theFocusIsVisibleAndScrolledIntoView();
    void aScreenReaderSeesNamesRolesAndStates();
    void aScreenReaderCanOperate();
    void aScreenReaderSeesEveryChangeOfASwitch();
    void aScreenReaderHearsWhereAServiceMoves();
    void groupsHaveNames();
    void theReorderingKeysAreTold();
    void quietButtonsAreLargeEnoughToHit();
    void controlsThatAreOffCanBeSeen_data();
    void controlsThatAreOffCanBeSeen();
    void theWheelScrollsASmallWindow();
    void coloursFollowTheAppearanceWhileOpen();
    void everythingIsMirroredInARightToLeftLayout();
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
    void statesMatchTheGoldenPictures_data();
    void statesMatchTheGoldenPictures();
    void highContrastMatchesTheGoldenPictures_data();
    void highContrastMatchesTheGoldenPictures();
};

void SettingsViewTest::sectionsAreAtTheirPositions()
{
    Scene scene;
    scene.open();
    QCOMPARE(scene.root()->width(), 400.0);
    QVERIFY(scene.root()->implicitHeight() > 560);
    std::vector<QRectF> sections;
    for (auto *child : scene.item(u"content"_s)->childItems()) {
        sections.push_back(scene.frame(child));
    }
    QCOMPARE(sections.size(), std::size_t(5));
    QCOMPARE(sections.front().topLeft(), QPointF(22, 22));
    for (std::size_t i = 0; i < sections.size(); ++i) {
        QCOMPARE(sections[i].left(), 22.0);
        QCOMPARE(sections[i].right(), 378.0);
        if (i > 0) {
            QCOMPARE(sections[i].top(), sections[i - 1].bottom() + 20);
        }
    }
    QCOMPARE(scene.root()->implicitHeight(), sections.back().bottom() + 22);
    for (int i = 0; i < 8; ++i) {
        QCOMPARE(scene.frame(scene.row(catalogOrder[std::size_t(i)])),
                 QRectF(22, scene.frame(u"servicesCard"_s).top() + 34 * i, 356, 34));
    }
    const auto box = scene.frame(scene.part(ServiceID::claude, u"box"_s));
    QCOMPARE(box.size(), QSizeF(15, 15));
    QCOMPARE(box.right(), 378.0 - 12);
    QCOMPARE(scene.frame(scene.channel(RemoteChannel::slack)).size(), QSizeF(356, 34));
    QCOMPARE(scene.frame(scene.item(u"watchOnThisMac"_s, u"switch"_s)).size(), QSizeF(32, 19));
    QCOMPARE(scene.frame(scene.item(u"watchOnThisMac"_s, u"switch"_s)).right(), 378.0 - 12);
    QCOMPARE(scene.text(scene.item(u"servicesHeading"_s)), u"SERVICES · DRAG TO ORDER"_s);
    QCOMPARE(scene.frame(u"hint"_s).right(), 378.0);
    QCOMPARE(scene.words(scene.item(u"channelsFootnote"_s)),
             u"One channel is armed at a time, so a recovery never arrives four ways."_s);
}

void SettingsViewTest::rowsFollowTheOrderOfTheStore()
{
    Scene scene;
    scene.open();
    auto *claude = scene.row(ServiceID::claude);
    scene.stores.settings.setPrimary(ServiceID::gemini);
    settle();
    QCOMPARE(scene.place(ServiceID::gemini), 0);
    QCOMPARE(scene.place(ServiceID::claude), 1);
    QCOMPARE(scene.row(ServiceID::claude), claude);
    QVERIFY(scene.part(ServiceID::gemini, u"primaryTag"_s)->isVisible());
    QVERIFY(scene.part(ServiceID::gemini, u"checkmark"_s)->isVisible());
    QVERIFY(!scene.part(ServiceID::claude, u"primaryTag"_s)->isVisible());
    QCOMPARE(scene.text(scene.part(ServiceID::gemini, u"primaryTag"_s)), u"PRIMARY"_s);
}

void SettingsViewTest::theOnlyEnabledServiceCannotBeUnchecked()
{
    Scene scene;
    scene.open();
    scene.click(scene.part(ServiceID::claude, u"box"_s));
    QCOMPARE(scene.stores.settings.enabledServices(), std::set{ServiceID::claude});
    QVERIFY(scene.part(ServiceID::claude, u"checkmark"_s)->isVisible());
}

void SettingsViewTest::oneOfTwoEnabledServicesCanBeUnchecked()
{
    Scene scene({ServiceID::claude, ServiceID::chatgpt});
    scene.open();
    scene.click(scene.part(ServiceID::claude, u"box"_s));
    QCOMPARE(scene.stores.settings.enabledServices(), std::set{ServiceID::chatgpt});
    QVERIFY(!scene.part(ServiceID::claude, u"checkmark"_s)->isVisible());
    QVERIFY(scene.part(ServiceID::chatgpt, u"primaryTag"_s)->isVisible());
    QCOMPARE(scene.place(ServiceID::claude), 0);
}

void SettingsViewTest::aClickOnTheRowTogglesAndOneOnTheGripDoesNot()
{
    Scene scene;
    scene.open();
    const auto &enabled = scene.stores.settings.enabledServices();
    scene.click(scene.part(ServiceID::cursor, u"handle"_s));
    QVERIFY(!enabled.contains(ServiceID::cursor));
    scene.click(scene.part(ServiceID::cursor, u"name"_s));
    QVERIFY(enabled.contains(ServiceID::cursor));
    scene.click(scene.row(ServiceID::cursor));
    QVERIFY(!enabled.contains(ServiceID::cursor));
    scene.click(scene.part(ServiceID::cursor, u"box"_s));
    QVERIFY(enabled.contains(ServiceID::cursor));
}

void SettingsViewTest::aRowLightsUpOnlyWhereAClickHasAnEffect()
{
    Scene scene;
    scene.open();
    const auto isLit = [&scene](ServiceID id) {
        return scene.part(id, u"tint"_s)->property("color").value<QColor>().alpha() > 0;
    };
    scene.hover(scene.middle(scene.row(ServiceID::cursor)));
    QVERIFY(isLit(ServiceID::cursor));
    scene.hover(scene.middle(scene.part(ServiceID::cursor, u"name"_s)));
    QVERIFY(isLit(ServiceID::cursor));
    scene.hover(scene.middle(scene.part(ServiceID::cursor, u"handle"_s)));
    QVERIFY(!isLit(ServiceID::cursor));
    // The only watched service cannot be turned off.
    scene.hover(scene.middle(scene.row(ServiceID::claude)));
    QVERIFY(!isLit(ServiceID::claude));
    scene.state.toggle(u"cursor"_s);
    QVERIFY(isLit(ServiceID::claude));
}

void SettingsViewTest::aRowIsDraggedByItsName()
{
    Scene scene({ServiceID::claude, ServiceID::chatgpt});
    scene.open();
    const auto from = scene.middle(scene.part(ServiceID::cursor, u"name"_s));
    const QPoint to(from.x(), scene.slot(0).y());
    QTest::mousePress(&scene.view, Qt::LeftButton, Qt::NoModifier, from);
    scene.moveTo(from - QPoint(0, 6));
    scene.moveTo(to);
    scene.release(to);
    QCOMPARE(scene.stores.settings.serviceOrder().front(), ServiceID::cursor);
    QVERIFY(!scene.stores.settings.enabledServices().contains(ServiceID::cursor));
}

void SettingsViewTest::thePrimaryTagStandsOnTheBaselineOfTheName()
{
    Scene scene;
    scene.open();
    const auto baseline = [&scene](const QString &name) {
        auto *item = scene.part(ServiceID::claude, name);
        return scene.frame(item).top() + item->baselineOffset();
    };
    QCOMPARE(baseline(u"primaryTag"_s), baseline(u"name"_s));
}

void SettingsViewTest::rowsMakeRoomWhileOneIsDragged()
{
    Scene scene;
    scene.open();
    const int writes = scene.stores.preferences.writeCount();
    scene.drag(ServiceID::claude, scene.slot(2));
    QCOMPARE(scene.place(ServiceID::chatgpt), 0);
    QCOMPARE(scene.place(ServiceID::cursor), 1);
    QCOMPARE(scene.place(ServiceID::gemini), 3);
    QCOMPARE(scene.frame(scene.row(ServiceID::claude)).center().y(), double(scene.slot(2).y()));
    scene.moveTo(scene.slot(1));
    QCOMPARE(scene.place(ServiceID::cursor), 2);
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
    scene.release(scene.slot(1));
    QCOMPARE(scene.place(ServiceID::claude), 1);
}

void SettingsViewTest::droppingMovesToThatPosition()
{
    Scene scene;
    scene.open();
    const int writes = scene.stores.preferences.writeCount();
    scene.dragAndDrop(ServiceID::copilot, scene.slot(0));
    QCOMPARE(scene.stores.settings.serviceOrder().front(), ServiceID::copilot);
    QCOMPARE(scene.place(ServiceID::copilot), 0);
    QCOMPARE(scene.place(ServiceID::claude), 1);
    QCOMPARE(scene.place(ServiceID::anthropicAPI), 5);
    QCOMPARE(scene.stores.preferences.writeCount(), writes + 1);
}

void SettingsViewTest::droppingOnItsOwnPositionWritesNothing()
{
    Scene scene;
    scene.open();
    const int writes = scene.stores.preferences.writeCount();
    scene.drag(ServiceID::cursor, scene.slot(5));
    scene.moveTo(scene.slot(2) + QPoint(0, 5));
    scene.release(scene.slot(2) + QPoint(0, 5));
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
    QCOMPARE(scene.place(ServiceID::cursor), 2);
    QCOMPARE(scene.row(ServiceID::cursor)->y(), 68.0);
}

void SettingsViewTest::droppingBeyondTheEndPutsItLast()
{
    Scene scene;
    scene.open();
    scene.dragAndDrop(ServiceID::chatgpt, scene.slot(8));
    QCOMPARE(scene.stores.settings.serviceOrder().back(), ServiceID::chatgpt);
    QCOMPARE(scene.place(ServiceID::chatgpt), 7);
}

void SettingsViewTest::aDropOutsideChangesNothing_data()
{
    QTest::addColumn<QPoint>("at");
    QTest::newRow("far below") << QPoint(100, 700);
    QTest::newRow("above the window") << QPoint(100, -40);
    QTest::newRow("beside the window") << QPoint(460, 200);
}

void SettingsViewTest::aDropOutsideChangesNothing()
{
    QFETCH(QPoint, at);
    Scene scene;
    scene.open();
    const int writes = scene.stores.preferences.writeCount();
    scene.drag(ServiceID::cursor, scene.slot(4));
    QCOMPARE(scene.place(ServiceID::copilot), 3);
    if (at.x() > scene.view.width()) {
        const QRegularExpression remark(u"outside target window"_s);
        QTest::ignoreMessage(QtWarningMsg, remark);
        QTest::ignoreMessage(QtWarningMsg, remark);
    }
    scene.moveTo(at);
    QCOMPARE(scene.place(ServiceID::copilot), 4);
    scene.release(at);
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
    for (int i = 0; i < 8; ++i) {
        QCOMPARE(scene.row(catalogOrder[std::size_t(i)])->y(), 34.0 * i);
    }
}

void SettingsViewTest::escapeCancelsADrag()
{
    Scene scene;
    scene.open();
    const int writes = scene.stores.preferences.writeCount();
    scene.drag(ServiceID::claude, scene.slot(3));
    scene.key(Qt::Key_Escape);
    QCOMPARE(scene.place(ServiceID::claude), 0);
    scene.moveTo(scene.slot(4));
    scene.release(scene.slot(4));
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
    QCOMPARE(scene.place(ServiceID::claude), 0);
    scene.dragAndDrop(ServiceID::claude, scene.slot(1));
    QCOMPARE(scene.place(ServiceID::claude), 1);
}

void SettingsViewTest::disabledServicesCanBeDraggedAndThePrimaryTagStays()
{
    Scene scene;
    scene.open();
    scene.dragAndDrop(ServiceID::gemini, scene.slot(0));
    QCOMPARE(scene.place(ServiceID::gemini), 0);
    QVERIFY(!scene.part(ServiceID::gemini, u"primaryTag"_s)->isVisible());
    QVERIFY(scene.part(ServiceID::claude, u"primaryTag"_s)->isVisible());
    scene.click(scene.part(ServiceID::gemini, u"box"_s));
    QVERIFY(scene.part(ServiceID::gemini, u"primaryTag"_s)->isVisible());
    QVERIFY(!scene.part(ServiceID::claude, u"primaryTag"_s)->isVisible());
}

void SettingsViewTest::theListScrollsAtItsEdgesWhileDragging()
{
    Scene scene;
    scene.open({400, 200});
    auto *area = scene.item(u"scrollArea"_s);
    scene.drag(ServiceID::claude, {38, 197});
    QTRY_VERIFY(area->property("contentY").toReal() > 60);
    scene.moveTo({38, 3});
    QTRY_COMPARE(area->property("contentY").toReal(), 0.0);
    scene.key(Qt::Key_Escape);
    scene.release({38, 3});
}

void SettingsViewTest::altWithTheArrowKeysMovesTheFocusedRow()
{
    Scene scene;
    scene.open();
    auto *row = scene.row(ServiceID::claude);
    QVERIFY(scene.tabTo(row));
    const int writes = scene.stores.preferences.writeCount();
    scene.key(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
    scene.key(Qt::Key_Down, Qt::AltModifier);
    scene.key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(scene.place(ServiceID::claude), 2);
    QCOMPARE(scene.stores.settings.serviceOrder()[2], ServiceID::claude);
    QCOMPARE(scene.view.activeFocusItem(), row);
    scene.key(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(scene.stores.settings.serviceOrder()[1], ServiceID::claude);
    scene.key(Qt::Key_Down);
    QCOMPARE(scene.view.activeFocusItem(), scene.row(ServiceID::cursor));
}

void SettingsViewTest::movedRowsGlideUnlessMotionIsReduced()
{
    Scene scene;
    scene.appearance.still = false;
    scene.open();
    scene.state.move(u"claude"_s, 7);
    QCOMPARE(scene.row(ServiceID::claude)->y(), 0.0);
    QTRY_COMPARE(scene.row(ServiceID::claude)->y(), 7 * 34.0);
    scene.appearance.setReduceMotion(true);
    scene.state.move(u"claude"_s, 0);
    QCOMPARE(scene.row(ServiceID::claude)->y(), 0.0);
}

void SettingsViewTest::theIntervalIsChosenByMouseAndArrowKeys()
{
    Scene scene;
    scene.open();
    QVERIFY(scene.item(u"segment-1"_s)->property("checked").toBool());
    scene.click(scene.item(u"segment-0"_s));
    QCOMPARE(scene.stores.settings.checkInterval(), CheckInterval::oneMinute);
    QCOMPARE(scene.item(u"thumb"_s)->x(), scene.item(u"segment-0"_s)->x());
    scene.key(Qt::Key_Right);
    QCOMPARE(scene.stores.settings.checkInterval(), CheckInterval::fiveMinutes);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"segment-1"_s));
    scene.key(Qt::Key_Left);
    QCOMPARE(scene.stores.settings.checkInterval(), CheckInterval::oneMinute);
    scene.stores.settings.setCheckInterval(CheckInterval::fiveMinutes);
    QVERIFY(scene.item(u"segment-1"_s)->property("checked").toBool());
    QVERIFY(!scene.item(u"segment-0"_s)->property("checked").toBool());
}

void SettingsViewTest::switchesWriteThroughAndFollowTheStore_data()
{
    using Read = bool (SettingsStore::*)() const;
    using Write = void (SettingsStore::*)(bool);
    QTest::addColumn<QString>("name");
    QTest::addColumn<Read>("read");
    QTest::addColumn<Write>("write");
    QTest::newRow("watching") << u"watchOnThisMac"_s << Read(&SettingsStore::watchOnThisMac)
                              << Write(&SettingsStore::setWatchOnThisMac);
    QTest::newRow("outage alerts") << u"outageAlerts"_s << Read(&SettingsStore::outageAlertsEnabled)
                                   << Write(&SettingsStore::setOutageAlertsEnabled);
    QTest::newRow("launch at login") << u"launchAtLogin"_s << Read(&SettingsStore::launchAtLogin)
                                     << Write(&SettingsStore::setLaunchAtLogin);
}

void SettingsViewTest::switchesWriteThroughAndFollowTheStore()
{
    using Read = bool (SettingsStore::*)() const;
    using Write = void (SettingsStore::*)(bool);
    QFETCH(QString, name);
    QFETCH(Read, read);
    QFETCH(Write, write);
    Scene scene;
    scene.open();
    auto &settings = scene.stores.settings;
    auto *row = scene.item(name);
    auto *knob = scene.item(name, u"knob"_s);
    const bool before = (settings.*read)();
    scene.click(scene.item(name, u"switch"_s));
    QCOMPARE((settings.*read)(), !before);
    QCOMPARE(row->property("isOn").toBool(), !before);
    QVERIFY(scene.tabTo(row));
    scene.key(Qt::Key_Space);
    QCOMPARE((settings.*read)(), before);
    scene.key(Qt::Key_Return);
    QCOMPARE((settings.*read)(), !before);
    (settings.*write)(true);
    QVERIFY(row->property("isOn").toBool());
    QCOMPARE(knob->x(), 15.0);
    (settings.*write)(false);
    QVERIFY(!row->property("isOn").toBool());
    QCOMPARE(knob->x(), 2.0);
}

void SettingsViewTest::awayFromYourMacCannotBeSwitchedOn()
{
    Scene scene;
    scene.open();
    auto *row = scene.item(u"watchAway"_s);
    const int writes = scene.stores.preferences.writeCount();
    scene.click(scene.item(u"watchAway"_s, u"switch"_s));
    QVERIFY(!row->property("isOn").toBool());
    QVERIFY(!scene.tabTo(row));
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
}

void SettingsViewTest::aRefusedLaunchAtLoginIsReverted()
{
    Scene scene;
    scene.stores.loginItem.refuses = true;
    scene.open();
    scene.click(scene.item(u"launchAtLogin"_s, u"switch"_s));
    QCOMPARE(scene.stores.loginItem.registrations, 1);
    QVERIFY(!scene.item(u"launchAtLogin"_s)->property("isOn").toBool());
    QCOMPARE(scene.item(u"launchAtLogin"_s, u"knob"_s)->x(), 2.0);
}

void SettingsViewTest::clickingThisMacArmsItAtOnceWithoutASheet()
{
    Scene scene;
    scene.stores.settings.setArmedChannel(RemoteChannel::slack);
    scene.open();
    scene.click(scene.channel(RemoteChannel::thisMac));
    QCOMPARE(scene.stores.settings.armedChannel(), RemoteChannel::thisMac);
    QVERIFY(scene.part(RemoteChannel::thisMac, u"checkmark"_s)->isVisible());
    QVERIFY(!scene.item(u"channelSheet"_s));
}

void SettingsViewTest::clickingEmailOrWhatsAppDoesNothing()
{
    Scene scene;
    scene.open();
    const int writes = scene.stores.preferences.writeCount();
    scene.click(scene.channel(RemoteChannel::email));
    scene.click(scene.channel(RemoteChannel::whatsapp));
    QVERIFY(!scene.item(u"channelSheet"_s));
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
}

void SettingsViewTest::channelRowsShowTheirStates()
{
    Scene scene;
    scene.open();
    const auto state = [&scene](RemoteChannel channel) { return scene.text(scene.part(channel, u"state"_s)); };
    QCOMPARE(state(RemoteChannel::thisMac), u"Always on"_s);
    QCOMPARE(state(RemoteChannel::slack), u"Not set up"_s);
    QCOMPARE(state(RemoteChannel::email), u"Coming later"_s);
    QCOMPARE(state(RemoteChannel::whatsapp), QString());
    scene.stores.settings.setSlackWebhookURL(u"x"_s);
    QCOMPARE(state(RemoteChannel::slack), u"Connected"_s);
    scene.stores.settings.setArmedChannel(RemoteChannel::slack);
    QCOMPARE(state(RemoteChannel::slack), u"Armed"_s);
    QVERIFY(scene.part(RemoteChannel::slack, u"checkmark"_s)->isVisible());
    QVERIFY(!scene.part(RemoteChannel::thisMac, u"checkmark"_s)->isVisible());
}

void SettingsViewTest::theRowOfThisMacTellsWhereNotificationsAreAllowed()
{
    Scene scene;
    scene.open();
    auto *row = scene.channel(RemoteChannel::thisMac);
    const auto help = [&scene](RemoteChannel channel) { return scene.part(channel, u"help"_s); };
    QVERIFY(!help(RemoteChannel::thisMac)->isVisible());
    QCOMPARE(row->height(), 34.0);
    const qreal lowHeight = scene.root()->implicitHeight();

    scene.stores.center.turnedOff = u"Settings › Notifications"_s;
    scene.state.refreshNotifications();
    layOut(scene.root());
    const auto words = u"Notifications are off. Allow them in Settings\u00a0› Notifications."_s;
    QVERIFY(help(RemoteChannel::thisMac)->isVisible());
    QCOMPARE(scene.words(help(RemoteChannel::thisMac)), words);
    QCOMPARE(scene.text(scene.part(RemoteChannel::thisMac, u"state"_s)), u"Always on"_s);
    QCOMPARE(accessibleName(row), u"This Mac, Always on"_s);
    QCOMPARE(accessible(row)->text(QAccessible::Description), u"Alerts go here. "_s + words);
    QVERIFY(!help(RemoteChannel::slack)->isVisible());
    QCOMPARE(scene.channel(RemoteChannel::slack)->height(), 34.0);
    QVERIFY(scene.frame(row).contains(scene.frame(help(RemoteChannel::thisMac))));
    QVERIFY(row->height() > 34);
    QCOMPARE(scene.root()->implicitHeight() - lowHeight, row->height() - 34);

    scene.stores.settings.setArmedChannel(RemoteChannel::slack);
    QCOMPARE(accessible(row)->text(QAccessible::Description), words);
    scene.stores.center.turnedOff.clear();
    scene.state.refreshNotifications();
    layOut(scene.root());
    QVERIFY(!help(RemoteChannel::thisMac)->isVisible());
    QCOMPARE(accessible(row)->text(QAccessible::Description), QString());
    QCOMPARE(scene.root()->implicitHeight(), lowHeight);
}

void SettingsViewTest::showOnboardingAgainRequestsTheOnboarding()
{
    Scene scene;
    scene.open();
    QSignalSpy asked(&scene.state, &SettingsState::onboardingRequested);
    scene.click(scene.item(u"showOnboarding"_s));
    QCOMPARE(asked.count(), 1);
}

void SettingsViewTest::everyControlIsReachedByTabInOrder()
{
    Scene scene;
    scene.open();
    QStringList reached;
    for (int i = 0; i < 16; ++i) {
        scene.key(Qt::Key_Tab);
        reached.append(scene.view.activeFocusItem()->objectName());
    }
    QCOMPARE(
        reached,
        (QStringList{u"service-claude"_s, u"service-chatgpt"_s, u"service-cursor"_s, u"service-gemini"_s,
                     u"service-copilot"_s, u"service-anthropicAPI"_s, u"service-openaiAPI"_s, u"service-claudeCode"_s,
                     u"segment-1"_s, u"watchOnThisMac"_s, u"channel-thisMac"_s, u"channel-slack"_s,
                     u"channel-telegram"_s, u"outageAlerts"_s, u"launchAtLogin"_s, u"showOnboarding"_s}));
}

void SettingsViewTest::spaceAndEnterOperateTheRows()
{
    Scene scene;
    scene.open();
    QVERIFY(scene.tabTo(scene.row(ServiceID::chatgpt)));
    scene.key(Qt::Key_Space);
    QVERIFY(scene.stores.settings.enabledServices().contains(ServiceID::chatgpt));
    scene.key(Qt::Key_Return);
    QVERIFY(!scene.stores.settings.enabledServices().contains(ServiceID::chatgpt));
    QVERIFY(scene.tabTo(scene.channel(RemoteChannel::telegram)));
    scene.key(Qt::Key_Return);
    QVERIFY(scene.item(u"channelSheet"_s));
}

void SettingsViewTest::theFocusIsVisibleAndScrolledIntoView()
{
    Scene scene;
    scene.open({400, 300});
    auto *row = scene.item(u"launchAtLogin"_s);
    QVERIFY(scene.frame(row).top() > 300);
    QVERIFY(scene.tabTo(row));
    QVERIFY(QRectF(0, 0, 400, 300).contains(scene.frame(row)));
    QVERIFY(scene.item(u"launchAtLogin"_s, u"focusRing"_s)->isVisible());
    QVERIFY(scene.tabTo(scene.row(ServiceID::claude)));
    QVERIFY(QRectF(0, 0, 400, 300).contains(scene.frame(scene.row(ServiceID::claude))));
    QVERIFY(!scene.item(u"launchAtLogin"_s, u"focusRing"_s)->isVisible());
}

void SettingsViewTest::aScreenReaderSeesNamesRolesAndStates()
{
    Scene scene;
    scene.open();
    auto *claude = accessible(scene.row(ServiceID::claude));
    QCOMPARE(claude->role(), QAccessible::CheckBox);
    QCOMPARE(claude->text(QAccessible::Name), u"Claude, primary"_s);
    QCOMPARE(claude->text(QAccessible::Description), u"watched"_s);
    QVERIFY(claude->state().checked);
    QVERIFY(claude->state().focusable);
    auto *gemini = accessible(scene.row(ServiceID::gemini));
    QCOMPARE(gemini->text(QAccessible::Name), u"Gemini"_s);
    QCOMPARE(gemini->text(QAccessible::Description), u"not watched"_s);
    QVERIFY(gemini->state().checkable);
    QVERIFY(!gemini->state().checked);
    QCOMPARE(claude->childCount(), 0);

    auto *segment = accessible(scene.item(u"segment-1"_s));
    QCOMPARE(segment->role(), QAccessible::RadioButton);
    QCOMPARE(segment->text(QAccessible::Name), u"5 minutes"_s);
    QVERIFY(segment->state().checked);
    QVERIFY(!accessible(scene.item(u"segment-0"_s))->state().checked);

    auto *watching = accessible(scene.item(u"watchOnThisMac"_s));
    QCOMPARE(watching->role(), QAccessible::CheckBox);
    QCOMPARE(watching->text(QAccessible::Name), u"On this Mac"_s);
    QVERIFY(watching->state().checked);
    scene.stores.settings.setWatchOnThisMac(false);
    QVERIFY(!watching->state().checked);
    QCOMPARE(watching->childCount(), 0);

    auto *slack = accessible(scene.channel(RemoteChannel::slack));
    QCOMPARE(slack->role(), QAccessible::Button);
    QCOMPARE(slack->text(QAccessible::Name), u"Slack, Not set up"_s);
    QCOMPARE(accessibleName(scene.item(u"showOnboarding"_s)), u"Show onboarding again"_s);
    QCOMPARE(accessibleName(scene.item(u"servicesHeading"_s)), u"Services · drag to order"_s);
}

void SettingsViewTest::aScreenReaderCanOperate()
{
    Scene scene;
    scene.open();
    accessible(scene.row(ServiceID::gemini))->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(scene.stores.settings.enabledServices().contains(ServiceID::gemini));
    accessible(scene.item(u"outageAlerts"_s))->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(scene.stores.settings.outageAlertsEnabled());
    QVERIFY(accessible(scene.item(u"outageAlerts"_s))->state().checked);
}

void SettingsViewTest::aScreenReaderSeesEveryChangeOfASwitch()
{
    Scene scene;
    scene.open();
    auto *row = scene.item(u"launchAtLogin"_s);
    const auto *switchOfRow = accessible(row);
    const auto isOn = [switchOfRow] { return bool(switchOfRow->state().checked); };
    QVERIFY(!isOn());
    scene.click(row);
    QVERIFY(isOn());
    scene.key(Qt::Key_Space);
    QVERIFY(!isOn());
    scene.key(Qt::Key_Return);
    QVERIFY(isOn());
    accessible(row)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!isOn());
    scene.stores.settings.setLaunchAtLogin(true);
    QVERIFY(isOn());
    scene.stores.settings.setLaunchAtLogin(false);
    QVERIFY(!isOn());
    scene.stores.loginItem.refuses = true;
    scene.click(row);
    QVERIFY(!isOn());
    QVERIFY(switchOfRow->state().checkable);
    QCOMPARE(switchOfRow->role(), QAccessible::CheckBox);
    QCOMPARE(switchOfRow->text(QAccessible::Name), u"Launch at login"_s);
}

void SettingsViewTest::aScreenReaderHearsWhereAServiceMoves()
{
    Scene scene;
    scene.open();
    QVERIFY(scene.tabTo(scene.row(ServiceID::cursor)));
    Announcements announcements(scene.item(u"announcer"_s));
    scene.key(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(announcements.take(), QStringList{u"Cursor, 2 of 8"_s});
    scene.key(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(announcements.take(), QStringList{u"Cursor, 1 of 8"_s});
    scene.key(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(announcements.take(), QStringList());
    scene.dragAndDrop(ServiceID::cursor, scene.slot(7));
    QCOMPARE(announcements.take(), QStringList{u"Cursor, 8 of 8"_s});
}

void SettingsViewTest::groupsHaveNames()
{
    Scene scene;
    scene.open();
    const auto group = [](QQuickItem *of) {
        const auto *parent = accessible(of)->parent();
        return parent->role() == QAccessible::Grouping ? parent->text(QAccessible::Name) : QString();
    };
    QCOMPARE(group(scene.row(ServiceID::claude)), u"Services · drag to order"_s);
    QCOMPARE(group(scene.item(u"segment-0"_s)), u"Check every"_s);
    QCOMPARE(group(scene.item(u"watchOnThisMac"_s)), u"Watching"_s);
    QCOMPARE(group(scene.channel(RemoteChannel::slack)), u"Tell me where"_s);
}

void SettingsViewTest::theReorderingKeysAreTold()
{
    Scene scene;
    scene.open();
    auto *told = scene.item(u"reorderingKeys"_s);
    QCOMPARE(scene.words(told), u"Drag a service, or press Alt and an arrow key, to move it."_s);
    QVERIFY(told->isVisible());
    QCOMPARE(accessible(told)->role(), QAccessible::StaticText);
}

void SettingsViewTest::quietButtonsAreLargeEnoughToHit()
{
    Scene scene;
    scene.open();
    auto *button = scene.item(u"showOnboarding"_s);
    const auto frame = scene.frame(button);
    QVERIFY(frame.height() >= 24);
    // The layout depends on the title only.
    QVERIFY(std::abs(frame.center().y() + button->property("implicitContentHeight").toReal() / 2
                     - (scene.root()->implicitHeight() - 22))
            <= 0.5);
    const QSignalSpy requested(&scene.state, &SettingsState::onboardingRequested);
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, frame.topLeft().toPoint() + QPoint(4, 1));
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, frame.bottomLeft().toPoint() + QPoint(4, -2));
    QCOMPARE(requested.count(), 2);
}

void SettingsViewTest::controlsThatAreOffCanBeSeen_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void SettingsViewTest::controlsThatAreOffCanBeSeen()
{
    QFETCH(bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.stores.settings.setOutageAlertsEnabled(false);
    scene.open();
    const auto image = picture(scene.view);
    const auto at = [&image](QPointF point) { return image.pixelColor((point * image.devicePixelRatio()).toPoint()); };
    const auto edge = [&](QQuickItem *control) {
        const auto frame = scene.frame(control);
        return at({frame.center().x(), frame.top()});
    };
    const auto card = scene.tokens.card();
    QVERIFY(contrast(edge(scene.part(ServiceID::gemini, u"box"_s)), card) >= 3);
    QVERIFY(contrast(edge(scene.item(u"outageAlerts"_s, u"switch"_s)), card) >= 3);
    const auto chosen = scene.frame(u"segment-1"_s);
    const auto other = scene.frame(u"segment-0"_s);
    QVERIFY(contrast(at(chosen.topLeft() + QPointF(6, 15)), at(other.topLeft() + QPointF(6, 15))) >= 1.14);
    QVERIFY(at(chosen.topLeft() + QPointF(6, 15)).lightness() > at(other.topLeft() + QPointF(6, 15)).lightness());
}

void SettingsViewTest::theWheelScrollsASmallWindow()
{
    Scene scene;
    scene.open({400, 300});
    auto *area = scene.item(u"scrollArea"_s);
    QWheelEvent down({200, 150}, {200, 150}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&scene.view, &down);
    QCOMPARE(area->property("contentY").toReal(), 54.0);
    scene.key(Qt::Key_PageUp);
    QCOMPARE(area->property("contentY").toReal(), 0.0);
    QTest::mousePress(&scene.view, Qt::LeftButton, {}, {200, 250});
    scene.moveTo({200, 150});
    scene.release({200, 100});
    QCOMPARE(area->property("contentY").toReal(), 0.0);
}

void SettingsViewTest::coloursFollowTheAppearanceWhileOpen()
{
    Scene scene;
    scene.open();
    const auto ink = [&scene] { return scene.part(ServiceID::claude, u"name"_s)->property("color").value<QColor>(); };
    QCOMPARE(ink().rgb(), QColor(Qt::black).rgb());
    scene.appearance.setDark(true);
    QCOMPARE(ink().rgb(), QColor(Qt::white).rgb());
}

void SettingsViewTest::everythingIsMirroredInARightToLeftLayout()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    const auto restore = qScopeGuard([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
    Scene scene;
    scene.open();
    QCOMPARE(scene.frame(scene.part(ServiceID::claude, u"box"_s)).left(), 22.0 + 12);
    QVERIFY(scene.frame(scene.part(ServiceID::claude, u"handle"_s)).left() > 300);
    QCOMPARE(scene.frame(scene.item(u"watchOnThisMac"_s, u"switch"_s)).left(), 22.0 + 12);
    QCOMPARE(scene.item(u"watchOnThisMac"_s, u"knob"_s)->x(), 2.0);
    QCOMPARE(scene.frame(u"interval"_s).right(), 378.0);
    QCOMPARE(scene.item(u"thumb"_s)->x(), scene.item(u"segment-1"_s)->x());
    QVERIFY(scene.item(u"segment-1"_s)->x() < scene.item(u"segment-0"_s)->x());
    QCOMPARE(scene.frame(u"hint"_s).left(), 22.0);
}

void SettingsViewTest::matchesTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void SettingsViewTest::matchesTheGoldenPictures()
{
    QFETCH(bool, dark);
    Scene scene(settingsLookServices);
    scene.appearance.dark = dark;
    bringAboutSettingsLook(scene.stores.settings);
    scene.open();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view), u"settings-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void SettingsViewTest::statesMatchTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void SettingsViewTest::statesMatchTheGoldenPictures()
{
    QFETCH(bool, dark);
    Scene scene(settingsLookServices);
    scene.appearance.dark = dark;
    bringAboutSettingsLook(scene.stores.settings);
    scene.open();
    StatePictures states(scene);
    for (const auto id : {ServiceID::claude, ServiceID::gemini}) {
        states.addHovered(scene.row(id));
        states.addPressed(scene.row(id));
    }
    states.addHovered(scene.row(ServiceID::gemini), scene.part(ServiceID::gemini, u"handle"_s));
    states.addFocused(scene.row(ServiceID::claude));
    states.addHovered(scene.item(u"interval"_s), scene.item(u"segment-0"_s));
    states.addFocused(scene.item(u"segment-1"_s));
    states.addStates(scene.item(u"outageAlerts"_s));
    states.addStates(scene.item(u"launchAtLogin"_s));
    states.addStates(scene.channel(RemoteChannel::slack));
    scene.stores.center.turnedOff = u"System Settings › Notifications"_s;
    scene.state.refreshNotifications();
    states.addStates(scene.channel(RemoteChannel::thisMac));
    scene.stores.center.turnedOff.clear();
    scene.state.refreshNotifications();
    states.addStates(scene.item(u"showOnboarding"_s));
    scene.drag(ServiceID::gemini, scene.slot(1) + QPoint(0, 8));
    states.add(scene.item(u"servicesCard"_s));
    scene.key(Qt::Key_Escape);
    scene.release(scene.slot(1));
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(states.picture(), u"settings-states-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void SettingsViewTest::highContrastMatchesTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void SettingsViewTest::highContrastMatchesTheGoldenPictures()
{
    QFETCH(bool, dark);
    Scene scene(settingsLookServices);
    scene.appearance.dark = dark;
    scene.appearance.contrast = true;
    bringAboutSettingsLook(scene.stores.settings);
    scene.open();
    QVERIFY(scene.tabTo(scene.row(ServiceID::cursor)));
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view),
                               u"settings-high-contrast-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::SettingsViewTest)
#include "tst_settingsview.moc"
