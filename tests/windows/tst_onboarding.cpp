#include "windows/ViewScene.h"

#include "windows/OnboardingState.h"

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
        show(u"OnboardingWindow.qml"_s, {{u"onboarding"_s, QVariant::fromValue(state.get())}});
    }
    /// With the buttons that a user presses.
    void turnTo(OnboardingState::Page page)
    {
        static const QStringList forward{u"continueToPicker"_s, u"continueToPermission"_s, u"notNow"_s};
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

    void looksAsItShould_data();
    void looksAsItShould();
};

void OnboardingTest::looksAsItShould_data()
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

void OnboardingTest::looksAsItShould()
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
    QCOMPARE(golden.difference(scene.view.grabWindow(), u"onboarding-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::OnboardingTest)
#include "tst_onboarding.moc"
