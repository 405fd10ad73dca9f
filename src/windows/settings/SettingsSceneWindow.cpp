#include "windows/settings/SettingsSceneWindow.h"

#include "platform/WindowSystem.h"

#include <QQuickItem>
#include <QScreen>

#include <cmath>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The approximate height of the title bar. The real height is not known before the window is shown.
constexpr int titleBarHeight = 40;

/// The greatest height of the window on its screen.
int room(const QQuickView &view)
{
    return WindowSystem::availableGeometry(*view.screen()).height() - titleBarHeight;
}

void setLimits(QQuickView &view)
{
    const int contentHeight = static_cast<int>(std::ceil(view.rootObject()->implicitHeight()));
    view.setMinimumSize({Tokens::settingsWidth, std::min(Tokens::settingsLeastHeight, room(view))});
    view.setMaximumSize({Tokens::settingsWidth, contentHeight});
}

} // namespace

SettingsSceneWindow::SettingsSceneWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine,
                                         const Appearance &appearance)
    : SceneWindow(engine, appearance, u"Kelvo Settings"_s,
                  QUrl(u"qrc:/qt/qml/Kelvo/windows/settings/SettingsView.qml"_s))
    , settings_(settings)
    , notifier_(notifier)
{
}

SettingsSceneWindow::~SettingsSceneWindow() = default;

QVariantMap SettingsSceneWindow::makeState(QQuickView &view)
{
    auto *state = new SettingsState(settings_, notifier_, &view);
    connect(state, &SettingsState::onboardingRequested, this, &SettingsSceneWindow::onboardingRequested);
    connect(state, &SettingsState::sheetFailed, this, &SceneWindow::failed);
    // The user may come back from the settings of the system.
    connect(&view, &QWindow::activeChanged, state, [&view, state] {
        if (view.isActive()) {
            state->refreshNotifications();
        }
    });
    return {{u"settings"_s, QVariant::fromValue(state)}};
}

void SettingsSceneWindow::setSizes(QQuickView &view) const
{
    setLimits(view);
    view.resize(Tokens::settingsWidth, std::min(view.maximumHeight(), room(view)));
    // A note on a row appears or disappears.
    connect(view.rootObject(), &QQuickItem::implicitHeightChanged, &view, [&view] {
        const bool showsAll = view.height() == view.maximumHeight();
        setLimits(view);
        view.resize(Tokens::settingsWidth, std::min(showsAll ? room(view) : view.height(), view.maximumHeight()));
    });
}

} // namespace kelvo
