#include "support/Stores.h"

#include "menubar/popover/PopoverState.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

const std::vector<ServiceID> three{ServiceID::claude, ServiceID::chatgpt, ServiceID::cursor};

QStringList names(const WatchListModel *rows)
{
    QStringList all;
    for (int row = 0; row < rows->rowCount(); ++row) {
        all.append(rows->index(row).data(WatchListModel::nameRole).toString());
    }
    return all;
}

} // namespace

class PopoverStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openingChecksEveryService();
    void everyOpeningChecksAgain();
    void nothingIsPublishedWhileClosed();
    void theTextsSayThatThereIsNoHero();
    void showsTheHeroAndTheRowsOfTheOthers();
    void peekingMovesARowToTheTopUntilThePopoverCloses();
    void anUnknownServiceIsNotPeekedAt();
    void theRowsHaveNoDataForAnInvalidIndex();
    void aTickChangesNoRow();
    void aChangedStatusChangesOnlyItsRow();
    void aNewOrderMovesRowsInsteadOfResettingThem();
    void checkedTextFollowsTheClockWhileOpen();
    void theSettingsCanBeRequested();
};

void PopoverStateTest::openingChecksEveryService()
{
    Stores stores(three);
    stores.round();
    PopoverState state(stores.store, stores.settings);
    const auto before = stores.checks.asked().size();
    state.open();
    QVERIFY(state.isOpen());
    QVERIFY(stores.store.popoverIsOpen());
    QTRY_COMPARE(stores.checks.asked().size(), before + 3);
}

void PopoverStateTest::everyOpeningChecksAgain()
{
    Stores stores(three);
    stores.round();
    PopoverState state(stores.store, stores.settings);
    const auto first = stores.checks.asked().size();
    state.open();
    QTRY_COMPARE(stores.checks.asked().size(), first + 3);
    state.close();
    QVERIFY(!stores.store.popoverIsOpen());
    const auto before = stores.checks.asked().size();
    state.open();
    QTRY_COMPARE(stores.checks.asked().size(), before + 3);
}

void PopoverStateTest::nothingIsPublishedWhileClosed()
{
    Stores stores(three);
    PopoverState state(stores.store, stores.settings);
    const QSignalSpy changed(&state, &PopoverState::changed);
    const QSignalSpy inserted(state.rows(), &QAbstractItemModel::rowsInserted);
    stores.round({{ServiceID::cursor, ServiceHealth::outage}});
    stores.settings.setArmedChannel(RemoteChannel::slack);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(inserted.count(), 0);

    state.open();
    QVERIFY(changed.count() > 0);
    state.close();
    const auto told = changed.count();
    stores.round();
    QCOMPARE(changed.count(), told);
}

void PopoverStateTest::theTextsSayThatThereIsNoHero()
{
    Stores stores({});
    PopoverState state(stores.store, stores.settings);
    state.open();
    QCOMPARE(state.heroName(), u"No service"_s);
    QCOMPARE(state.heroHealth(), ServiceHealth::unknown);
    QCOMPARE(state.heroStatusLabel(), u"No service selected"_s);
    QCOMPARE(state.heroBodyLine(), u"Choose a service in Settings."_s);
    QCOMPARE(state.checkedText(), u"Not checked yet"_s);
    QCOMPARE(state.rows()->rowCount(), 0);
}

void PopoverStateTest::showsTheHeroAndTheRowsOfTheOthers()
{
    Stores stores(three);
    stores.round({{ServiceID::cursor, ServiceHealth::outage}});
    PopoverState state(stores.store, stores.settings);
    state.open();
    QCOMPARE(state.heroName(), u"Cursor"_s);
    QVERIFY(state.heroIsPromoted());
    QCOMPARE(state.heroHealth(), ServiceHealth::outage);
    QCOMPARE(state.heroStatusLabel(), u"Major outage"_s);
    QCOMPARE(state.groupHeading(), u"Still working"_s);
    QCOMPARE(names(state.rows()), QStringList({u"Claude"_s, u"ChatGPT"_s}));
    QCOMPARE(state.rows()->index(0).data(WatchListModel::healthRole).value<ServiceHealth>(),
             ServiceHealth::operational);
    QCOMPARE(state.rows()->index(0).data(WatchListModel::serviceRole).toString(), u"claude"_s);
    QCOMPARE(state.rows()->index(0).data(WatchListModel::labelRole).toString(), u"Operational"_s);
}

void PopoverStateTest::peekingMovesARowToTheTopUntilThePopoverCloses()
{
    Stores stores(three);
    stores.round();
    PopoverState state(stores.store, stores.settings);
    const QAbstractItemModelTester tester(state.rows(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    state.open();
    state.peek(u"chatgpt"_s);
    QCOMPARE(state.heroName(), u"ChatGPT"_s);
    QVERIFY(!state.heroIsPromoted());
    QCOMPARE(names(state.rows()), QStringList({u"Claude"_s, u"Cursor"_s}));
    state.peek(u"chatgpt"_s);
    QCOMPARE(state.heroName(), u"Claude"_s);
    QCOMPARE(names(state.rows()), QStringList({u"ChatGPT"_s, u"Cursor"_s}));
    state.peek(u"cursor"_s);
    state.close();
    state.open();
    QCOMPARE(state.heroName(), u"Claude"_s);
}

void PopoverStateTest::anUnknownServiceIsNotPeekedAt()
{
    Stores stores(three);
    PopoverState state(stores.store, stores.settings);
    state.open();
    state.peek(u"nothing"_s);
    QCOMPARE(stores.store.peekedID(), std::optional<ServiceID>());
}

void PopoverStateTest::theRowsHaveNoDataForAnInvalidIndex()
{
    Stores stores(three);
    PopoverState state(stores.store, stores.settings);
    state.open();
    QVERIFY(state.rows()->data(state.rows()->index(0), WatchListModel::nameRole).isValid());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Index .* is not valid"_s));
    QVERIFY(!state.rows()->data({}, WatchListModel::nameRole).isValid());
}

void PopoverStateTest::aTickChangesNoRow()
{
    Stores stores(three);
    stores.round();
    PopoverState state(stores.store, stores.settings);
    state.open();
    settle();
    const QSignalSpy data(state.rows(), &QAbstractItemModel::dataChanged);
    const QSignalSpy removed(state.rows(), &QAbstractItemModel::rowsRemoved);
    const QSignalSpy inserted(state.rows(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy reset(state.rows(), &QAbstractItemModel::modelReset);
    stores.clock.advance(3s);
    QCOMPARE(data.count() + removed.count() + inserted.count() + reset.count(), 0);
}

void PopoverStateTest::aChangedStatusChangesOnlyItsRow()
{
    Stores stores(three);
    stores.round();
    PopoverState state(stores.store, stores.settings);
    state.open();
    settle();
    const QSignalSpy data(state.rows(), &QAbstractItemModel::dataChanged);
    stores.round({{ServiceID::cursor, ServiceHealth::degraded}}, u"Slow"_s);
    QCOMPARE(data.count(), 1);
    QCOMPARE(data.first().at(0).toModelIndex().row(), 1);
    QCOMPARE(state.rows()->index(1).data(WatchListModel::healthRole).value<ServiceHealth>(), ServiceHealth::degraded);
    QCOMPARE(state.rows()->index(1).data(WatchListModel::labelRole).toString(), u"Slow"_s);
}

void PopoverStateTest::aNewOrderMovesRowsInsteadOfResettingThem()
{
    Stores stores({ServiceID::claude, ServiceID::chatgpt, ServiceID::cursor, ServiceID::gemini});
    PopoverState state(stores.store, stores.settings);
    const QAbstractItemModelTester tester(state.rows(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    state.open();
    const QSignalSpy inserted(state.rows(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(state.rows(), &QAbstractItemModel::rowsRemoved);
    stores.settings.setServiceOrder({ServiceID::claude, ServiceID::gemini, ServiceID::cursor, ServiceID::chatgpt});
    QCOMPARE(names(state.rows()), QStringList({u"Gemini"_s, u"Cursor"_s, u"ChatGPT"_s}));
    QCOMPARE(inserted.count() + removed.count(), 0);
}

void PopoverStateTest::checkedTextFollowsTheClockWhileOpen()
{
    Stores stores(three);
    stores.round();
    PopoverState state(stores.store, stores.settings);
    state.open();
    settle();
    QCOMPARE(state.checkedText(), u"Checked 0 seconds ago"_s);
    const QSignalSpy changed(&state, &PopoverState::changed);
    stores.clock.advance(2s);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(state.checkedText(), u"Checked 2 seconds ago"_s);
}

void PopoverStateTest::theSettingsCanBeRequested()
{
    Stores stores(three);
    PopoverState state(stores.store, stores.settings);
    const QSignalSpy requested(&state, &PopoverState::settingsRequested);
    state.openSettings();
    QCOMPARE(requested.count(), 1);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::PopoverStateTest)
#include "tst_popoverstate.moc"
