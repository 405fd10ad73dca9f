#pragma once

#include "windows/SceneWindow.h"
#include "windows/settings/SettingsState.h"

namespace kelvo {

/// The settings window. It is as high as its content if the screen is high enough; otherwise its content scrolls.
class SettingsSceneWindow : public SceneWindow
{
    Q_OBJECT

public:
    /// All arguments must outlive this object.
    SettingsSceneWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine,
                        const Appearance &appearance);
    ~SettingsSceneWindow() override;

Q_SIGNALS:
    /// The user asked to see the onboarding window again.
    void onboardingRequested();

private:
    QVariantMap makeState(QQuickView &view) override;
    void setSizes(QQuickView &view) const override;

    SettingsStore &settings_;
    NotifierStore &notifier_;
};

} // namespace kelvo
