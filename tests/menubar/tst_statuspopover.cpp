#include "support/Looks.h"
#include "support/ViewScene.h"

#include "menubar/popover/HeroItem.h"
#include "menubar/popover/PopoverState.h"

#include <QAbstractAnimation>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

constexpr std::array someServices{ServiceID::claude, ServiceID::chatgpt, ServiceID::cursor, ServiceID::gemini,
                                  ServiceID::copilot};

/// The popover in a window without frame and shadow.
struct Scene
{
    explicit Scene(std::vector<ServiceID> watched = {someServices.begin(), someServices.end()})
        : stores(watched)
    {
        appearance.still = true;
        view.setResizeMode(QQuickView::SizeViewToRootObject);
    }

    /// Opens the popover with the current state of the stores.
    void open()
    {
        view.setInitialProperties({{u"popover"_s, QVariant::fromValue(&state)}});
        view.setColor(tokens.popover());
        view.setSource(QUrl(u"qrc:/qt/qml/Kelvo/menubar/popover/StatusPopover.qml"_s));
        QVERIFY2(view.status() == QQuickView::Ready, qPrintable(view.errors().value(0).toString()));
        state.open();
        settle();
        view.resize(root()->size().toSize());
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }

    QQuickItem *root() const { return view.rootObject(); }
    QQuickItem *item(const QString &name) const { return findItem(root(), name); }
    QQuickItem *row(ServiceID id) const { return item(u"row-"_s + rawValue(id)); }
    QRectF frame(QQuickItem *of) const { return of->mapRectToItem(root(), QRectF(0, 0, of->width(), of->height())); }
    QRectF frame(const QString &name) const { return frame(item(name)); }
    QString text(const QString &name) const { return item(name)->property("text").toString(); }

    FakeAppearance appearance;
    ViewEngine engine{appearance};
    Tokens tokens{&appearance};
    Stores stores;
    PopoverState state{stores.store, stores.settings};
    QQuickView view{&engine.get(), nullptr};
};

double pixelSize(QQuickItem *text)
{
    return text->property("font").value<QFont>().pointSizeF() * QGuiApplication::primaryScreen()->logicalDotsPerInchY()
        / 72;
}

/// Formats a colour with eight bits per channel.
QString rgba(const QColor &color)
{
    return color.name(QColor::HexArgb);
}

QString rgba(const QQuickItem *item)
{
    return rgba(item->property("color").value<QColor>());
}

QString primary(float opacity)
{
    QColor color(Qt::black);
    color.setAlphaF(opacity);
    return rgba(color);
}

QString opaque(QRgb rgb)
{
    return rgba(QColor(rgb));
}

const std::vector<ServiceID> eight(allServiceIDs.begin(), allServiceIDs.end());

} // namespace

class StatusPopoverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void blocksAreAtTheirPositions();
    void isAtLeast260PointsHighAndGrowsWithItsRows();
    void heroLinesAreAtTheirPositions();
    void textsHaveTheirFontsAndColours_data();
    void textsHaveTheirFontsAndColours();
    void rowsTakeNoMoreRoomThanTheirTexts();
    void hoverHighlightReachesBeyondTheRow();
    void footerIsARuleALabelAndTheSettingsButton();
    void statusHasTheColoursOfItsHealth_data();
    void statusHasTheColoursOfItsHealth();
    void affectedTagFollowsTheNameOnItsBaseline();
    void aMissingHeroIsShownInTheColoursOfUnknown();
    void aLongBodyLineWrapsWithItsLineSpacing();
    void heroIsOneElementForAScreenReader();
    void aScreenReaderFindsTheHeroAtItsPlaceOnTheScreen();
    void aScreenReaderCannotChangeTheHero();
    void theHeroIsInvisibleForAScreenReaderWhileItIsNotShown();
    void aHeroWithoutAccessibleAncestorsIsAChildOfItsWindow();
    void aScreenReaderSeesTheStatusAndTheActionOfARow();
    void aRowThatWasNeverCheckedReadsNotCheckedYet();
    void openingAndReopeningReadTheHero();
    void theSpokenTimeIsAlwaysTheCurrentOne();
    void aChangedStatusIsAnnouncedOnce();
    void theFirstAnswersOfTheRowsAreNotAnnounced();
    void aPeekReadsTheNewHero();
    void theHintIsOnlyOnTheRowThatHadTheFocusFirst();
    void clickingARowMovesItToTheTop();
    void rowsCanBeReachedAndOperatedByKeys();
    void theSettingsButtonRequestsTheSettings();
    void reducedMotionShowsItAtFullOpacityInPlace();
    void reopeningRepeatsTheAnimationAndTheCheck();
    void aChangedStatusLineFadesFromOneToTheOther();
    void reducedMotionChangesAStatusLineAtOnce();
    void theFormerStatusDoesNotFadeOutWhenItOpens();
    void theFocusOfARowIsARingInsideOfItsHighlight();
    void noAnimationRunsWhileItIsHidden();
    void coloursFollowTheAppearanceWhileOpen();
    void everythingIsMirroredInARightToLeftLayout();
    void highContrastGivesLabelsTheirFullStrength();
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
    void statesOfControlsMatchTheGoldenPictures_data();
    void statesOfControlsMatchTheGoldenPictures();
};

void StatusPopoverTest::blocksAreAtTheirPositions()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    const auto hero = scene.frame(u"hero"_s);
    const auto separator = scene.frame(u"separator"_s);
    const auto list = scene.frame(u"watchList"_s);
    const auto footer = scene.frame(u"footer"_s);
    QCOMPARE(scene.root()->width(), 320.0);
    QCOMPARE(hero.topLeft(), QPointF(18, 14));
    QCOMPARE(hero.right(), 302.0);
    QCOMPARE(separator.topLeft(), QPointF(18, hero.bottom() + 13));
    QCOMPARE(separator.size(), QSizeF(284, 1));
    QCOMPARE(rgba(scene.item(u"separator"_s)), primary(0.075F));
    QCOMPARE(list.topLeft(), QPointF(18, separator.bottom() + 11));
    QCOMPARE(list.right(), 302.0);
    QVERIFY(footer.top() >= list.bottom());
    QCOMPARE(footer.left(), 0.0);
    QCOMPARE(footer.right(), 320.0);
    QCOMPARE(footer.bottom(), scene.root()->height());
}

void StatusPopoverTest::isAtLeast260PointsHighAndGrowsWithItsRows()
{
    Scene small(std::vector{ServiceID::claude});
    small.open();
    QCOMPARE(small.root()->height(), 260.0);
    Scene large(eight);
    large.open();
    QVERIFY(large.root()->height() > 330);
    QCOMPARE(large.view.height(), qCeil(large.root()->height()));
    QVERIFY(large.frame(large.row(ServiceID::claudeCode)).bottom() < large.frame(u"footer"_s).top());
}

void StatusPopoverTest::heroLinesAreAtTheirPositions()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    const auto name = scene.frame(u"heroName"_s);
    const auto line = scene.frame(u"statusLine"_s);
    const auto dot = scene.frame(u"statusDot"_s);
    const auto label = scene.frame(u"statusLabel"_s);
    const auto body = scene.frame(u"bodyLine"_s);
    const auto breathing = scene.frame(u"breathingDot"_s);
    const auto checked = scene.frame(u"checkedText"_s);
    QCOMPARE(name.topLeft(), QPointF(18, 14));
    QCOMPARE(line.top(), name.bottom() + 5);
    QCOMPARE(dot.size(), QSizeF(8, 8));
    QCOMPARE(dot.left(), 18.0);
    QCOMPARE(label.left(), dot.right() + 7);
    QCOMPARE(dot.center().y(), label.center().y());
    QCOMPARE(body.top(), line.bottom() + 9);
    QCOMPARE(body.left(), 18.0);
    // The height of the text item includes the line spacing after its last line.
    QVERIFY(qAbs(checked.top() - (body.bottom() - 5.625 + 8)) < 0.01);
    QCOMPARE(breathing.size(), QSizeF(5, 5));
    QCOMPARE(breathing.left(), 18.0);
    QCOMPARE(checked.left(), breathing.right() + 6);
    QCOMPARE(breathing.center().y(), checked.center().y());
    QCOMPARE(scene.frame(u"hero"_s).bottom(), checked.bottom());
}

void StatusPopoverTest::textsHaveTheirFontsAndColours_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("size");
    QTest::addColumn<QFont::Weight>("weight");
    QTest::addColumn<double>("tracking");
    QTest::addColumn<QString>("color");
    QTest::newRow("heroName") << u"ChatGPT"_s << 22.0 << QFont::DemiBold << -0.44 << primary(0.88F);
    QTest::newRow("affectedTag") << u"AFFECTED"_s << 10.0 << QFont::DemiBold << 0.6 << primary(0.32F);
    QTest::newRow("statusLabel") << u"Major outage"_s << 13.0 << QFont::Medium << -0.065 << opaque(0xc10d02);
    QTest::newRow("bodyLine") << u"We’ll notify you when it’s back."_s << 12.5 << QFont::Normal << 0.0
                              << primary(0.55F);
    QTest::newRow("checkedText") << u"Checked 0 seconds ago"_s << 11.5 << QFont::Medium << 0.0 << primary(0.32F);
    QTest::newRow("groupHeading") << u"STILL WORKING"_s << 10.0 << QFont::Bold << 0.7 << primary(0.32F);
    QTest::newRow("name") << u"Claude"_s << 12.5 << QFont::Medium << 0.0 << primary(0.78F);
    QTest::newRow("armedChannel") << u"Notifying this Mac"_s << 11.5 << QFont::Medium << 0.0 << primary(0.42F);
}

void StatusPopoverTest::textsHaveTheirFontsAndColours()
{
    QFETCH(QString, text);
    QFETCH(double, size);
    QFETCH(QFont::Weight, weight);
    QFETCH(double, tracking);
    QFETCH(QString, color);
    Scene scene;
    scene.stores.round({{ServiceID::chatgpt, ServiceHealth::outage}});
    scene.open();
    auto *item = scene.item(QString::fromLatin1(QTest::currentDataTag()));
    const auto font = item->property("font").value<QFont>();
    QCOMPARE(item->property("text").toString().replace(QChar::Nbsp, u' '), text);
    QCOMPARE(pixelSize(item), size);
    QCOMPARE(font.weight(), weight);
    QVERIFY(qAbs(font.letterSpacing() - tracking) < 1.0 / 64); // Qt stores it in units of 1/64
    QCOMPARE(rgba(item), color);
    QVERIFY(item->isVisible());
}

void StatusPopoverTest::rowsTakeNoMoreRoomThanTheirTexts()
{
    Scene scene;
    scene.stores.round({{ServiceID::cursor, ServiceHealth::degraded}});
    scene.stores.settings.setPrimary(ServiceID::claude);
    scene.state.peek(u"claude"_s);
    scene.open();
    const auto heading = scene.frame(u"groupHeading"_s);
    auto bottom = heading.bottom() + 2;
    for (const auto id : {ServiceID::chatgpt, ServiceID::cursor, ServiceID::gemini, ServiceID::copilot}) {
        auto *row = scene.row(id);
        const auto name = scene.frame(findItem(row, u"name"_s));
        const auto dot = scene.frame(findItem(row, u"dot"_s));
        QCOMPARE(name.topLeft(), QPointF(18, bottom + 6));
        QCOMPARE(dot.size(), QSizeF(7, 7));
        QCOMPARE(dot.right(), 302.0);
        QCOMPARE(dot.center().y(), name.center().y());
        QVERIFY(name.right() <= dot.left() - 8);
        bottom = name.bottom();
    }
    QCOMPARE(scene.frame(u"watchList"_s).bottom(), bottom);
    QCOMPARE(rgba(findItem(scene.row(ServiceID::cursor), u"dot"_s)), opaque(0xff9500));
    QCOMPARE(rgba(findItem(scene.row(ServiceID::gemini), u"dot"_s)), opaque(0x34c759));
}

void StatusPopoverTest::hoverHighlightReachesBeyondTheRow()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    auto *row = scene.row(ServiceID::cursor);
    auto *highlight = findItem(row, u"highlight"_s);
    const auto name = scene.frame(findItem(row, u"name"_s));
    QCOMPARE(scene.frame(highlight), QRectF(12, name.top() - 2, 296, name.height() + 4));
    QCOMPARE(highlight->property("radius").toReal(), 5.0);
    QCOMPARE(rgba(highlight), u"#00000000"_s);
    QTest::mouseMove(&scene.view, scene.frame(row).center().toPoint());
    QTRY_COMPARE(rgba(highlight), primary(0.06F));
    QTRY_VERIFY(row->findChild<QObject *>(u"help"_s));
    QCOMPARE(row->findChild<QObject *>(u"help"_s)->property("text").toString(), u"Show Cursor above"_s);
    QVERIFY(!row->findChild<QObject *>(u"help"_s)->property("visible").toBool());
    QTRY_VERIFY(row->findChild<QObject *>(u"help"_s)->property("visible").toBool());
    QTest::mouseMove(&scene.view, {160, 20});
    QTRY_COMPARE(rgba(highlight), u"#00000000"_s);
}

void StatusPopoverTest::footerIsARuleALabelAndTheSettingsButton()
{
    Scene scene;
    scene.stores.settings.setArmedChannel(RemoteChannel::slack);
    scene.open();
    const auto footer = scene.frame(u"footer"_s);
    const auto rule = scene.frame(u"footerRule"_s);
    const auto button = scene.frame(u"settingsButton"_s);
    QCOMPARE(footer.height(), 39.0);
    QCOMPARE(rule, QRectF(0, footer.top(), 320, 1));
    QCOMPARE(rgba(scene.item(u"footerRule"_s)), primary(0.075F));
    QCOMPARE(button, QRectF(282, footer.top() + 1 + 6, 26, 26));
    QCOMPARE(scene.frame(u"armedChannel"_s).left(), 18.0);
    QCOMPARE(scene.text(u"armedChannel"_s), u"Notifying Slack"_s);
    QCOMPARE(rgba(scene.item(u"gear"_s)), primary(0.42F));
    QCOMPARE(scene.frame(u"gear"_s).center(), button.center());
}

void StatusPopoverTest::statusHasTheColoursOfItsHealth_data()
{
    QTest::addColumn<ServiceHealth>("health");
    QTest::addColumn<QString>("dot");
    QTest::addColumn<QString>("text");
    QTest::newRow("operational") << ServiceHealth::operational << opaque(0x34c759) << opaque(0x1e7b36);
    QTest::newRow("degraded") << ServiceHealth::degraded << opaque(0xff9500) << opaque(0xa85b00);
    QTest::newRow("outage") << ServiceHealth::outage << opaque(0xff3b30) << opaque(0xc10d02);
    QTest::newRow("unknown") << ServiceHealth::unknown << primary(0.28F) << primary(0.42F);
}

void StatusPopoverTest::statusHasTheColoursOfItsHealth()
{
    QFETCH(ServiceHealth, health);
    QFETCH(QString, dot);
    QFETCH(QString, text);
    Scene scene;
    scene.stores.round({{ServiceID::claude, health}});
    scene.open();
    QCOMPARE(rgba(scene.item(u"statusDot"_s)), dot);
    QCOMPARE(rgba(scene.item(u"statusLabel"_s)), text);
    QCOMPARE(rgba(scene.item(u"breathingDot"_s)), dot);
}

void StatusPopoverTest::affectedTagFollowsTheNameOnItsBaseline()
{
    Scene scene;
    scene.stores.round({{ServiceID::copilot, ServiceHealth::outage}});
    scene.open();
    auto *name = scene.item(u"heroName"_s);
    auto *tag = scene.item(u"affectedTag"_s);
    QCOMPARE(scene.text(u"heroName"_s), u"GitHub Copilot"_s);
    QVERIFY(tag->isVisible());
    QCOMPARE(scene.frame(tag).left(), scene.frame(name).right() + 8);
    QCOMPARE(tag->y() + tag->baselineOffset(), name->y() + name->baselineOffset());
    QVERIFY(scene.frame(tag).right() <= 302);
    QCOMPARE(name->property("lineCount").toInt(), 1);
}

void StatusPopoverTest::aMissingHeroIsShownInTheColoursOfUnknown()
{
    Scene scene(std::vector<ServiceID>{});
    scene.open();
    QCOMPARE(scene.text(u"heroName"_s), u"No service"_s);
    QCOMPARE(scene.text(u"statusLabel"_s), u"No service selected"_s);
    QCOMPARE(rgba(scene.item(u"statusDot"_s)), primary(0.28F));
    QCOMPARE(rgba(scene.item(u"statusLabel"_s)), primary(0.42F));
    QVERIFY(!scene.item(u"affectedTag"_s)->isVisible());
}

void StatusPopoverTest::aLongBodyLineWrapsWithItsLineSpacing()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    auto *body = scene.item(u"bodyLine"_s);
    QCOMPARE(body->property("lineCount").toInt(), 1);
    const auto oneLine = body->height();
    body->setProperty("text", u"GitHub Copilot is affected too, and so is everything else. We’ll tell you."_s);
    QCOMPARE(body->property("lineCount").toInt(), 2);
    QVERIFY(!body->property("truncated").toBool());
    QVERIFY(qAbs(body->height() - 2 * oneLine) <= 1.0);
    QTRY_COMPARE(scene.frame(u"hero"_s).bottom(), scene.frame(u"checkedText"_s).bottom());
    QCOMPARE(scene.frame(u"separator"_s).top(), scene.frame(u"hero"_s).bottom() + 13);
}

void StatusPopoverTest::heroIsOneElementForAScreenReader()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    auto *hero = accessible(scene.item(u"hero"_s));
    QVERIFY(hero);
    QCOMPARE(hero->role(), QAccessible::StaticText);
    QCOMPARE(hero->text(QAccessible::Name), u"Claude, Operational, checked 0 seconds ago"_s);
    QCOMPARE(hero->childCount(), 0);
}

void StatusPopoverTest::aScreenReaderFindsTheHeroAtItsPlaceOnTheScreen()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.view.setPosition(70, 50);
    auto *hero = accessible(scene.item(u"hero"_s));
    QCOMPARE(hero->window(), &scene.view);
    QCOMPARE(hero->rect(), scene.frame(u"hero"_s).toAlignedRect().translated(70, 50));
    auto *window = QAccessible::queryAccessibleInterface(&scene.view);
    const auto middle = hero->rect().center();
    QCOMPARE(window->childAt(middle.x(), middle.y()), hero);
    QCOMPARE(hero->parent(), accessible(scene.root()));
    QCOMPARE(hero->indexOfChild(hero->parent()), -1);
    QVERIFY(!hero->child(0));
}

void StatusPopoverTest::aScreenReaderCannotChangeTheHero()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    auto *hero = accessible(scene.item(u"hero"_s));
    QVERIFY(hero->state().readOnly);
    hero->setText(QAccessible::Name, u"Something else"_s);
    QCOMPARE(hero->text(QAccessible::Name), u"Claude, Operational, checked 0 seconds ago"_s);
    QCOMPARE(scene.text(u"heroName"_s), u"Claude"_s);
}

void StatusPopoverTest::theHeroIsInvisibleForAScreenReaderWhileItIsNotShown()
{
    Scene scene;
    scene.open();
    auto *hero = accessible(scene.item(u"hero"_s));
    QVERIFY(!hero->state().invisible);
    scene.item(u"hero"_s)->setVisible(false);
    QVERIFY(hero->state().invisible);
    scene.item(u"hero"_s)->setVisible(true);
    QVERIFY(!hero->state().invisible);
    scene.view.hide();
    QVERIFY(hero->state().invisible);
}

void StatusPopoverTest::aHeroWithoutAccessibleAncestorsIsAChildOfItsWindow()
{
    QQuickWindow window;
    HeroItem item(window.contentItem());
    item.setSize({120, 40});
    window.show();
    auto *hero = accessible(&item);
    QCOMPARE(hero->parent(), QAccessible::queryAccessibleInterface(&window));

    item.setParentItem(nullptr);
    QVERIFY(!hero->parent());
    QVERIFY(!hero->window());
    QVERIFY(hero->state().invisible);
    QCOMPARE(hero->rect(), QRect(0, 0, 120, 40));
}

void StatusPopoverTest::aScreenReaderSeesTheStatusAndTheActionOfARow()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    auto *row = accessible(scene.row(ServiceID::cursor));
    QVERIFY(row);
    QCOMPARE(row->role(), QAccessible::Button);
    QCOMPARE(row->text(QAccessible::Name), u"Cursor, Operational"_s);
    QCOMPARE(row->text(QAccessible::Description), u"Shows this service's status at the top"_s);
    QCOMPARE(row->childCount(), 0);
    QVERIFY(row->actionInterface());
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(scene.text(u"heroName"_s), u"Cursor"_s);
}

void StatusPopoverTest::aRowThatWasNeverCheckedReadsNotCheckedYet()
{
    Scene scene;
    scene.open();
    QCOMPARE(accessible(scene.row(ServiceID::cursor))->text(QAccessible::Name), u"Cursor, not checked yet"_s);
}

void StatusPopoverTest::openingAndReopeningReadTheHero()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    auto *hero = scene.item(u"hero"_s);
    QCOMPARE(scene.view.activeFocusItem(), hero);
    QVERIFY(accessible(hero)->state().focused);
    QVERIFY(accessible(hero)->parent()->indexOfChild(accessible(hero)) >= 0);
    QTest::keyClick(&scene.view, Qt::Key_Down);
    QCOMPARE(scene.view.activeFocusItem(), scene.row(ServiceID::chatgpt));

    scene.view.hide();
    scene.state.close();
    scene.state.open();
    scene.view.show();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    QCOMPARE(scene.view.activeFocusItem(), hero);
    QTest::keyClick(&scene.view, Qt::Key_Space);
    QTest::keyClick(&scene.view, Qt::Key_Return);
    QCOMPARE(scene.text(u"heroName"_s), u"Claude"_s);
    QTest::keyClick(&scene.view, Qt::Key_Up);
    QCOMPARE(scene.view.activeFocusItem(), scene.row(ServiceID::copilot));
}

void StatusPopoverTest::theSpokenTimeIsAlwaysTheCurrentOne()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    Announcements announcements(scene.item(u"announcer"_s));
    scene.stores.clock.advance(4s);
    QCOMPARE(accessibleName(scene.item(u"hero"_s)), u"Claude, Operational, checked 4 seconds ago"_s);
    QCOMPARE(announcements.take(), QStringList());
}

void StatusPopoverTest::aChangedStatusIsAnnouncedOnce()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    Announcements announcements(scene.item(u"announcer"_s));
    scene.stores.round({{ServiceID::claude, ServiceHealth::outage}}, u"Down"_s);
    QCOMPARE(announcements.take(), QStringList{u"Claude, Major outage"_s});
    scene.stores.clock.advance(5s);
    QCOMPARE(announcements.take(), QStringList());
    scene.stores.round({{ServiceID::claude, ServiceHealth::outage}, {ServiceID::gemini, ServiceHealth::degraded}},
                       u"Down"_s);
    QCOMPARE(announcements.take(), QStringList{u"Gemini, Down"_s});
    scene.state.close();
    scene.stores.round({{ServiceID::cursor, ServiceHealth::outage}}, u"Down"_s);
    scene.state.open();
    QCOMPARE(announcements.take(), QStringList());
}

void StatusPopoverTest::theFirstAnswersOfTheRowsAreNotAnnounced()
{
    Scene scene;
    scene.open();
    Announcements announcements(scene.item(u"announcer"_s));
    scene.stores.round();
    QCOMPARE(announcements.take(), QStringList{u"Claude, Operational"_s});
}

void StatusPopoverTest::aPeekReadsTheNewHero()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    QTest::keyClick(&scene.view, Qt::Key_Tab);
    Announcements announcements(scene.item(u"announcer"_s));
    QTest::keyClick(&scene.view, Qt::Key_Return);
    QCOMPARE(announcements.take(), QStringList{u"ChatGPT, Operational, checked 0 seconds ago"_s});
    // A click moves the focus to the hero, which is read then.
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, scene.frame(scene.row(ServiceID::cursor)).center().toPoint());
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"hero"_s));
    QCOMPARE(accessibleName(scene.item(u"hero"_s)), u"Cursor, Operational, checked 0 seconds ago"_s);
    QCOMPARE(announcements.take(), QStringList());
    // The press action of a screen reader does not move the focus.
    accessible(scene.row(ServiceID::gemini))->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(announcements.take(), QStringList{u"Gemini, Operational, checked 0 seconds ago"_s});
}

void StatusPopoverTest::theHintIsOnlyOnTheRowThatHadTheFocusFirst()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    const auto hint = [&scene](ServiceID id) { return accessible(scene.row(id))->text(QAccessible::Description); };
    const auto text = u"Shows this service's status at the top"_s;
    QCOMPARE(hint(ServiceID::cursor), text);
    QTest::keyClick(&scene.view, Qt::Key_Down);
    QCOMPARE(hint(ServiceID::chatgpt), text);
    QTest::keyClick(&scene.view, Qt::Key_Down);
    QCOMPARE(hint(ServiceID::cursor), QString());
    QCOMPARE(hint(ServiceID::gemini), QString());
    scene.state.close();
    scene.state.open();
    QCOMPARE(hint(ServiceID::cursor), text);
}

void StatusPopoverTest::clickingARowMovesItToTheTop()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, scene.frame(scene.row(ServiceID::gemini)).center().toPoint());
    QCOMPARE(scene.text(u"heroName"_s), u"Gemini"_s);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"hero"_s));
}

void StatusPopoverTest::rowsCanBeReachedAndOperatedByKeys()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    const auto focused = [&scene] { return scene.view.activeFocusItem()->objectName(); };

    QTest::keyClick(&scene.view, Qt::Key_Tab);
    QCOMPARE(focused(), u"row-chatgpt"_s);
    QCOMPARE(rgba(findItem(scene.row(ServiceID::chatgpt), u"highlight"_s)), primary(0.06F));
    QTest::keyClick(&scene.view, Qt::Key_Down);
    QCOMPARE(focused(), u"row-cursor"_s);
    QTest::keyClick(&scene.view, Qt::Key_Up);
    QTest::keyClick(&scene.view, Qt::Key_Up);
    QCOMPARE(focused(), u"row-chatgpt"_s);
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(&scene.view, Qt::Key_Tab);
    }
    QCOMPARE(focused(), u"settingsButton"_s);

    QTest::keyClick(&scene.view, Qt::Key_Backtab);
    QTest::keyClick(&scene.view, Qt::Key_Return);
    QCOMPARE(scene.text(u"heroName"_s), u"GitHub Copilot"_s);
    QCOMPARE(focused(), u"row-gemini"_s);
    QTest::keyClick(&scene.view, Qt::Key_Space);
    QCOMPARE(scene.text(u"heroName"_s), u"Gemini"_s);
}

void StatusPopoverTest::theSettingsButtonRequestsTheSettings()
{
    Scene scene;
    scene.open();
    const QSignalSpy requested(&scene.state, &PopoverState::settingsRequested);
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, scene.frame(u"settingsButton"_s).center().toPoint());
    QCOMPARE(requested.count(), 1);
    auto *button = accessible(scene.item(u"settingsButton"_s));
    QCOMPARE(button->role(), QAccessible::Button);
    QCOMPARE(button->text(QAccessible::Name), u"Settings"_s);
}

void StatusPopoverTest::reducedMotionShowsItAtFullOpacityInPlace()
{
    Scene scene;
    scene.open();
    QCOMPARE(scene.item(u"stack"_s)->opacity(), 1.0);
    QCOMPARE(scene.frame(u"stack"_s).top(), 0.0);
    QVERIFY(!scene.item(u"breathingDot"_s)->property("isBreathing").toBool());
}

void StatusPopoverTest::reopeningRepeatsTheAnimationAndTheCheck()
{
    Scene scene;
    scene.appearance.still = false;
    scene.stores.round();
    scene.open();
    QTRY_COMPARE(scene.item(u"stack"_s)->opacity(), 1.0);
    QTRY_COMPARE(scene.frame(u"stack"_s).top(), 0.0);
    scene.state.close();
    QCOMPARE(scene.item(u"stack"_s)->opacity(), 0.0);
    const auto before = scene.stores.checks.asked().size();
    scene.state.open();
    QCOMPARE(scene.item(u"stack"_s)->opacity(), 0.0);
    QCOMPARE(scene.frame(u"stack"_s).top(), 6.0);
    QTRY_COMPARE(scene.stores.checks.asked().size(), before + someServices.size());
    QTRY_COMPARE(scene.item(u"stack"_s)->opacity(), 1.0);
    QTRY_COMPARE(scene.frame(u"stack"_s).top(), 0.0);
}

void StatusPopoverTest::aChangedStatusLineFadesFromOneToTheOther()
{
    Scene scene;
    scene.appearance.still = false;
    scene.stores.round();
    scene.open();
    QTRY_COMPARE(scene.item(u"statusLine"_s)->opacity(), 1.0);
    scene.stores.round({{ServiceID::claude, ServiceHealth::outage}});
    QCOMPARE(scene.text(u"statusLabel"_s), u"Major outage"_s);
    QCOMPARE(scene.item(u"formerStatusLine"_s)->property("label").toString(), u"Operational"_s);
    QCOMPARE(scene.item(u"formerStatusLine"_s)->property("health").value<ServiceHealth>(), ServiceHealth::operational);
    QVERIFY(scene.item(u"statusLine"_s)->opacity() < 0.9);
    QTRY_COMPARE(scene.item(u"statusLine"_s)->opacity(), 1.0);
    QVERIFY(!scene.item(u"formerStatusLine"_s)->isVisible());
}

void StatusPopoverTest::reducedMotionChangesAStatusLineAtOnce()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.stores.round({{ServiceID::claude, ServiceHealth::outage}});
    QCOMPARE(scene.text(u"statusLabel"_s), u"Major outage"_s);
    QCOMPARE(scene.item(u"statusLine"_s)->opacity(), 1.0);
    QVERIFY(!scene.item(u"formerStatusLine"_s)->isVisible());
}

void StatusPopoverTest::theFormerStatusDoesNotFadeOutWhenItOpens()
{
    Scene scene;
    scene.appearance.still = false;
    scene.stores.round();
    scene.open();
    QTRY_COMPARE(scene.item(u"stack"_s)->opacity(), 1.0);
    scene.view.hide();
    scene.state.close();
    scene.stores.round({{ServiceID::claude, ServiceHealth::outage}});
    scene.state.open();
    scene.view.show();
    QCOMPARE(scene.text(u"statusLabel"_s), u"Major outage"_s);
    QCOMPARE(scene.item(u"statusLine"_s)->opacity(), 1.0);
    QVERIFY(!scene.item(u"formerStatusLine"_s)->isVisible());

    // A change that is under way when the popover closes is not shown further when it opens again.
    QTRY_COMPARE(scene.item(u"stack"_s)->opacity(), 1.0);
    scene.stores.round({{ServiceID::claude, ServiceHealth::degraded}});
    QVERIFY(scene.item(u"formerStatusLine"_s)->isVisible());
    scene.state.close();
    QVERIFY(!scene.item(u"formerStatusLine"_s)->isVisible());
    QCOMPARE(scene.item(u"statusLine"_s)->opacity(), 1.0);
}

void StatusPopoverTest::theFocusOfARowIsARingInsideOfItsHighlight()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    auto *row = scene.row(ServiceID::chatgpt);
    auto *ring = findItem(row, u"focusRing"_s);
    QVERIFY(!ring->isVisible());
    QTest::keyClick(&scene.view, Qt::Key_Tab);
    QVERIFY(ring->isVisible());
    QCOMPARE(scene.frame(ring), scene.frame(findItem(row, u"highlight"_s)));
    const auto shown = picture(scene.view);
    const auto edge = scene.frame(ring).toAlignedRect().adjusted(1, 1, -1, -1);
    QCOMPARE(rgba(shown.pixelColor(QPoint(edge.left(), edge.center().y()))), opaque(0x007aff));
}

void StatusPopoverTest::noAnimationRunsWhileItIsHidden()
{
    Scene scene;
    scene.appearance.still = false;
    scene.stores.round();
    scene.open();
    QVERIFY(scene.item(u"breathingDot"_s)->property("isBreathing").toBool());
    scene.view.hide();
    scene.state.close();
    QVERIFY(!scene.item(u"breathingDot"_s)->property("isBreathing").toBool());
    for (auto *animation : scene.root()->findChildren<QObject *>()) {
        if (animation->inherits("QQuickAbstractAnimation")) {
            QVERIFY(!animation->property("running").toBool());
        }
    }
}

void StatusPopoverTest::coloursFollowTheAppearanceWhileOpen()
{
    Scene scene;
    scene.stores.round();
    scene.open();
    scene.appearance.setDark(true);
    QCOMPARE(rgba(scene.item(u"statusLabel"_s)), opaque(0x5be07a));
    QCOMPARE(rgba(scene.item(u"heroName"_s)), rgba(scene.tokens.labelPrimary()));
    auto *name = findItem(scene.row(ServiceID::cursor), u"name"_s);
    QCOMPARE(name->property("color").value<QColor>().red(), 255);
}

void StatusPopoverTest::everythingIsMirroredInARightToLeftLayout()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    Scene scene;
    scene.stores.round({{ServiceID::chatgpt, ServiceHealth::outage}});
    scene.open();
    const auto name = scene.frame(u"heroName"_s);
    const auto tag = scene.frame(u"affectedTag"_s);
    const auto dot = scene.frame(u"statusDot"_s);
    const auto rowDot = scene.frame(findItem(scene.row(ServiceID::cursor), u"dot"_s));
    const auto gear = scene.frame(u"settingsButton"_s);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QCOMPARE(name.right(), 302.0);
    QCOMPARE(tag.right(), name.left() - 8);
    QCOMPARE(dot.right(), 302.0);
    QCOMPARE(rowDot.left(), 18.0);
    QCOMPARE(gear.left(), 12.0);
}

void StatusPopoverTest::highContrastGivesLabelsTheirFullStrength()
{
    Scene scene;
    scene.stores.round({{ServiceID::chatgpt, ServiceHealth::outage}});
    scene.open();
    scene.appearance.setHighContrast(true);
    for (const char *label : {"heroName", "affectedTag", "bodyLine", "checkedText", "groupHeading", "armedChannel"}) {
        QCOMPARE(rgba(scene.item(QString::fromLatin1(label))), u"#ff000000"_s);
    }
    QCOMPARE(rgba(findItem(scene.row(ServiceID::cursor), u"name"_s)), u"#ff000000"_s);
    QCOMPARE(rgba(scene.item(u"gear"_s)), u"#ff000000"_s);
    QCOMPARE(rgba(scene.item(u"separator"_s)), primary(0.70F));
}

void StatusPopoverTest::matchesTheGoldenPictures_data()
{
    QTest::addColumn<std::size_t>("look");
    QTest::addColumn<bool>("dark");
    for (std::size_t i = 0; i < popoverLooks().size(); ++i) {
        const auto name = popoverLooks()[i].name.toUtf8();
        QTest::addRow("%s-light", name.constData()) << i << false;
        QTest::addRow("%s-dark", name.constData()) << i << true;
    }
}

void StatusPopoverTest::matchesTheGoldenPictures()
{
    QFETCH(std::size_t, look);
    QFETCH(bool, dark);
    const auto &shown = popoverLooks().at(look);
    Scene scene(shown.watched);
    scene.appearance.dark = dark;
    shown.bringAbout(scene.stores);
    scene.open();
    if (!shown.peeked.isEmpty()) {
        scene.state.peek(shown.peeked);
    }
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QTRY_COMPARE(scene.view.height(), qCeil(scene.root()->height()));
    QCOMPARE(golden.difference(picture(scene.view), u"popover-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void StatusPopoverTest::statesOfControlsMatchTheGoldenPictures_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("dark");
    for (const auto &[part, control] : {std::pair("row", u"row-cursor"_s), std::pair("gear", u"settingsButton"_s)}) {
        for (const char *state : {"hovered", "pressed", "focused", "focused-in-high-contrast"}) {
            QTest::addRow("%s-%s-light", part, state) << control << QString::fromLatin1(state) << false;
            QTest::addRow("%s-%s-dark", part, state) << control << QString::fromLatin1(state) << true;
        }
    }
}

void StatusPopoverTest::statesOfControlsMatchTheGoldenPictures()
{
    QFETCH(const QString, control);
    QFETCH(const QString, state);
    QFETCH(const bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.appearance.contrast = state.endsWith(u"high-contrast");
    scene.stores.round();
    scene.open();
    scene.view.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&scene.view));
    auto *item = scene.item(control);
    if (state == u"hovered") {
        QTest::mouseMove(&scene.view, {160, 20}); // the pointer may still be where the last picture had it
        QTest::mouseMove(&scene.view, scene.frame(item).center().toPoint());
        QTRY_VERIFY(item->property("hovered").toBool());
    } else if (state == u"pressed") {
        QTest::mousePress(&scene.view, Qt::LeftButton, {}, scene.frame(item).center().toPoint());
        QTRY_VERIFY(item->property("down").toBool());
    } else {
        item->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(item->property("visualFocus").toBool());
    }
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view), u"popover-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::StatusPopoverTest)
#include "tst_statuspopover.moc"
