#include "windows/ViewScene.h"

#include "windows/SettingsState.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

const std::vector<ServiceID> catalogOrder(allServiceIDs.begin(), allServiceIDs.end());

struct Scene : ViewScene
{
    using ViewScene::ViewScene;
    ~Scene() { view.setSource({}); }

    void open(QSize size = {}) { show(u"SettingsView.qml"_s, {{u"settings"_s, QVariant::fromValue(&state)}}, size); }

    QQuickItem *row(ServiceID id) const { return item(u"service-"_s + rawValue(id)); }
    QQuickItem *part(ServiceID id, const QString &name) const { return findItem(row(id), name); }
    QQuickItem *channel(RemoteChannel channel) const { return item(u"channel-"_s + rawValue(channel)); }
    QQuickItem *part(RemoteChannel of, const QString &name) const { return findItem(channel(of), name); }
    int place(ServiceID id) const { return qRound(row(id)->y() / 34); }
    /// The middle of a row's place, in the window.
    QPoint slot(int index) const { return frame(u"services"_s).topLeft().toPoint() + QPoint(16, 34 * index + 17); }

    void press(ServiceID id) { QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, middle(part(id, u"handle"_s))); }
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

    void looksAsItShould_data();
    void looksAsItShould();
};

void SettingsViewTest::looksAsItShould_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void SettingsViewTest::looksAsItShould()
{
    QFETCH(bool, dark);
    Scene scene({ServiceID::claude, ServiceID::cursor, ServiceID::chatgpt, ServiceID::copilot, ServiceID::claudeCode});
    scene.appearance.dark = dark;
    scene.stores.settings.setServiceOrder({ServiceID::claude, ServiceID::cursor, ServiceID::chatgpt, ServiceID::gemini,
                                           ServiceID::copilot, ServiceID::anthropicAPI, ServiceID::openaiAPI,
                                           ServiceID::claudeCode});
    scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    scene.stores.settings.setArmedChannel(RemoteChannel::slack);
    scene.stores.settings.setLaunchAtLogin(true);
    scene.open();
    const Golden golden(QStringLiteral(KELVO_GOLDEN_PICTURES), QStringLiteral(KELVO_GOLDEN_FAILURES));
    QCOMPARE(golden.difference(scene.view.grabWindow(), u"settings-"_s + QString::fromLatin1(QTest::currentDataTag())),
             QString());
}

} // namespace kelvo

QTEST_MAIN(kelvo::SettingsViewTest)
#include "tst_settingsview.moc"
