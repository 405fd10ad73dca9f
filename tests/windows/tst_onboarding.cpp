#include "support/StatePictures.h"
#include "support/ViewScene.h"

#include "windows/onboarding/OnboardingState.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

struct Scene : ViewScene
{
    using ViewScene::ViewScene;
    ~Scene() { view.setSource({}); }

    void open()
    {
        state = std::make_unique<OnboardingState>(stores.settings, stores.notifier);
        show(u"onboarding/OnboardingWindow.qml"_s, {{u"onboarding"_s, QVariant::fromValue(state.get())}});
    }
    /// Turns to a page with the buttons of the window.
    void turnTo(OnboardingState::Page page)
    {
        while (state->page() != page) {
            click(state->page() == OnboardingState::Permission ? otherButton() : mainButton());
        }
    }
    /// The item of the visible page.
    QQuickItem *page() const
    {
        static const QStringList names{u"promise"_s, u"primaryPicker"_s, u"permission"_s, u"complete"_s};
        return item(names.at(state->page()));
    }
    QQuickItem *part(const QString &name) const { return findItem(page(), name); }
    QQuickItem *mainButton() const { return part(u"mainButton"_s); }
    /// The quiet button of the visible page: Back or Not now.
    QQuickItem *otherButton() const { return part(u"otherButton"_s); }
    QStringList shownChoices() const
    {
        QStringList names;
        for (int i = 0; auto *row = item(u"choice-%1"_s.arg(i)); ++i) {
            names.append(text(row));
        }
        return names;
    }

    std::unique_ptr<OnboardingState> state;
};

} // namespace

class OnboardingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void startsWithThePromise();
    void claudeCodeIsNotOffered();
    void thePrimaryServiceIsInitiallySelected();
    void noRowIsMarkedAndContinueKeepsItWhenClaudeCodeIsThePrimary();
    void continueIsDisabledUntilAServiceIsSelected();
    void aChoiceTakesEffectWithContinue();
    void backLeadsToThePromiseAndKeepsTheSelection();
    void allChoicesFitWithoutScrolling();
    void allowNotificationsAsksTheSystemAndContinuesAtOnce();
    void notNowContinuesWithoutAskingTheSystem();
    void doneMarksOnboardingAsDone();
    void theLastPageNamesThePrimaryService();
    void dotsShowThePage();
    void canBeOperatedByKeysOnly();
    void aKeyThatIsHeldDownTurnsOnePage_data();
    void aKeyThatIsHeldDownTurnsOnePage();
    void arrowKeysChooseAsSoonAsThePageIsThere();
    void enterOnAChoiceChoosesAndContinues_data();
    void enterOnAChoiceChoosesAndContinues();
    void theSymbolAndTheHeadingStayAtTheirPlace();
    void buttonsAreLargeEnoughToHit();
    void pagesFadeInUnlessMotionIsReduced();
    void aScreenReaderIsToldThePageWithItsMainButton();
    void aScreenReaderSeesPagesAndChoices();
    void everythingIsMirroredInARightToLeftLayout();
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
    void statesMatchTheGoldenPictures_data();
    void statesMatchTheGoldenPictures();
    void highContrastMatchesTheGoldenPictures_data();
    void highContrastMatchesTheGoldenPictures();
};

void OnboardingTest::startsWithThePromise()
{
    Scene scene;
    scene.open();
    QCOMPARE(scene.root()->size(), QSizeF(400, 300));
    QCOMPARE(scene.text(scene.item(u"promise"_s, u"heading"_s)), u"Stop checking.\nWe’ll tell you."_s);
    QVERIFY(scene.item(u"promise"_s)->isVisible());
    QCOMPARE(scene.item(u"mark"_s)->size(), QSizeF(54, 54));
    QCOMPARE(scene.frame(scene.mainButton()).height(), 28.0);
    QCOMPARE(scene.frame(scene.mainButton()).right(), 380.0);
    QCOMPARE(scene.frame(scene.part(u"dots"_s)).left(), 20.0);
    QCOMPARE(scene.frame(scene.part(u"dots"_s)).size(), QSizeF(4 * 6 + 3 * 6, 6));
}

void OnboardingTest::claudeCodeIsNotOffered()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.shownChoices(),
             (QStringList{u"Claude"_s, u"ChatGPT"_s, u"Cursor"_s, u"Gemini"_s, u"GitHub Copilot"_s, u"Anthropic API"_s,
                          u"OpenAI API"_s}));
}

void OnboardingTest::thePrimaryServiceIsInitiallySelected()
{
    Scene scene({ServiceID::gemini});
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QVERIFY(findItem(scene.item(u"choice-3"_s), u"checkmark"_s)->isVisible());
    QVERIFY(!findItem(scene.item(u"choice-0"_s), u"checkmark"_s)->isVisible());
}

void OnboardingTest::noRowIsMarkedAndContinueKeepsItWhenClaudeCodeIsThePrimary()
{
    Scene scene({ServiceID::claudeCode});
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.state->selected(), -1);
    for (int choice = 0; choice < 7; ++choice) {
        QVERIFY(!findItem(scene.item(u"choice-%1"_s.arg(choice)), u"checkmark"_s)->isVisible());
    }
    QVERIFY(scene.mainButton()->isEnabled());
    scene.click(scene.mainButton());
    QCOMPARE(scene.state->page(), OnboardingState::Permission);
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::claudeCode);
}

void OnboardingTest::continueIsDisabledUntilAServiceIsSelected()
{
    Scene scene(std::vector<ServiceID>{});
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.state->selected(), -1);
    QVERIFY(!scene.mainButton()->isEnabled());
    scene.click(scene.mainButton());
    scene.state->continueToPermission();
    QCOMPARE(scene.state->page(), OnboardingState::PrimaryPicker);
    scene.click(scene.item(u"choice-1"_s));
    QVERIFY(scene.mainButton()->isEnabled());
    scene.click(scene.mainButton());
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::chatgpt);
}

void OnboardingTest::aChoiceTakesEffectWithContinue()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    const int writes = scene.stores.preferences.writeCount();
    scene.click(scene.item(u"choice-2"_s));
    QVERIFY(findItem(scene.item(u"choice-2"_s), u"checkmark"_s)->isVisible());
    QCOMPARE(scene.stores.preferences.writeCount(), writes);
    scene.click(scene.mainButton());
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::cursor);
    QCOMPARE(scene.stores.settings.enabledServices(), (std::set{ServiceID::claude, ServiceID::cursor}));
    QVERIFY(scene.item(u"permission"_s)->isVisible());
}

void OnboardingTest::backLeadsToThePromiseAndKeepsTheSelection()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    scene.click(scene.item(u"choice-5"_s));
    scene.click(scene.otherButton());
    QVERIFY(scene.item(u"promise"_s)->isVisible());
    QVERIFY(!scene.otherButton()->isVisible());
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.state->selected(), 5);
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::claude);
}

void OnboardingTest::allChoicesFitWithoutScrolling()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    auto *choices = scene.item(u"choices"_s);
    QCOMPARE(choices->height(), choices->property("contentHeight").toReal());
    QVERIFY(scene.frame(choices).bottom() < scene.frame(scene.mainButton()).top());
    QVERIFY(scene.frame(scene.item(u"primaryPicker"_s, u"heading"_s)).top() >= 8);
}

void OnboardingTest::allowNotificationsAsksTheSystemAndContinuesAtOnce()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::Permission);
    const int reads = scene.stores.center.reads;
    scene.click(scene.mainButton());
    QCOMPARE(scene.stores.center.requests, 1);
    QCOMPARE(scene.stores.center.reads, reads + 1);
    QVERIFY(scene.item(u"complete"_s)->isVisible());
}

void OnboardingTest::notNowContinuesWithoutAskingTheSystem()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::Permission);
    const int reads = scene.stores.center.reads;
    scene.click(scene.otherButton());
    QVERIFY(scene.item(u"complete"_s)->isVisible());
    QCOMPARE(scene.stores.center.requests, 0);
    QCOMPARE(scene.stores.center.reads, reads);
}

void OnboardingTest::doneMarksOnboardingAsDone()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::Complete);
    QVERIFY(!scene.stores.settings.hasOnboarded());
    QSignalSpy finished(scene.state.get(), &OnboardingState::finished);
    scene.click(scene.mainButton());
    QVERIFY(scene.stores.settings.hasOnboarded());
    QCOMPARE(finished.count(), 1);
}

void OnboardingTest::theLastPageNamesThePrimaryService()
{
    Scene scene;
    scene.stores.settings.setCheckInterval(CheckInterval::oneMinute);
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    scene.click(scene.item(u"choice-4"_s));
    scene.turnTo(OnboardingState::Complete);
    QCOMPARE(scene.words(scene.item(u"complete"_s, u"remark"_s)),
             u"Watching GitHub Copilot · checks every five minutes"_s);
}

void OnboardingTest::dotsShowThePage()
{
    Scene scene;
    scene.open();
    const auto shown = [&scene] {
        for (int i = 0; i < 4; ++i) {
            if (scene.part(u"dot-%1"_s.arg(i))->property("color").value<QColor>() == scene.tokens.labelSecondary()) {
                return i;
            }
        }
        return -1;
    };
    for (const auto page : {OnboardingState::Promise, OnboardingState::PrimaryPicker, OnboardingState::Permission,
                            OnboardingState::Complete}) {
        scene.turnTo(page);
        QCOMPARE(shown(), int(page));
    }
}

void OnboardingTest::canBeOperatedByKeysOnly()
{
    Scene scene;
    scene.open();
    scene.key(Qt::Key_Return);
    QCOMPARE(scene.state->page(), OnboardingState::PrimaryPicker);
    QVERIFY(scene.tabTo(scene.item(u"choice-0"_s)));
    scene.key(Qt::Key_Down);
    scene.key(Qt::Key_Down);
    QCOMPARE(scene.state->selected(), 2);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"choice-2"_s));
    scene.key(Qt::Key_Up);
    QCOMPARE(scene.state->selected(), 1);
    QVERIFY(scene.tabTo(scene.mainButton()));
    scene.key(Qt::Key_Space);
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::chatgpt);
    QCOMPARE(scene.view.activeFocusItem(), scene.mainButton());
    QVERIFY(scene.mainButton()->property("visualFocus").toBool());
    scene.key(Qt::Key_Backtab);
    QCOMPARE(scene.view.activeFocusItem(), scene.otherButton());
    scene.key(Qt::Key_Return);
    QCOMPARE(scene.view.activeFocusItem(), scene.mainButton());
    scene.key(Qt::Key_Return);
    QVERIFY(scene.stores.settings.hasOnboarded());
}

void OnboardingTest::aKeyThatIsHeldDownTurnsOnePage_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Space") << Qt::Key_Space;
}

void OnboardingTest::aKeyThatIsHeldDownTurnsOnePage()
{
    QFETCH(Qt::Key, key);
    Scene scene;
    scene.open();
    scene.holdDown(key);
    QCOMPARE(scene.state->page(), OnboardingState::PrimaryPicker);
    scene.key(Qt::Key_Down);
    scene.holdDown(Qt::Key_Return);
    QCOMPARE(scene.state->page(), OnboardingState::Permission);
}

void OnboardingTest::arrowKeysChooseAsSoonAsThePageIsThere()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.view.activeFocusItem(), scene.mainButton());
    scene.key(Qt::Key_Down);
    QCOMPARE(scene.state->selected(), 1);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"choice-1"_s));
    scene.mainButton()->forceActiveFocus();
    scene.key(Qt::Key_Up);
    QCOMPARE(scene.state->selected(), 0);
}

void OnboardingTest::enterOnAChoiceChoosesAndContinues_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void OnboardingTest::enterOnAChoiceChoosesAndContinues()
{
    QFETCH(Qt::Key, key);
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    scene.item(u"choice-3"_s)->forceActiveFocus();
    scene.key(key);
    QCOMPARE(scene.state->page(), OnboardingState::Permission);
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::gemini);
}

void OnboardingTest::theSymbolAndTheHeadingStayAtTheirPlace()
{
    Scene scene;
    scene.open();
    const auto symbol = scene.frame(u"mark"_s).center();
    const auto heading = scene.frame(scene.part(u"heading"_s)).topLeft();
    scene.turnTo(OnboardingState::Permission);
    QCOMPARE(scene.frame(u"bell"_s).center(), symbol);
    QCOMPARE(scene.frame(scene.part(u"heading"_s)).topLeft(), heading);
    scene.turnTo(OnboardingState::Complete);
    QCOMPARE(scene.frame(scene.item(u"complete"_s, u"checkmark"_s)).center(), symbol);
    QCOMPARE(scene.frame(scene.part(u"heading"_s)).topLeft(), heading);
}

void OnboardingTest::buttonsAreLargeEnoughToHit()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    const auto back = scene.frame(scene.otherButton());
    QVERIFY(back.height() >= 24 && back.width() >= 24);
    QCOMPARE(back.center().y(), scene.frame(scene.mainButton()).center().y());
    QTest::mouseClick(&scene.view, Qt::LeftButton, {}, back.topLeft().toPoint() + QPoint(2, 1));
    QCOMPARE(scene.state->page(), OnboardingState::Promise);
    scene.turnTo(OnboardingState::Permission);
    QVERIFY(scene.frame(scene.otherButton()).height() >= 24);
}

void OnboardingTest::pagesFadeInUnlessMotionIsReduced()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.part(u"content"_s)->opacity(), 1.0);
    scene.appearance.setReduceMotion(false);
    scene.state->backToPromise();
    QVERIFY(scene.part(u"content"_s)->opacity() < 1);
    QTRY_COMPARE(scene.part(u"content"_s)->opacity(), 1.0);
}

void OnboardingTest::aScreenReaderSeesPagesAndChoices()
{
    Scene scene;
    scene.open();
    auto *heading = accessible(scene.item(u"promise"_s, u"heading"_s));
    QCOMPARE(heading->role(), QAccessible::Heading);
    QCOMPARE(heading->text(QAccessible::Name), u"Stop checking.\nWe’ll tell you."_s);
    QCOMPARE(accessibleName(scene.part(u"dots"_s)), u"Page 1 of 4"_s);
    QVERIFY(accessible(scene.item(u"complete"_s, u"heading"_s))->state().invisible);
    scene.turnTo(OnboardingState::PrimaryPicker);
    auto *choice = accessible(scene.item(u"choice-0"_s));
    QCOMPARE(choice->role(), QAccessible::RadioButton);
    QCOMPARE(choice->text(QAccessible::Name), u"Claude"_s);
    QVERIFY(choice->state().checked);
    QCOMPARE(accessibleName(scene.otherButton()), u"Back"_s);
    QCOMPARE(accessibleName(scene.part(u"dots"_s)), u"Page 2 of 4"_s);
}

// A screen reader tells the groups that the focus enters, with the texts in them.
void OnboardingTest::aScreenReaderIsToldThePageWithItsMainButton()
{
    static const QStringList headings{u"Stop checking. We’ll tell you."_s, u"Which one matters most?"_s,
                                      u"Kelvo needs to notify you"_s, u"You’re all set"_s};
    Scene scene;
    scene.open();
    QStringList buttons;
    for (const auto page : {OnboardingState::Promise, OnboardingState::PrimaryPicker, OnboardingState::Permission,
                            OnboardingState::Complete}) {
        scene.turnTo(page);
        QCOMPARE(scene.view.activeFocusItem(), scene.mainButton());
        const auto *button = accessible(scene.mainButton());
        QVERIFY(button->state().focused);
        const auto *group = button->parent();
        QCOMPARE(group->role(), QAccessible::Grouping);
        QCOMPARE(group->text(QAccessible::Name), headings.at(page));
        QVERIFY(!group->state().invisible);
        QCOMPARE(accessible(scene.part(u"body"_s))->role(), QAccessible::StaticText);
        buttons.append(button->text(QAccessible::Name));
    }
    QCOMPARE(buttons, (QStringList{u"Continue"_s, u"Continue"_s, u"Allow notifications"_s, u"Done"_s}));

    Scene picker;
    picker.open();
    picker.turnTo(OnboardingState::PrimaryPicker);
    const auto *choices = accessible(picker.item(u"choice-0"_s))->parent();
    QCOMPARE(choices->role(), QAccessible::Grouping);
    QCOMPARE(choices->text(QAccessible::Name), u"Which one matters most?"_s);
}

void OnboardingTest::everythingIsMirroredInARightToLeftLayout()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    const auto restore = qScopeGuard([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.frame(scene.part(u"dots"_s)).right(), 380.0);
    QCOMPARE(scene.frame(scene.mainButton()).left(), 20.0);
    QVERIFY(scene.frame(scene.otherButton()).left() > scene.frame(scene.mainButton()).right());
    QVERIFY(scene.frame(findItem(scene.item(u"choice-0"_s), u"checkmark"_s)).left() < 60);
}

void OnboardingTest::matchesTheGoldenPictures_data()
{
    QTest::addColumn<OnboardingState::Page>("page");
    QTest::addColumn<bool>("dark");
    for (const bool dark : {false, true}) {
        const char *look = dark ? "dark" : "light";
        QTest::addRow("promise-%s", look) << OnboardingState::Promise << dark;
        QTest::addRow("primary-picker-%s", look) << OnboardingState::PrimaryPicker << dark;
        QTest::addRow("permission-%s", look) << OnboardingState::Permission << dark;
        QTest::addRow("complete-%s", look) << OnboardingState::Complete << dark;
    }
}

void OnboardingTest::matchesTheGoldenPictures()
{
    QFETCH(OnboardingState::Page, page);
    QFETCH(bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.open();
    scene.turnTo(page);
    QTest::mouseMove(&scene.view, {200, 10});
    settle();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view), u"onboarding-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

void OnboardingTest::statesMatchTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void OnboardingTest::statesMatchTheGoldenPictures()
{
    QFETCH(bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.open();
    StatePictures states(scene);
    scene.turnTo(OnboardingState::PrimaryPicker);
    states.addStates(scene.mainButton());
    states.addStates(scene.otherButton());
    states.addStates(scene.item(u"choice-0"_s));
    states.addHovered(scene.item(u"choice-2"_s));
    states.addPressed(scene.item(u"choice-2"_s));
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(
        golden.difference(states.picture(), u"onboarding-states-"_s + QString::fromLatin1(QTest::currentDataTag())),
        QString());
}

void OnboardingTest::highContrastMatchesTheGoldenPictures_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void OnboardingTest::highContrastMatchesTheGoldenPictures()
{
    QFETCH(bool, dark);
    Scene scene;
    scene.appearance.dark = dark;
    scene.appearance.contrast = true;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    scene.key(Qt::Key_Down);
    scene.hover({200, 10});
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(picture(scene.view),
                               u"onboarding-high-contrast-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::OnboardingTest)
#include "tst_onboarding.moc"
