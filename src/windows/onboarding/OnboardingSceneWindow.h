#pragma once

#include "windows/SceneWindow.h"
#include "windows/onboarding/OnboardingState.h"

namespace kelvo {

/// The first-run window. Each opening begins at the first page.
class OnboardingSceneWindow : public SceneWindow
{
    Q_OBJECT

public:
    /// Everything must outlive this.
    OnboardingSceneWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine,
                          const Appearance &appearance);
    ~OnboardingSceneWindow() override;

private:
    QVariantMap makeState(QObject *owner) override;
    void setSizes(QQuickView &view) const override;

    SettingsStore &settings_;
    NotifierStore &notifier_;
};

} // namespace kelvo
