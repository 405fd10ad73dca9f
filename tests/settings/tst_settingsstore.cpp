#include "settings/SettingsStore.h"
#include "support/FakeLoginItem.h"
#include "support/MemoryPreferences.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Order = std::vector<ServiceID>;
using Enabled = std::set<ServiceID>;
using Value = MemoryPreferences::Value;

const Order catalogueOrder(allServiceIDs.begin(), allServiceIDs.end());

/// Preferences and a login item for a store under test.
struct Fixture
{
    MemoryPreferences defaults;
    FakeLoginItem loginItem;

    std::unique_ptr<SettingsStore> load() { return std::make_unique<SettingsStore>(defaults, loginItem); }
};

QStringList rawValues(const Order &order)
{
    QStringList raw;
    for (const auto id : order) {
        raw.append(rawValue(id));
    }
    return raw;
}

/// One published field: how a test sets it, the value that it then has, and the stored key and value.
struct Field
{
    const char *key;
    Value stored;
    std::function<void(SettingsStore &)> write;
    std::function<bool(const SettingsStore &)> isWritten;
    void (SettingsStore::*notifier)();
};

const std::vector<Field> &fields()
{
    static const std::vector<Field> all{
        {"hasOnboarded", true, [](auto &s) { s.setHasOnboarded(true); }, [](auto &s) { return s.hasOnboarded(); },
         &SettingsStore::hasOnboardedChanged},
        {"serviceOrder", QStringList{u"claudeCode"_s, u"anthropicAPI"_s},
         [](auto &s) { s.setServiceOrder({ServiceID::claudeCode, ServiceID::anthropicAPI}); },
         [](auto &s) { return s.serviceOrder() == Order{ServiceID::claudeCode, ServiceID::anthropicAPI}; },
         &SettingsStore::serviceOrderChanged},
        {"enabledServices", QStringList{u"openaiAPI"_s}, [](auto &s) { s.setEnabledServices({ServiceID::openaiAPI}); },
         [](auto &s) { return s.enabledServices() == Enabled{ServiceID::openaiAPI}; },
         &SettingsStore::enabledServicesChanged},
        {"checkInterval", 60, [](auto &s) { s.setCheckInterval(CheckInterval::oneMinute); },
         [](auto &s) { return s.checkInterval() == CheckInterval::oneMinute; }, &SettingsStore::checkIntervalChanged},
        {"watchOnThisMac", false, [](auto &s) { s.setWatchOnThisMac(false); },
         [](auto &s) { return !s.watchOnThisMac(); }, &SettingsStore::watchOnThisMacChanged},
        {"outageAlertsEnabled", true, [](auto &s) { s.setOutageAlertsEnabled(true); },
         [](auto &s) { return s.outageAlertsEnabled(); }, &SettingsStore::outageAlertsEnabledChanged},
        {"armedChannel", u"telegram"_s, [](auto &s) { s.setArmedChannel(RemoteChannel::telegram); },
         [](auto &s) { return s.armedChannel() == RemoteChannel::telegram; }, &SettingsStore::armedChannelChanged},
        {"slackWebhookURL", u" https://hooks.example/ x "_s,
         [](auto &s) { s.setSlackWebhookURL(u" https://hooks.example/ x "_s); },
         [](auto &s) { return s.slackWebhookURL() == u" https://hooks.example/ x "_s; },
         &SettingsStore::slackWebhookURLChanged},
        {"slackChannelLabel", u"#ops’ “alerts”"_s, [](auto &s) { s.setSlackChannelLabel(u"#ops’ “alerts”"_s); },
         [](auto &s) { return s.slackChannelLabel() == u"#ops’ “alerts”"_s; },
         &SettingsStore::slackChannelLabelChanged},
        {"telegramBotToken", u"123:abc\n"_s, [](auto &s) { s.setTelegramBotToken(u"123:abc\n"_s); },
         [](auto &s) { return s.telegramBotToken() == u"123:abc\n"_s; }, &SettingsStore::telegramBotTokenChanged},
        {"telegramChatID", u"-100123"_s, [](auto &s) { s.setTelegramChatID(u"-100123"_s); },
         [](auto &s) { return s.telegramChatID() == u"-100123"_s; }, &SettingsStore::telegramChatIDChanged},
    };
    return all;
}

/// Whether `value`, of any type, is stored under `key`.
bool holds(const MemoryPreferences &defaults, const QString &key, const Value &value)
{
    return std::visit(
        [&]<typename T>(const T &expected) {
            if constexpr (std::is_same_v<T, bool>) {
                return defaults.boolean(key) == expected;
            } else if constexpr (std::is_same_v<T, int>) {
                return defaults.integer(key) == expected;
            } else if constexpr (std::is_same_v<T, QString>) {
                return defaults.text(key) == expected;
            } else {
                return defaults.texts(key) == expected;
            }
        },
        value);
}

void verifyFirstRunValues(const SettingsStore &store)
{
    QCOMPARE(store.hasOnboarded(), false);
    QCOMPARE(store.serviceOrder(), catalogueOrder);
    QCOMPARE(store.enabledServices(), Enabled{ServiceID::claude});
    QCOMPARE(store.checkInterval(), CheckInterval::fiveMinutes);
    QCOMPARE(store.watchOnThisMac(), true);
    QCOMPARE(store.outageAlertsEnabled(), false);
    QCOMPARE(store.armedChannel(), RemoteChannel::thisMac);
    QCOMPARE(store.slackWebhookURL(), QString());
    QCOMPARE(store.slackChannelLabel(), QString());
    QCOMPARE(store.telegramBotToken(), QString());
    QCOMPARE(store.telegramChatID(), QString());
    QCOMPARE(store.primaryService().value().id, ServiceID::claude);
    QCOMPARE(store.watchedServices(), std::vector<Service>{Service::by(ServiceID::claude)});
}

} // namespace

class SettingsStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFirstRunHasTheDefaults();
    void loadingWritesNothing();
    void theStoredOrderIsRead_data();
    void theStoredOrderIsRead();
    void theStoredEnabledServicesAreRead_data();
    void theStoredEnabledServicesAreRead();
    void aStoredEmptySetIsNotReplacedByTheDefault();
    void theStoredIntervalIsRead_data();
    void theStoredIntervalIsRead();
    void anUnknownIntervalIsKeptOnDiskUntilTheUserChangesIt();
    void theStoredChannelIsRead_data();
    void theStoredChannelIsRead();
    void theStoredSwitchesAndTextsAreRead();
    void malformedValuesAreReplacedByTheDefaults_data();
    void malformedValuesAreReplacedByTheDefaults();
    void aWriteIsStoredUnderItsOwnKeyOnly_data();
    void aWriteIsStoredUnderItsOwnKeyOnly();
    void aWriteIsReadInTheNextRun_data();
    void aWriteIsReadInTheNextRun();
    void aWriteIsPublishedBeforeAndNotifiedAfter_data();
    void aWriteIsPublishedBeforeAndNotifiedAfter();
    void anEqualValueIsPublishedAndStoredToo();
    void emptyListsAreStoredAsEmptyLists();
    void watchedServicesFollowTheOrder();
    void aServiceTwiceInTheOrderIsWatchedTwice();
    void thePrimaryServiceIsTheFirstEnabledOne();
    void setPrimaryMovesAndEnables();
    void setPrimaryWritesTheOrderTwiceAndTheEnabledServicesOnce();
    void setPrimaryRemovesEveryDuplicate();
    void setPrimaryOfThePrimaryChangesNothing();
    void launchAtLoginMirrorsTheSystem();
    void launchAtLoginFollowsTheSystem();
    void launchAtLoginRegistersAndUnregisters();
    void aRefusedRegistrationIsReverted();
    void aRefusedRemovalIsReverted();
    void aRefusedRegistrationPublishesBothChanges();
    void launchAtLoginCanBeSetAfterARefusal();
    void launchAtLoginIsNotStored();
    void theLabelNamesTheArmedChannel_data();
    void theLabelNamesTheArmedChannel();
    void aChannelIsConfiguredWhenItsTextsAreSet_data();
    void aChannelIsConfiguredWhenItsTextsAreSet();
    void eachChannelHasItsStateText_data();
    void eachChannelHasItsStateText();
    void armingAnotherChannelLeavesTheFirstConnected();
    void intervalsHaveTheirSecondsAndTitles();
    void channelsHaveTheirRawValuesAndTitles_data();
    void channelsHaveTheirRawValuesAndTitles();
};

void SettingsStoreTest::aFirstRunHasTheDefaults()
{
    Fixture fixture;
    const auto store = fixture.load();
    verifyFirstRunValues(*store);
    QCOMPARE(store->launchAtLogin(), false);
}

void SettingsStoreTest::loadingWritesNothing()
{
    Fixture fixture;
    fixture.defaults.place(u"serviceOrder"_s, QStringList{u"gemini"_s, u"netscape"_s});
    fixture.defaults.place(u"checkInterval"_s, 120);
    fixture.defaults.place(u"armedChannel"_s, u"pager"_s);
    fixture.load();
    QCOMPARE(fixture.defaults.writeCount(), 0);
    QCOMPARE(fixture.defaults.keys(), (QStringList{u"armedChannel"_s, u"checkInterval"_s, u"serviceOrder"_s}));
    QCOMPARE(fixture.loginItem.registrations + fixture.loginItem.removals, 0);
}

void SettingsStoreTest::theStoredOrderIsRead_data()
{
    using enum ServiceID;
    QTest::addColumn<QStringList>("stored");
    QTest::addColumn<Order>("expected");
    QTest::newRow("gemini, an unknown text, claude")
        << QStringList{u"gemini"_s, u"netscape"_s, u"claude"_s}
        << Order{gemini, claude, chatgpt, cursor, copilot, anthropicAPI, openaiAPI, claudeCode};
    QTest::newRow("empty") << QStringList{} << catalogueOrder;
    QTest::newRow("only unknown texts") << QStringList{u"x"_s, u"CLAUDE"_s, u""_s} << catalogueOrder;
    QTest::newRow("all but one") << QStringList{u"claudeCode"_s, u"openaiAPI"_s, u"anthropicAPI"_s, u"copilot"_s,
                                                u"gemini"_s,     u"chatgpt"_s,   u"claude"_s}
                                 << Order{claudeCode, openaiAPI, anthropicAPI, copilot,
                                          gemini,     chatgpt,   claude,       cursor};
    QTest::newRow("duplicates are kept") << QStringList{u"cursor"_s, u"claude"_s, u"cursor"_s, u"cursor"_s}
                                         << Order{cursor, claude,  cursor,       cursor,    chatgpt,
                                                  gemini, copilot, anthropicAPI, openaiAPI, claudeCode};
}

void SettingsStoreTest::theStoredOrderIsRead()
{
    QFETCH(QStringList, stored);
    QFETCH(Order, expected);
    Fixture fixture;
    fixture.defaults.place(u"serviceOrder"_s, stored);
    QCOMPARE(rawValues(fixture.load()->serviceOrder()), rawValues(expected));
}

void SettingsStoreTest::theStoredEnabledServicesAreRead_data()
{
    QTest::addColumn<QStringList>("stored");
    QTest::addColumn<Enabled>("expected");
    QTest::newRow("two") << QStringList{u"openaiAPI"_s, u"gemini"_s}
                         << Enabled{ServiceID::gemini, ServiceID::openaiAPI};
    QTest::newRow("unknown texts are dropped")
        << QStringList{u"x"_s, u"gemini"_s, u"Claude"_s} << Enabled{ServiceID::gemini};
    QTest::newRow("only unknown texts") << QStringList{u"x"_s} << Enabled{};
    QTest::newRow("twice the same") << QStringList{u"gemini"_s, u"gemini"_s} << Enabled{ServiceID::gemini};
    QTest::newRow("all") << rawValues(catalogueOrder) << Enabled(allServiceIDs.begin(), allServiceIDs.end());
}

void SettingsStoreTest::theStoredEnabledServicesAreRead()
{
    QFETCH(QStringList, stored);
    QFETCH(Enabled, expected);
    Fixture fixture;
    fixture.defaults.place(u"enabledServices"_s, stored);
    QCOMPARE(fixture.load()->enabledServices(), expected);
}

void SettingsStoreTest::aStoredEmptySetIsNotReplacedByTheDefault()
{
    Fixture fixture;
    fixture.defaults.place(u"enabledServices"_s, QStringList{});
    const auto store = fixture.load();
    QVERIFY(store->enabledServices().empty());
    QVERIFY(!store->primaryService());
    QVERIFY(store->watchedServices().empty());
}

void SettingsStoreTest::theStoredIntervalIsRead_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<CheckInterval>("expected");
    QTest::newRow("60") << 60 << CheckInterval::oneMinute;
    QTest::newRow("300") << 300 << CheckInterval::fiveMinutes;
    for (const int other : {0, 1, 59, 61, 120, -60, 3600, 2'147'483'647}) {
        QTest::addRow("%d", other) << other << CheckInterval::fiveMinutes;
    }
}

void SettingsStoreTest::theStoredIntervalIsRead()
{
    QFETCH(int, stored);
    QFETCH(CheckInterval, expected);
    Fixture fixture;
    fixture.defaults.place(u"checkInterval"_s, stored);
    QCOMPARE(fixture.load()->checkInterval(), expected);
}

void SettingsStoreTest::anUnknownIntervalIsKeptOnDiskUntilTheUserChangesIt()
{
    Fixture fixture;
    fixture.defaults.place(u"checkInterval"_s, 120);
    const auto store = fixture.load();
    store->setHasOnboarded(true);
    QCOMPARE(fixture.defaults.integer(u"checkInterval"_s), 120);
    store->setCheckInterval(CheckInterval::fiveMinutes);
    QCOMPARE(fixture.defaults.integer(u"checkInterval"_s), 300);
}

void SettingsStoreTest::theStoredChannelIsRead_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<RemoteChannel>("expected");
    QTest::newRow("thisMac") << u"thisMac"_s << RemoteChannel::thisMac;
    QTest::newRow("slack") << u"slack"_s << RemoteChannel::slack;
    QTest::newRow("telegram") << u"telegram"_s << RemoteChannel::telegram;
    QTest::newRow("email") << u"email"_s << RemoteChannel::email;
    QTest::newRow("whatsapp") << u"whatsapp"_s << RemoteChannel::whatsapp;
    QTest::newRow("unknown") << u"pager"_s << RemoteChannel::thisMac;
    QTest::newRow("empty") << u""_s << RemoteChannel::thisMac;
    QTest::newRow("another case") << u"Slack"_s << RemoteChannel::thisMac;
}

void SettingsStoreTest::theStoredChannelIsRead()
{
    QFETCH(QString, stored);
    QFETCH(RemoteChannel, expected);
    Fixture fixture;
    fixture.defaults.place(u"armedChannel"_s, stored);
    QCOMPARE(fixture.load()->armedChannel(), expected);
}

void SettingsStoreTest::theStoredSwitchesAndTextsAreRead()
{
    Fixture fixture;
    for (const auto &field : fields()) {
        fixture.defaults.place(QString::fromLatin1(field.key), field.stored);
    }
    const auto store = fixture.load();
    for (const auto &field : fields()) {
        if (qstrcmp(field.key, "serviceOrder") != 0) { // loading appends the missing services to it
            QVERIFY2(field.isWritten(*store), field.key);
        }
    }
}

void SettingsStoreTest::malformedValuesAreReplacedByTheDefaults_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("truths") << 0;
    QTest::newRow("numbers") << 1;
    QTest::newRow("texts") << 2;
    QTest::newRow("lists") << 3;
}

void SettingsStoreTest::malformedValuesAreReplacedByTheDefaults()
{
    QFETCH(int, type);
    const Value values[] = {true, 60, u"claude"_s, QStringList{u"gemini"_s}};
    Fixture fixture;
    for (const auto &field : fields()) {
        if (field.stored.index() != std::size_t(type)) {
            fixture.defaults.place(QString::fromLatin1(field.key), values[type]);
        }
    }
    verifyFirstRunValues(*fixture.load());
}

void SettingsStoreTest::aWriteIsStoredUnderItsOwnKeyOnly_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(fields().size()); ++i) {
        QTest::newRow(fields()[std::size_t(i)].key) << i;
    }
}

void SettingsStoreTest::aWriteIsStoredUnderItsOwnKeyOnly()
{
    QFETCH(int, index);
    const Field &field = fields()[std::size_t(index)];
    const QString key = QString::fromLatin1(field.key);
    Fixture fixture;
    const auto store = fixture.load();
    QVERIFY(!field.isWritten(*store));
    field.write(*store);
    QVERIFY(field.isWritten(*store));
    QVERIFY(holds(fixture.defaults, key, field.stored));
    QCOMPARE(fixture.defaults.keys(), QStringList{key});
    QCOMPARE(fixture.defaults.writeCount(), 1);
    for (const auto &other : fields()) {
        QCOMPARE(other.isWritten(*store), &other == &field);
    }
}

void SettingsStoreTest::aWriteIsReadInTheNextRun_data()
{
    aWriteIsStoredUnderItsOwnKeyOnly_data();
}

void SettingsStoreTest::aWriteIsReadInTheNextRun()
{
    QFETCH(int, index);
    const Field &field = fields()[std::size_t(index)];
    Fixture fixture;
    field.write(*fixture.load());
    const auto next = fixture.load();
    if (qstrcmp(field.key, "serviceOrder") == 0) {
        QCOMPARE(next->serviceOrder().front(), ServiceID::claudeCode);
        QCOMPARE(next->serviceOrder().size(), std::size_t{8});
    } else {
        QVERIFY(field.isWritten(*next));
    }
}

void SettingsStoreTest::aWriteIsPublishedBeforeAndNotifiedAfter_data()
{
    aWriteIsStoredUnderItsOwnKeyOnly_data();
}

void SettingsStoreTest::aWriteIsPublishedBeforeAndNotifiedAfter()
{
    QFETCH(int, index);
    const Field &field = fields()[std::size_t(index)];
    const QString key = QString::fromLatin1(field.key);
    Fixture fixture;
    const auto store = fixture.load();
    QStringList story;
    const auto tell = [&](const QString &what) {
        story.append(what + (field.isWritten(*store) ? u": new value"_s : u": old value"_s)
                     + (holds(fixture.defaults, key, field.stored) ? u", stored"_s : u", not stored"_s));
    };
    connect(store.get(), &SettingsStore::objectWillChange, this, [&] { tell(u"will"_s); });
    connect(store.get(), field.notifier, this, [&] { tell(u"notifier"_s); });
    connect(store.get(), &SettingsStore::objectDidChange, this, [&] { tell(u"did"_s); });
    for (const auto &other : fields()) {
        if (other.notifier != field.notifier) {
            connect(store.get(), other.notifier, this, [&] { tell(u"another notifier"_s); });
        }
    }
    field.write(*store);
    QCOMPARE(
        story,
        (QStringList{u"will: old value, not stored"_s, u"notifier: new value, stored"_s, u"did: new value, stored"_s}));
}

void SettingsStoreTest::anEqualValueIsPublishedAndStoredToo()
{
    Fixture fixture;
    const auto store = fixture.load();
    const QSignalSpy will(store.get(), &SettingsStore::objectWillChange);
    store->setWatchOnThisMac(true);
    store->setServiceOrder(store->serviceOrder());
    store->setEnabledServices(store->enabledServices());
    QCOMPARE(will.count(), 3);
    QCOMPARE(fixture.defaults.boolean(u"watchOnThisMac"_s), true);
    QCOMPARE(fixture.defaults.texts(u"serviceOrder"_s), rawValues(catalogueOrder));
    QCOMPARE(fixture.defaults.texts(u"enabledServices"_s), QStringList{u"claude"_s});
}

void SettingsStoreTest::emptyListsAreStoredAsEmptyLists()
{
    Fixture fixture;
    fixture.load()->setEnabledServices({});
    QCOMPARE(fixture.defaults.texts(u"enabledServices"_s), QStringList{});
    QVERIFY(fixture.load()->enabledServices().empty());
}

void SettingsStoreTest::watchedServicesFollowTheOrder()
{
    Fixture fixture;
    const auto store = fixture.load();
    store->setServiceOrder({ServiceID::openaiAPI, ServiceID::gemini, ServiceID::claude, ServiceID::cursor});
    store->setEnabledServices({ServiceID::claude, ServiceID::cursor, ServiceID::openaiAPI, ServiceID::copilot});
    QCOMPARE(store->watchedServices(),
             (std::vector<Service>{Service::by(ServiceID::openaiAPI), Service::by(ServiceID::claude),
                                   Service::by(ServiceID::cursor)}));
}

void SettingsStoreTest::aServiceTwiceInTheOrderIsWatchedTwice()
{
    Fixture fixture;
    fixture.defaults.place(u"serviceOrder"_s, QStringList{u"claude"_s, u"gemini"_s, u"claude"_s});
    const Service &claude = Service::by(ServiceID::claude);
    QCOMPARE(fixture.load()->watchedServices(), (std::vector<Service>{claude, claude}));
}

void SettingsStoreTest::thePrimaryServiceIsTheFirstEnabledOne()
{
    Fixture fixture;
    const auto store = fixture.load();
    store->setEnabledServices({ServiceID::copilot, ServiceID::gemini});
    QCOMPARE(store->primaryService().value().id, ServiceID::gemini);
    store->setServiceOrder({ServiceID::claude, ServiceID::copilot, ServiceID::gemini});
    QCOMPARE(store->primaryService().value().id, ServiceID::copilot);
    store->setEnabledServices({});
    QVERIFY(!store->primaryService());
}

void SettingsStoreTest::setPrimaryMovesAndEnables()
{
    using enum ServiceID;
    Fixture fixture;
    const auto store = fixture.load();
    store->setPrimary(cursor);
    const Order expected{cursor, claude, chatgpt, gemini, copilot, anthropicAPI, openaiAPI, claudeCode};
    QCOMPARE(rawValues(store->serviceOrder()), rawValues(expected));
    QCOMPARE(store->enabledServices(), (Enabled{claude, cursor}));
    QCOMPARE(store->primaryService().value().id, cursor);
    QCOMPARE(fixture.defaults.texts(u"serviceOrder"_s), rawValues(expected));
    QCOMPARE(fixture.defaults.texts(u"enabledServices"_s), (QStringList{u"claude"_s, u"cursor"_s}));
}

void SettingsStoreTest::setPrimaryWritesTheOrderTwiceAndTheEnabledServicesOnce()
{
    using enum ServiceID;
    Fixture fixture;
    const auto store = fixture.load();
    QStringList story;
    connect(store.get(), &SettingsStore::objectWillChange, this, [&] { story.append(u"will"_s); });
    connect(store.get(), &SettingsStore::serviceOrderChanged, this,
            [&] { story.append(fixture.defaults.texts(u"serviceOrder"_s).value().join(u' ')); });
    connect(store.get(), &SettingsStore::enabledServicesChanged, this, [&] { story.append(u"enabled"_s); });
    store->setPrimary(gemini);
    QCOMPARE(story,
             (QStringList{u"will"_s, u"claude chatgpt cursor copilot anthropicAPI openaiAPI claudeCode"_s, u"will"_s,
                          u"gemini claude chatgpt cursor copilot anthropicAPI openaiAPI claudeCode"_s, u"will"_s,
                          u"enabled"_s}));
    QCOMPARE(fixture.defaults.writeCount(u"serviceOrder"_s), 2);
    QCOMPARE(fixture.defaults.writeCount(u"enabledServices"_s), 1);
    QCOMPARE(fixture.defaults.writeCount(), 3);
}

void SettingsStoreTest::setPrimaryRemovesEveryDuplicate()
{
    using enum ServiceID;
    Fixture fixture;
    fixture.defaults.place(u"serviceOrder"_s, QStringList{u"claude"_s, u"cursor"_s, u"claude"_s, u"cursor"_s});
    const auto store = fixture.load();
    store->setPrimary(cursor);
    QCOMPARE(rawValues(store->serviceOrder()),
             rawValues({cursor, claude, claude, chatgpt, gemini, copilot, anthropicAPI, openaiAPI, claudeCode}));
}

void SettingsStoreTest::setPrimaryOfThePrimaryChangesNothing()
{
    Fixture fixture;
    const auto store = fixture.load();
    store->setPrimary(ServiceID::claude);
    QCOMPARE(store->serviceOrder(), catalogueOrder);
    QCOMPARE(store->enabledServices(), Enabled{ServiceID::claude});
    QCOMPARE(fixture.defaults.writeCount(), 3);
}

void SettingsStoreTest::launchAtLoginMirrorsTheSystem()
{
    Fixture fixture;
    fixture.loginItem.enabled = true;
    QCOMPARE(fixture.load()->launchAtLogin(), true);
    fixture.loginItem.enabled = false;
    QCOMPARE(fixture.load()->launchAtLogin(), false);
    QCOMPARE(fixture.loginItem.registrations + fixture.loginItem.removals, 0);
}

void SettingsStoreTest::launchAtLoginFollowsTheSystem()
{
    Fixture fixture;
    const auto store = fixture.load();
    QSignalSpy changes(store.get(), &SettingsStore::launchAtLoginChanged);
    for (const bool enabled : {true, false}) {
        fixture.loginItem.enabled = enabled;
        Q_EMIT fixture.loginItem.changed();
        QCOMPARE(store->launchAtLogin(), enabled);
    }
    QCOMPARE(changes.size(), 2);
    // The system already knows.
    QCOMPARE(fixture.loginItem.registrations, 0);
    QCOMPARE(fixture.loginItem.removals, 0);
}

void SettingsStoreTest::launchAtLoginRegistersAndUnregisters()
{
    Fixture fixture;
    const auto store = fixture.load();
    store->setLaunchAtLogin(true);
    QVERIFY(store->launchAtLogin());
    QVERIFY(fixture.loginItem.enabled);
    QCOMPARE(fixture.loginItem.registrations, 1);
    QCOMPARE(fixture.loginItem.removals, 0);
    store->setLaunchAtLogin(false);
    QVERIFY(!store->launchAtLogin());
    QVERIFY(!fixture.loginItem.enabled);
    QCOMPARE(fixture.loginItem.registrations, 1);
    QCOMPARE(fixture.loginItem.removals, 1);
}

void SettingsStoreTest::aRefusedRegistrationIsReverted()
{
    Fixture fixture;
    fixture.loginItem.refuses = true;
    const auto store = fixture.load();
    store->setLaunchAtLogin(true);
    QCOMPARE(store->launchAtLogin(), false);
    // Reverting the field makes no further call to the system.
    QCOMPARE(fixture.loginItem.registrations, 1);
    QCOMPARE(fixture.loginItem.removals, 0);
}

void SettingsStoreTest::aRefusedRemovalIsReverted()
{
    Fixture fixture;
    fixture.loginItem.enabled = true;
    fixture.loginItem.refuses = true;
    const auto store = fixture.load();
    store->setLaunchAtLogin(false);
    QCOMPARE(store->launchAtLogin(), true);
    QCOMPARE(fixture.loginItem.registrations, 0);
    QCOMPARE(fixture.loginItem.removals, 1);
    // The field takes the state of the system, which need not be the opposite of the requested one.
    fixture.loginItem.enabled = false;
    store->setLaunchAtLogin(false);
    QCOMPARE(store->launchAtLogin(), false);
}

void SettingsStoreTest::aRefusedRegistrationPublishesBothChanges()
{
    Fixture fixture;
    fixture.loginItem.refuses = true;
    const auto store = fixture.load();
    QStringList story;
    connect(store.get(), &SettingsStore::objectWillChange, this,
            [&] { story.append(store->launchAtLogin() ? u"will, on"_s : u"will, off"_s); });
    const QSignalSpy changed(store.get(), &SettingsStore::launchAtLoginChanged);
    store->setLaunchAtLogin(true);
    QCOMPARE(story, (QStringList{u"will, off"_s, u"will, on"_s}));
    QVERIFY(changed.count() >= 1);
    QCOMPARE(store->launchAtLogin(), false);
}

void SettingsStoreTest::launchAtLoginCanBeSetAfterARefusal()
{
    Fixture fixture;
    fixture.loginItem.refuses = true;
    const auto store = fixture.load();
    store->setLaunchAtLogin(true);
    fixture.loginItem.refuses = false;
    store->setLaunchAtLogin(true);
    QVERIFY(store->launchAtLogin());
    QVERIFY(fixture.loginItem.enabled);
    QCOMPARE(fixture.loginItem.registrations, 2);
}

void SettingsStoreTest::launchAtLoginIsNotStored()
{
    Fixture fixture;
    const auto store = fixture.load();
    store->setLaunchAtLogin(true);
    store->setLaunchAtLogin(false);
    QCOMPARE(fixture.defaults.keys(), QStringList{});
}

void SettingsStoreTest::theLabelNamesTheArmedChannel_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::addColumn<QString>("label");
    QTest::newRow("thisMac") << RemoteChannel::thisMac << u"Notifying this Mac"_s;
    QTest::newRow("slack") << RemoteChannel::slack << u"Notifying Slack"_s;
    QTest::newRow("telegram") << RemoteChannel::telegram << u"Notifying Telegram"_s;
    QTest::newRow("email") << RemoteChannel::email << u"Notifying Email"_s;
    QTest::newRow("whatsapp") << RemoteChannel::whatsapp << u"Notifying WhatsApp"_s;
}

void SettingsStoreTest::theLabelNamesTheArmedChannel()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(QString, label);
    Fixture fixture;
    const auto store = fixture.load();
    store->setArmedChannel(channel);
    QCOMPARE(store->armedChannelLabel(), label);
}

void SettingsStoreTest::aChannelIsConfiguredWhenItsTextsAreSet_data()
{
    QTest::addColumn<QString>("webhook");
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("chatID");
    QTest::addColumn<bool>("slack");
    QTest::addColumn<bool>("telegram");
    QTest::newRow("nothing") << u""_s << u""_s << u""_s << false << false;
    QTest::newRow("webhook") << u"x"_s << u""_s << u""_s << true << false;
    QTest::newRow("blank webhook") << u" "_s << u""_s << u""_s << true << false;
    QTest::newRow("token alone") << u""_s << u"t"_s << u""_s << false << false;
    QTest::newRow("chat id alone") << u""_s << u""_s << u"c"_s << false << false;
    QTest::newRow("token and chat id") << u""_s << u"t"_s << u"c"_s << false << true;
    QTest::newRow("blank token and chat id") << u""_s << u" "_s << u"\t"_s << false << true;
    QTest::newRow("all") << u"x"_s << u"t"_s << u"c"_s << true << true;
}

void SettingsStoreTest::aChannelIsConfiguredWhenItsTextsAreSet()
{
    QFETCH(QString, webhook);
    QFETCH(QString, token);
    QFETCH(QString, chatID);
    Fixture fixture;
    const auto store = fixture.load();
    store->setSlackWebhookURL(webhook);
    store->setSlackChannelLabel(u"#alerts"_s);
    store->setTelegramBotToken(token);
    store->setTelegramChatID(chatID);
    QTEST(store->isConfigured(RemoteChannel::slack), "slack");
    QTEST(store->isConfigured(RemoteChannel::telegram), "telegram");
    QVERIFY(!store->isConfigured(RemoteChannel::thisMac));
    QVERIFY(!store->isConfigured(RemoteChannel::email));
    QVERIFY(!store->isConfigured(RemoteChannel::whatsapp));
}

void SettingsStoreTest::eachChannelHasItsStateText_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::addColumn<bool>("armed");
    QTest::addColumn<bool>("filledIn");
    QTest::addColumn<QString>("text");
    for (const bool armed : {false, true}) {
        for (const bool filledIn : {false, true}) {
            const QByteArray how = QByteArray(armed ? ", armed" : "") + (filledIn ? ", details filled in" : "");
            const auto row = [&](const char *name, RemoteChannel channel, const QString &text) {
                QTest::newRow(name + how) << channel << armed << filledIn << text;
            };
            row("thisMac", RemoteChannel::thisMac, u"Always on"_s);
            row("email", RemoteChannel::email, u"Coming later"_s);
            row("whatsapp", RemoteChannel::whatsapp, u""_s);
            const QString text = armed ? u"Armed"_s : filledIn ? u"Connected"_s : u"Not set up"_s;
            row("slack", RemoteChannel::slack, text);
            row("telegram", RemoteChannel::telegram, text);
        }
    }
}

void SettingsStoreTest::eachChannelHasItsStateText()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(bool, armed);
    QFETCH(bool, filledIn);
    Fixture fixture;
    const auto store = fixture.load();
    if (filledIn) {
        store->setSlackWebhookURL(u"x"_s);
        store->setTelegramBotToken(u"t"_s);
        store->setTelegramChatID(u"c"_s);
    }
    const auto another = channel == RemoteChannel::thisMac ? RemoteChannel::slack : RemoteChannel::thisMac;
    store->setArmedChannel(armed ? channel : another);
    QTEST(store->stateText(channel), "text");
}

void SettingsStoreTest::armingAnotherChannelLeavesTheFirstConnected()
{
    Fixture fixture;
    const auto store = fixture.load();
    store->setSlackWebhookURL(u"x"_s);
    store->setTelegramBotToken(u"t"_s);
    store->setTelegramChatID(u"c"_s);
    store->setArmedChannel(RemoteChannel::telegram);
    QCOMPARE(store->stateText(RemoteChannel::telegram), u"Armed"_s);
    store->setArmedChannel(RemoteChannel::slack);
    QCOMPARE(store->stateText(RemoteChannel::telegram), u"Connected"_s);
    QCOMPARE(store->stateText(RemoteChannel::slack), u"Armed"_s);
}

void SettingsStoreTest::intervalsHaveTheirSecondsAndTitles()
{
    QCOMPARE(rawValue(CheckInterval::oneMinute), 60);
    QCOMPARE(rawValue(CheckInterval::fiveMinutes), 300);
    QCOMPARE(duration(CheckInterval::oneMinute), 60s);
    QCOMPARE(duration(CheckInterval::fiveMinutes), 300s);
    QCOMPARE(displayTitle(CheckInterval::oneMinute), u"1 minute"_s);
    QCOMPARE(displayTitle(CheckInterval::fiveMinutes), u"5 minutes"_s);
    QCOMPARE(allCheckIntervals.front(), CheckInterval::oneMinute);
    QCOMPARE(allCheckIntervals.back(), CheckInterval::fiveMinutes);
    for (int raw = -400; raw <= 400; ++raw) {
        QCOMPARE(fromRawValue<CheckInterval>(raw).has_value(), raw == 60 || raw == 300);
    }
    QCOMPARE(fromRawValue<CheckInterval>(60), std::optional(CheckInterval::oneMinute));
    QCOMPARE(fromRawValue<CheckInterval>(300), std::optional(CheckInterval::fiveMinutes));
}

void SettingsStoreTest::channelsHaveTheirRawValuesAndTitles_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("title");
    QTest::newRow("thisMac") << 0 << u"thisMac"_s << u"This Mac"_s;
    QTest::newRow("slack") << 1 << u"slack"_s << u"Slack"_s;
    QTest::newRow("telegram") << 2 << u"telegram"_s << u"Telegram"_s;
    QTest::newRow("email") << 3 << u"email"_s << u"Email"_s;
    QTest::newRow("whatsapp") << 4 << u"whatsapp"_s << u"WhatsApp"_s;
}

void SettingsStoreTest::channelsHaveTheirRawValuesAndTitles()
{
    QFETCH(int, position);
    QFETCH(QString, raw);
    QFETCH(QString, title);
    QCOMPARE(allRemoteChannels.size(), std::size_t{5});
    const auto channel = allRemoteChannels[std::size_t(position)];
    QCOMPARE(rawValue(channel), raw);
    QCOMPARE(displayTitle(channel), title);
    QCOMPARE(fromRawValue<RemoteChannel>(raw), std::optional(channel));
    QCOMPARE(fromRawValue<RemoteChannel>(title.toLower() + u'_'), std::nullopt);
}

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "tst_settingsstore.moc"
