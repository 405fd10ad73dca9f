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
        static const QStringList forward{u"mainButton"_s, u"mainButton"_s, u"notNow"_s};
        while (state->page() != page) {
            click(item(forward.at(state->page())));
        }
    }
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
    void pagesFadeInUnlessMotionIsReduced();
    void aScreenReaderSeesPagesAndChoices();
    void everythingIsMirroredInARightToLeftLayout();
    void matchesTheGoldenPictures_data();
    void matchesTheGoldenPictures();
};

void OnboardingTest::startsWithThePromise()
{
    Scene scene;
    scene.open();
    QCOMPARE(scene.root()->size(), QSizeF(400, 300));
    QCOMPARE(scene.text(scene.item(u"promise"_s, u"heading"_s)), u"Stop checking.\nWe’ll tell you."_s);
    QVERIFY(scene.item(u"promise"_s)->isVisible());
    QCOMPARE(scene.item(u"mark"_s)->size(), QSizeF(54, 54));
    QCOMPARE(scene.frame(u"mainButton"_s).height(), 28.0);
    QCOMPARE(scene.frame(u"mainButton"_s).right(), 380.0);
    QCOMPARE(scene.frame(u"dots"_s).left(), 20.0);
    QCOMPARE(scene.frame(u"dots"_s).size(), QSizeF(4 * 6 + 3 * 6, 6));
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
    QVERIFY(scene.item(u"mainButton"_s)->isEnabled());
    scene.click(scene.item(u"mainButton"_s));
    QCOMPARE(scene.state->page(), OnboardingState::Permission);
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::claudeCode);
}

void OnboardingTest::continueIsDisabledUntilAServiceIsSelected()
{
    Scene scene(std::vector<ServiceID>{});
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.state->selected(), -1);
    QVERIFY(!scene.item(u"mainButton"_s)->isEnabled());
    scene.click(scene.item(u"mainButton"_s));
    scene.state->continueToPermission();
    QCOMPARE(scene.state->page(), OnboardingState::PrimaryPicker);
    scene.click(scene.item(u"choice-1"_s));
    QVERIFY(scene.item(u"mainButton"_s)->isEnabled());
    scene.click(scene.item(u"mainButton"_s));
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
    scene.click(scene.item(u"mainButton"_s));
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
    scene.click(scene.item(u"back"_s));
    QVERIFY(scene.item(u"promise"_s)->isVisible());
    QVERIFY(!scene.item(u"back"_s)->isVisible());
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
    QVERIFY(scene.frame(choices).bottom() < scene.frame(u"mainButton"_s).top());
    QVERIFY(scene.frame(scene.item(u"primaryPicker"_s, u"heading"_s)).top() >= 8);
}

void OnboardingTest::allowNotificationsAsksTheSystemAndContinuesAtOnce()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::Permission);
    const int reads = scene.stores.center.reads;
    scene.click(scene.item(u"mainButton"_s));
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
    scene.click(scene.item(u"notNow"_s));
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
    scene.click(scene.item(u"mainButton"_s));
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
    QCOMPARE(scene.text(scene.item(u"complete"_s, u"remark"_s)),
             u"Watching GitHub Copilot · checks every five minutes"_s);
}

void OnboardingTest::dotsShowThePage()
{
    Scene scene;
    scene.open();
    const auto shown = [&scene] {
        for (int i = 0; i < 4; ++i) {
            if (scene.item(u"dot-%1"_s.arg(i))->property("color").value<QColor>() == scene.tokens.labelSecondary()) {
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
    QVERIFY(scene.tabTo(scene.item(u"mainButton"_s)));
    scene.key(Qt::Key_Space);
    QCOMPARE(scene.stores.settings.primaryService()->id, ServiceID::chatgpt);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"mainButton"_s));
    QVERIFY(scene.item(u"mainButton"_s)->property("visualFocus").toBool());
    scene.key(Qt::Key_Backtab);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"notNow"_s));
    scene.key(Qt::Key_Return);
    QCOMPARE(scene.view.activeFocusItem(), scene.item(u"mainButton"_s));
    scene.key(Qt::Key_Return);
    QVERIFY(scene.stores.settings.hasOnboarded());
}

void OnboardingTest::pagesFadeInUnlessMotionIsReduced()
{
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.item(u"pages"_s)->opacity(), 1.0);
    scene.appearance.setReduceMotion(false);
    scene.state->backToPromise();
    QVERIFY(scene.item(u"pages"_s)->opacity() < 1);
    QTRY_COMPARE(scene.item(u"pages"_s)->opacity(), 1.0);
}

void OnboardingTest::aScreenReaderSeesPagesAndChoices()
{
    Scene scene;
    scene.open();
    auto *heading = accessible(scene.item(u"promise"_s, u"heading"_s));
    QCOMPARE(heading->role(), QAccessible::Heading);
    QCOMPARE(heading->text(QAccessible::Name), u"Stop checking.\nWe’ll tell you."_s);
    QCOMPARE(accessibleName(scene.item(u"dots"_s)), u"Page 1 of 4"_s);
    QVERIFY(accessible(scene.item(u"complete"_s, u"heading"_s))->state().invisible);
    scene.turnTo(OnboardingState::PrimaryPicker);
    auto *choice = accessible(scene.item(u"choice-0"_s));
    QCOMPARE(choice->role(), QAccessible::RadioButton);
    QCOMPARE(choice->text(QAccessible::Name), u"Claude"_s);
    QVERIFY(choice->state().checked);
    QCOMPARE(accessibleName(scene.item(u"back"_s)), u"Back"_s);
    QCOMPARE(accessibleName(scene.item(u"dots"_s)), u"Page 2 of 4"_s);
}

void OnboardingTest::everythingIsMirroredInARightToLeftLayout()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    const auto restore = qScopeGuard([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
    Scene scene;
    scene.open();
    scene.turnTo(OnboardingState::PrimaryPicker);
    QCOMPARE(scene.frame(u"dots"_s).right(), 380.0);
    QCOMPARE(scene.frame(u"mainButton"_s).left(), 20.0);
    QVERIFY(scene.frame(u"back"_s).left() > scene.frame(u"mainButton"_s).right());
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

} // namespace kelvo

QTEST_MAIN(kelvo::OnboardingTest)
#include "tst_onboarding.moc"
