#include "gallery/RingSheet.h"
#include "support/Looks.h"
#include "support/ViewScene.h"

#include "menubar/popover/PopoverFrameItem.h"
#include "menubar/popover/PopoverState.h"
#include "windows/channel/ChannelSheetState.h"
#include "windows/onboarding/OnboardingState.h"
#include "windows/settings/SettingsState.h"

#include <QDir>
#include <QGuiApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kelvo {

namespace {

/// Takes the pictures for the documentation, with two pixels per point.
class Gallery
{
public:
    explicit Gallery(QDir folder)
        : folder_(std::move(folder))
    {
    }

    bool take();

private:
    void takePopover(const PopoverLook &look);
    void takeSettings();
    void takeSheet(RemoteChannel channel, bool configured, const QString &name);
    void takeOnboarding(OnboardingState::Page page, const QString &name);

    void takeFramed(ViewScene &scene, const QString &file, const QString &title, const QString &stateName,
                    QObject &state, const QString &name);
    void grab(QQuickView &view, const QString &name);
    void save(const QImage &picture, const QString &name);
    QString lit(const QString &name) const { return name + (dark_ ? "-dark"_L1 : "-light"_L1); }
    QColor desktop() const { return dark_ ? QColor(0x3a414b) : QColor(0xcfd6e0); }

    QDir folder_;
    bool dark_ = false;
    bool saved_ = true;
};

bool Gallery::take()
{
    save(ringSheet(), u"ring"_s);
    for (const bool dark : {false, true}) {
        dark_ = dark;
        for (const auto &look : popoverLooks()) {
            takePopover(look);
        }
        takeSettings();
        takeSheet(RemoteChannel::slack, false, u"sheet-slack"_s);
        takeSheet(RemoteChannel::slack, true, u"sheet-slack-configured"_s);
        takeSheet(RemoteChannel::telegram, false, u"sheet-telegram"_s);
        takeOnboarding(OnboardingState::Promise, u"onboarding-1-promise"_s);
        takeOnboarding(OnboardingState::PrimaryPicker, u"onboarding-2-primary-picker"_s);
        takeOnboarding(OnboardingState::Permission, u"onboarding-3-permission"_s);
        takeOnboarding(OnboardingState::Complete, u"onboarding-4-complete"_s);
    }
    return saved_;
}

void Gallery::takePopover(const PopoverLook &look)
{
    FakeAppearance appearance;
    appearance.still = true;
    appearance.dark = dark_;
    ViewEngine engine(appearance);
    Stores stores(look.watched);
    look.bringAbout(stores);
    PopoverState state(stores.store, stores.settings);

    QQuickView view(&engine.get(), nullptr);
    view.setColor(desktop());
    view.setResizeMode(QQuickView::SizeViewToRootObject);
    view.setInitialProperties({{u"popover"_s, QVariant::fromValue(&state)}});
    view.setSource(QUrl(u"qrc:/qt/qml/Kelvo/menubar/popover/PopoverFrame.qml"_s));
    qobject_cast<PopoverFrameItem *>(view.rootObject())->setTranslucent(true);
    state.open();
    settle();
    stores.clock.advance(4s);
    if (!look.peeked.isEmpty()) {
        state.peek(look.peeked);
    }
    layOut(view.rootObject());
    view.resize(view.rootObject()->size().toSize());
    grab(view, u"popover-"_s + look.name);
}

void Gallery::takeSettings()
{
    ViewScene scene(settingsLookServices);
    bringAboutSettingsLook(scene.stores.settings);
    SettingsState state(scene.stores.settings, scene.stores.notifier);
    takeFramed(scene, u"settings/SettingsView.qml"_s, u"Kelvo Settings"_s, u"settings"_s, state, u"settings"_s);
}

void Gallery::takeSheet(RemoteChannel channel, bool configured, const QString &name)
{
    ViewScene scene;
    if (configured) {
        scene.stores.settings.setSlackWebhookURL(u"https://hooks.slack.com/services/T0/B0/x"_s);
    }
    ChannelSheetState state(channel, scene.stores.settings, scene.stores.notifier);
    takeFramed(scene, u"channel/ChannelSheet.qml"_s, {}, u"sheet"_s, state, name);
}

void Gallery::takeOnboarding(OnboardingState::Page page, const QString &name)
{
    ViewScene scene;
    OnboardingState state(scene.stores.settings, scene.stores.notifier);
    if (page >= OnboardingState::PrimaryPicker) {
        state.continueToPicker();
    }
    if (page >= OnboardingState::Permission) {
        state.continueToPermission();
    }
    if (page >= OnboardingState::Complete) {
        state.skipPermission();
    }
    takeFramed(scene, u"onboarding/OnboardingWindow.qml"_s, u"Welcome to Kelvo"_s, u"onboarding"_s, state, name);
}

void Gallery::takeFramed(ViewScene &scene, const QString &file, const QString &title, const QString &stateName,
                         QObject &state, const QString &name)
{
    scene.appearance.dark = dark_;
    scene.view.setInitialProperties({
        {u"view"_s, QUrl(u"qrc:/qt/qml/Kelvo/windows/"_s + file)},
        {u"properties"_s, QVariantMap{{stateName, QVariant::fromValue(&state)}}},
        {u"title"_s, title},
        {u"desktop"_s, desktop()},
    });
    scene.view.setSource(QUrl(u"qrc:/gallery/Framed.qml"_s));
    layOut(scene.root());
    scene.view.resize(qCeil(scene.root()->implicitWidth()), qCeil(scene.root()->implicitHeight()));
    grab(scene.view, name);
    scene.view.setSource({}); // the view must be destroyed before its state
}

void Gallery::grab(QQuickView &view, const QString &name)
{
    view.show();
    if (view.status() != QQuickView::Ready || !QTest::qWaitForWindowExposed(&view)) {
        qFatal("%s cannot be shown", qPrintable(name));
    }
    settle();
    save(view.grabWindow(), lit(name));
}

void Gallery::save(const QImage &picture, const QString &name)
{
    auto opaque = picture.convertToFormat(QImage::Format_RGB32);
    opaque.setDevicePixelRatio(1);
    saved_ = opaque.save(folder_.filePath(name + ".png"_L1), "PNG", 0) && saved_;
}

} // namespace

} // namespace kelvo

int main(int argc, char *argv[])
{
    // The pictures must not depend on the appearance and the fonts of this machine.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2");
    qputenv("FONTCONFIG_FILE", KELVO_GALLERY_FONTS);
    QGuiApplication application(argc, argv);
    const QDir folder(QGuiApplication::arguments().value(1));
    if (argc != 2 || !folder.mkpath(u"."_s)) {
        QTextStream(stderr) << "Usage: kelvo-screenshots FOLDER" << Qt::endl;
        return EXIT_FAILURE;
    }
    return kelvo::Gallery(folder).take() ? EXIT_SUCCESS : EXIT_FAILURE;
}
