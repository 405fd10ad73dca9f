#include "support/Stores.h"

#include "windows/settings/SettingsState.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

using Order = std::vector<ServiceID>;

struct World : Stores
{
    explicit World(const std::vector<ServiceID> &watched = {ServiceID::claude})
        : Stores({watched})
    {
        settings.setServiceOrder({allServiceIDs.begin(), allServiceIDs.end()});
    }

    void move(ServiceID id, int to) { state.move(rawValue(id), to); }
    void toggle(ServiceID id) { state.toggle(rawValue(id)); }
    QVariant shown(int row, int role) { return state.services()->data(state.services()->index(row), role); }
    QStringList shownOrder()
    {
        QStringList order;
        for (int row = 0; row < state.services()->rowCount(); ++row) {
            order.append(shown(row, ServiceListModel::serviceRole).toString());
        }
        return order;
    }

    SettingsState state{settings, notifier};
    QAbstractItemModelTester services{state.services(), QAbstractItemModelTester::FailureReportingMode::QtTest};
    QAbstractItemModelTester channels{state.channels(), QAbstractItemModelTester::FailureReportingMode::QtTest};
};

} // namespace

class SettingsStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLastWatchedServiceStaysOn();
    void oneOfTwoWatchedServicesCanBeTurnedOff();
    void togglingAnUnwatchedServiceTurnsItOn();
    void movingPutsAServiceAtThePosition_data();
    void movingPutsAServiceAtThePosition();
    void movingToItsOwnPositionWritesNothing();
    void aDisabledServiceMovesLikeAnyOther();
    void theFirstEnabledServiceIsThePrimary();
    void aServiceTwiceInTheOrderIsShownTwiceAndOnceAsThePrimary();
    void unknownNamesAreIgnored();
    void tappingThisMacArmsItWithoutASheet();
    void tappingSlackOrTelegramOpensItsSheetAndArmsNothing();
    void tappingEmailOrWhatsAppDoesNothing();
    void channelsShowTheirStates();
    void everyChannelIsShownAgainWhenItsStateMayHaveChanged();
    void theNoteOnHiddenNotificationsBelongsToThisMac();
    void theNoteFollowsThePermission();
    void theListsHaveNoDataForAnInvalidIndexOrAnUnknownRole();
    void noRowHasRowsBelowIt();
    void aRefusedLoginItemIsReverted();
    void theIntervalIsWrittenOnlyWhenChosen();
    void theIntervalsHaveTitles();
};

void SettingsStateTest::theLastWatchedServiceStaysOn()
{
    World world;
    const int writes = world.preferences.writeCount();
    world.toggle(ServiceID::claude);
    QCOMPARE(world.settings.enabledServices(), std::set{ServiceID::claude});
    QCOMPARE(world.preferences.writeCount(), writes);
}

void SettingsStateTest::oneOfTwoWatchedServicesCanBeTurnedOff()
{
    World world({ServiceID::claude, ServiceID::cursor});
    world.toggle(ServiceID::claude);
    QCOMPARE(world.settings.enabledServices(), std::set{ServiceID::cursor});
}

void SettingsStateTest::togglingAnUnwatchedServiceTurnsItOn()
{
    World world;
    world.toggle(ServiceID::gemini);
    QCOMPARE(world.settings.enabledServices(), (std::set{ServiceID::claude, ServiceID::gemini}));
    QCOMPARE(world.shown(3, ServiceListModel::isOnRole).toBool(), true);
}

void SettingsStateTest::movingPutsAServiceAtThePosition_data()
{
    using enum ServiceID;
    QTest::addColumn<ServiceID>("id");
    QTest::addColumn<int>("to");
    QTest::addColumn<Order>("order");
    QTest::newRow("to the top") << cursor << 0
                                << Order{cursor, claude, chatgpt, gemini, copilot, anthropicAPI, openaiAPI, claudeCode};
    QTest::newRow("down") << claude << 2
                          << Order{chatgpt, cursor, claude, gemini, copilot, anthropicAPI, openaiAPI, claudeCode};
    QTest::newRow("to the end") << claude << 7
                                << Order{chatgpt, cursor, gemini, copilot, anthropicAPI, openaiAPI, claudeCode, claude};
    QTest::newRow("before the start is first")
        << gemini << -1 << Order{gemini, claude, chatgpt, cursor, copilot, anthropicAPI, openaiAPI, claudeCode};
    QTest::newRow("beyond the end is last")
        << claude << 12 << Order{chatgpt, cursor, gemini, copilot, anthropicAPI, openaiAPI, claudeCode, claude};
}

void SettingsStateTest::movingPutsAServiceAtThePosition()
{
    QFETCH(ServiceID, id);
    QFETCH(int, to);
    QFETCH(Order, order);
    World world;
    world.move(id, to);
    QCOMPARE(world.settings.serviceOrder(), order);
    QStringList raw;
    for (const auto service : order) {
        raw.append(rawValue(service));
    }
    QCOMPARE(world.shownOrder(), raw);
}

void SettingsStateTest::movingToItsOwnPositionWritesNothing()
{
    World world;
    const int writes = world.preferences.writeCount();
    world.move(ServiceID::cursor, 2);
    QCOMPARE(world.preferences.writeCount(), writes);
}

void SettingsStateTest::aDisabledServiceMovesLikeAnyOther()
{
    World world;
    world.move(ServiceID::gemini, 0);
    QCOMPARE(world.settings.serviceOrder().front(), ServiceID::gemini);
    QCOMPARE(world.shown(0, ServiceListModel::isPrimaryRole).toBool(), false);
    QCOMPARE(world.shown(1, ServiceListModel::isPrimaryRole).toBool(), true);
    QCOMPARE(world.settings.enabledServices(), std::set{ServiceID::claude});
}

void SettingsStateTest::theFirstEnabledServiceIsThePrimary()
{
    World world({ServiceID::chatgpt, ServiceID::gemini});
    QCOMPARE(world.shown(1, ServiceListModel::isPrimaryRole).toBool(), true);
    world.toggle(ServiceID::chatgpt);
    QCOMPARE(world.shown(1, ServiceListModel::isPrimaryRole).toBool(), false);
    QCOMPARE(world.shown(3, ServiceListModel::isPrimaryRole).toBool(), true);
}

void SettingsStateTest::aServiceTwiceInTheOrderIsShownTwiceAndOnceAsThePrimary()
{
    World world;
    world.settings.setServiceOrder({ServiceID::gemini, ServiceID::claude, ServiceID::claude});
    QCOMPARE(world.shownOrder(), (QStringList{u"gemini"_s, u"claude"_s, u"claude"_s}));
    QCOMPARE(world.shown(1, ServiceListModel::isPrimaryRole).toBool(), true);
    QCOMPARE(world.shown(2, ServiceListModel::isPrimaryRole).toBool(), false);
}

void SettingsStateTest::unknownNamesAreIgnored()
{
    World world;
    const int writes = world.preferences.writeCount();
    world.state.toggle(u"Claude"_s);
    world.state.move(u"Claude"_s, 3);
    world.state.tapChannel(u"Slack"_s);
    QCOMPARE(world.preferences.writeCount(), writes);
    QVERIFY(!world.state.channelSheet());
}

void SettingsStateTest::tappingThisMacArmsItWithoutASheet()
{
    World world;
    world.settings.setArmedChannel(RemoteChannel::slack);
    world.state.tapChannel(u"thisMac"_s);
    QCOMPARE(world.settings.armedChannel(), RemoteChannel::thisMac);
    QVERIFY(!world.state.channelSheet());
}

void SettingsStateTest::tappingSlackOrTelegramOpensItsSheetAndArmsNothing()
{
    World world;
    const int writes = world.preferences.writeCount();
    world.state.tapChannel(u"slack"_s);
    QCOMPARE(world.state.channelSheet()->title(), u"Slack"_s);
    world.state.tapChannel(u"telegram"_s);
    QCOMPARE(world.state.channelSheet()->title(), u"Telegram"_s);
    world.state.dismissSheet();
    QVERIFY(!world.state.channelSheet());
    QCOMPARE(world.preferences.writeCount(), writes);
}

void SettingsStateTest::tappingEmailOrWhatsAppDoesNothing()
{
    World world;
    const int writes = world.preferences.writeCount();
    world.state.tapChannel(u"email"_s);
    world.state.tapChannel(u"whatsapp"_s);
    QVERIFY(!world.state.channelSheet());
    QCOMPARE(world.preferences.writeCount(), writes);
}

void SettingsStateTest::channelsShowTheirStates()
{
    World world;
    const auto states = [&world] {
        QStringList texts;
        auto *channels = world.state.channels();
        for (int row = 0; row < channels->rowCount(); ++row) {
            texts.append(channels->data(channels->index(row), ChannelListModel::stateRole).toString());
        }
        return texts;
    };
    QCOMPARE(states(), (QStringList{u"Always on"_s, u"Not set up"_s, u"Not set up"_s, u"Coming later"_s, QString()}));
    QSignalSpy changes(world.state.channels(), &QAbstractItemModel::dataChanged);
    world.settings.setSlackWebhookURL(u" "_s);
    world.settings.setTelegramBotToken(u"t"_s);
    QCOMPARE(states().mid(1, 2), (QStringList{u"Connected"_s, u"Not set up"_s}));
    world.settings.setTelegramChatID(u"-1"_s);
    world.settings.setArmedChannel(RemoteChannel::telegram);
    QCOMPARE(states().mid(1, 2), (QStringList{u"Connected"_s, u"Armed"_s}));
    QCOMPARE(changes.count(), 4);
}

void SettingsStateTest::everyChannelIsShownAgainWhenItsStateMayHaveChanged()
{
    World world;
    auto *channels = world.state.channels();
    const QSignalSpy changes(channels, &QAbstractItemModel::dataChanged);
    world.settings.setArmedChannel(RemoteChannel::slack);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), channels->index(0));
    QCOMPARE(changes.at(0).at(1).toModelIndex(), channels->index(4));
    QCOMPARE(changes.at(0).at(2).value<QList<int>>(),
             (QList<int>{ChannelListModel::stateRole, ChannelListModel::isArmedRole}));
}

void SettingsStateTest::theNoteOnHiddenNotificationsBelongsToThisMac()
{
    World world;
    auto *channels = world.state.channels();
    const auto help = [channels](int row) {
        return channels->data(channels->index(row), ChannelListModel::helpRole).toString();
    };
    const QSignalSpy changes(channels, &QAbstractItemModel::dataChanged);
    channels->setNotificationsTurnedOffIn(u"Settings › Notifications › Kelvo"_s);
    QCOMPARE(help(0), u"Notifications are off. Allow them in Settings\u00a0› Notifications\u00a0› Kelvo."_s);
    for (int row = 1; row < 5; ++row) {
        QCOMPARE(help(row), QString());
    }
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), channels->index(0));
    QVERIFY(changes.at(0).at(1).toModelIndex().isValid());
    QCOMPARE(changes.at(0).at(2).value<QList<int>>(), QList<int>{ChannelListModel::helpRole});

    channels->setNotificationsTurnedOffIn(u"Settings › Notifications › Kelvo"_s);
    QCOMPARE(changes.count(), 1);
    channels->setNotificationsTurnedOffIn({});
    QCOMPARE(help(0), QString());
    QCOMPARE(changes.count(), 2);
}

void SettingsStateTest::theNoteFollowsThePermission()
{
    World world;
    const auto help = [&world] {
        auto *channels = world.state.channels();
        return channels->data(channels->index(0), ChannelListModel::helpRole).toString();
    };
    settle();
    QCOMPARE(help(), QString());
    world.center.turnedOff = u"Settings"_s;
    world.center.status = AuthorizationStatus::denied;
    world.notifier.requestAuthorization();
    settle();
    QCOMPARE(help(), u"Notifications are off. Allow them in Settings."_s);
}

void SettingsStateTest::noRowHasRowsBelowIt()
{
    World world;
    QCOMPARE(world.state.services()->rowCount(world.state.services()->index(0)), 0);
    QCOMPARE(world.state.channels()->rowCount(world.state.channels()->index(0)), 0);
}

void SettingsStateTest::theListsHaveNoDataForAnInvalidIndexOrAnUnknownRole()
{
    World world;
    const QList<QAbstractItemModel *> lists{world.state.services(), world.state.channels()};
    for (const auto *list : lists) {
        const auto role = list->roleNames().keys().constFirst();
        QVERIFY(list->data(list->index(0, 0), role).isValid());
        QVERIFY(!list->data(list->index(0, 0), Qt::DecorationRole).isValid());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Index .* is not valid"_s));
        QVERIFY(!list->data({}, role).isValid());
    }
}

void SettingsStateTest::aRefusedLoginItemIsReverted()
{
    World world;
    world.loginItem.refuses = true;
    world.state.setLaunchAtLogin(true);
    QCOMPARE(world.loginItem.registrations, 1);
    QVERIFY(!world.state.launchAtLogin());
}

void SettingsStateTest::theIntervalIsWrittenOnlyWhenChosen()
{
    World world;
    QVERIFY(!world.preferences.contains(u"checkInterval"_s));
    QCOMPARE(world.state.checkInterval(), 1);
    world.state.setCheckInterval(0);
    QCOMPARE(world.settings.checkInterval(), CheckInterval::oneMinute);
    QCOMPARE(world.preferences.integer(u"checkInterval"_s), 60);
}

void SettingsStateTest::theIntervalsHaveTitles()
{
    World world;
    QCOMPARE(world.state.checkIntervals(), (QStringList{u"1 minute"_s, u"5 minutes"_s}));
    world.settings.setCheckInterval(CheckInterval::oneMinute);
    QCOMPARE(world.state.checkIntervals().at(world.state.checkInterval()), u"1 minute"_s);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::SettingsStateTest)
#include "tst_settingsstate.moc"
