#include "windows/onboarding/OnboardingSceneWindow.h"

#include "menubar/WindowOpener.h"

#include <QQuickItem>

#include <cmath>

namespace kelvo {

using namespace Qt::StringLiterals;

OnboardingSceneWindow::OnboardingSceneWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine,
                                             const Appearance &appearance)
    : SceneWindow(engine, appearance, WindowOpener::onboardingTitle(),
                  QUrl(u"qrc:/qt/qml/Kelvo/windows/onboarding/OnboardingWindow.qml"_s))
    , settings_(settings)
    , notifier_(notifier)
{
}

OnboardingSceneWindow::~OnboardingSceneWindow() = default;

QVariantMap OnboardingSceneWindow::makeState(QQuickView &view)
{
    auto *state = new OnboardingState(settings_, notifier_, &view);
    connect(state, &OnboardingState::finished, this, &SceneWindow::close);
    return {{u"onboarding"_s, QVariant::fromValue(state)}};
}

void OnboardingSceneWindow::setSizes(QQuickView &view) const
{
    const QSize size(Tokens::onboardingWidth, static_cast<int>(std::ceil(view.rootObject()->implicitHeight())));
    view.setMinimumSize(size);
    view.setMaximumSize(size);
    view.resize(size);
}

} // namespace kelvo
