#include "support/ViewScene.h"

#include "windows/onboarding/OnboardingState.h"
#include "windows/settings/SettingsState.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// Returns the last line of a text as it is wrapped at this width.
QString lastLine(QString text, const QFont &font, double width)
{
    text.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QString last;
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        last = text.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return last.trimmed();
}

/// A text as it is drawn.
struct Drawn
{
    QString text;
    QRectF frame;
};

/// The texts of a view that can be seen, and what is wrong with them.
class Texts
{
public:
    Texts(QQuickItem *root, const QRectF &window)
        : window_(window)
    {
        visit(root);
        for (auto first = drawn_.begin(); first != drawn_.end(); ++first) {
            for (auto second = first + 1; second != drawn_.end(); ++second) {
                const auto common = first->frame & second->frame;
                if (common.width() > 1 && common.height() > 1) {
                    faults_.append(u"“%1” overlaps “%2”"_s.arg(first->text, second->text));
                }
            }
        }
    }

    qsizetype count() const { return drawn_.size(); }
    QStringList faults() const { return faults_; }

private:
    void visit(QQuickItem *item)
    {
        if (!item->isVisible() || item->opacity() == 0) {
            return;
        }
        if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty()) {
            check(item);
        }
        for (auto *child : item->childItems()) {
            visit(child);
        }
    }

    void check(QQuickItem *item)
    {
        const auto text = item->property("text").toString();
        const auto complain = [&](const char *what) { faults_.append(u"“%1” %2"_s.arg(text, QLatin1String(what))); };
        const double width = item->property("contentWidth").toReal();
        const double height = item->property("contentHeight").toReal();
        const auto frame = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));

        // A long address is shortened.
        if (item->property("truncated").toBool() && !text.startsWith(u"https://")) {
            complain("is shortened");
        }
        if (width > item->width() + 0.5 || height > item->height() + 0.5) {
            complain("is larger than its place");
        }
        if (!window_.contains(frame)) {
            complain("leaves the window");
        }
        for (auto *ancestor = item->parentItem(); ancestor; ancestor = ancestor->parentItem()) {
            if (ancestor->clip()
                && !ancestor->mapRectToScene(QRectF(0, 0, ancestor->width(), ancestor->height())).contains(frame)) {
                complain("is cut");
            }
        }
        if (item->property("lineCount").toInt() > 1) {
            const auto last = lastLine(text, item->property("font").value<QFont>(), item->width());
            if (!last.contains(u' ') && !last.contains(QChar::Nbsp)) {
                complain("ends in a line of one word");
            }
        }

        auto drawn = frame;
        switch (Qt::Alignment(item->property("effectiveHorizontalAlignment").toInt())) {
        case Qt::AlignRight: drawn.setLeft(drawn.right() - width); break;
        case Qt::AlignHCenter: drawn.adjust((frame.width() - width) / 2, 0, (width - frame.width()) / 2, 0); break;
        default: drawn.setWidth(width); break;
        }
        drawn_.append({text, drawn});
    }

    QRectF window_;
    QList<Drawn> drawn_;
    QStringList faults_;
};

struct Scene : ViewScene
{
    using ViewScene::ViewScene;

    QString faults() const
    {
        layOut(view.contentItem());
        const Texts texts(view.contentItem(), QRectF({}, view.size()));
        return texts.count() > 0 ? texts.faults().join(u"; "_s) : u"There is no text"_s;
    }
};

} // namespace

/// The views with the font that the environment variable KELVO_TEST_FONT names, at the scale of the environment.
class FontsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }

    void theOnboardingFits_data();
    void theOnboardingFits();
    void theSettingsFit();
    void theSheetFits_data();
    void theSheetFits();
};

void FontsTest::initTestCase()
{
    const auto family = qEnvironmentVariable("KELVO_TEST_FONT");
    if (QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).family() != family) {
        QSKIP(qPrintable(u"The font %1 is not installed"_s.arg(family)));
    }
}

void FontsTest::theOnboardingFits_data()
{
    QTest::addColumn<OnboardingState::Page>("page");
    QTest::newRow("promise") << OnboardingState::Promise;
    QTest::newRow("primary picker") << OnboardingState::PrimaryPicker;
    QTest::newRow("permission") << OnboardingState::Permission;
    QTest::newRow("complete") << OnboardingState::Complete;
}

void FontsTest::theOnboardingFits()
{
    QFETCH(OnboardingState::Page, page);
    // The longest name of a service.
    Scene scene({ServiceID::anthropicAPI});
    OnboardingState state(scene.stores.settings, scene.stores.notifier);
    const auto close = qScopeGuard([&scene] { scene.view.setSource({}); });
    scene.show(u"onboarding/OnboardingWindow.qml"_s, {{u"onboarding"_s, QVariant::fromValue(&state)}});
    if (page >= OnboardingState::PrimaryPicker) {
        state.continueToPicker();
    }
    if (page >= OnboardingState::Permission) {
        state.continueToPermission();
    }
    if (page == OnboardingState::Complete) {
        state.skipPermission();
    }
    settle();
    QCOMPARE(state.page(), page);
    QCOMPARE(scene.faults(), QString());
    if (page == OnboardingState::PrimaryPicker) {
        auto *choices = scene.item(u"choices"_s);
        QCOMPARE(choices->height(), choices->property("contentHeight").toReal());
        QVERIFY(scene.frame(choices).bottom() + 4
                <= scene.frame(scene.item(u"primaryPicker"_s, u"mainButton"_s)).top());
    }
}

void FontsTest::theSettingsFit()
{
    Scene scene;
    scene.stores.settings.setSlackWebhookURL(u"x"_s);
    SettingsState state(scene.stores.settings, scene.stores.notifier);
    const auto close = qScopeGuard([&scene] { scene.view.setSource({}); });
    scene.show(u"settings/SettingsView.qml"_s, {{u"settings"_s, QVariant::fromValue(&state)}});
    QCOMPARE(scene.faults(), QString());
}

void FontsTest::theSheetFits_data()
{
    QTest::addColumn<RemoteChannel>("channel");
    QTest::addColumn<bool>("isArmed");
    QTest::newRow("Slack") << RemoteChannel::slack << false;
    QTest::newRow("Slack, armed") << RemoteChannel::slack << true;
    QTest::newRow("Telegram") << RemoteChannel::telegram << false;
    QTest::newRow("Email") << RemoteChannel::email << false;
}

void FontsTest::theSheetFits()
{
    QFETCH(RemoteChannel, channel);
    QFETCH(bool, isArmed);
    Scene scene;
    if (isArmed) {
        scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0123456/B0123456/abcdefghijkl"_s);
        scene.stores.settings.setArmedChannel(channel);
        scene.stores.settings.setOutageAlertsEnabled(true);
        scene.stores.notifier.sendTest(RemoteChannel::email);
        QCoreApplication::processEvents();
        QCOMPARE(scene.stores.notifier.lastTestResult(), u"Couldn’t send — check the details"_s);
    }
    ChannelSheetState state(channel, scene.stores.settings, scene.stores.notifier);
    const auto close = qScopeGuard([&scene] { scene.view.setSource({}); });
    scene.show(u"channel/ChannelSheet.qml"_s, {{u"sheet"_s, QVariant::fromValue(&state)}});
    QCOMPARE(scene.faults(), QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::FontsTest)
#include "tst_fonts.moc"
