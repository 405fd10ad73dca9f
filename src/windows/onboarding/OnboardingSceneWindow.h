#pragma once

#include "windows/SceneWindow.h"
#include "windows/onboarding/OnboardingState.h"

namespace kelvo {

/// The onboarding window. It always opens at its first page.
class OnboardingSceneWindow : public SceneWindow
{
    Q_OBJECT

public:
    /// All arguments must outlive this object.
    OnboardingSceneWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine,
                          const Appearance &appearance);
    ~OnboardingSceneWindow() override;

private:
    QVariantMap makeState(QQuickView &view) override;
    void setSizes(QQuickView &view) const override;

    SettingsStore &settings_;
    NotifierStore &notifier_;
};

} // namespace kelvo
