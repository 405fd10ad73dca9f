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
    return {{u"settings"_s, QVariant::fromValue(state)}};
}

void SettingsSceneWindow::setSizes(QQuickView &view) const
{
    const int contentHeight = static_cast<int>(std::ceil(view.rootObject()->implicitHeight()));
    const int room = WindowSystem::availableGeometry(*view.screen()).height() - titleBarHeight;
    view.setMinimumSize({Tokens::settingsWidth, std::min(Tokens::settingsLeastHeight, room)});
    view.setMaximumSize({Tokens::settingsWidth, contentHeight});
    view.resize(Tokens::settingsWidth, std::min(contentHeight, room));
}

} // namespace kelvo
