#pragma once

#include "windows/SceneWindow.h"
#include "windows/settings/SettingsState.h"

namespace kelvo {

/// The settings window. As high as its content where the screen allows, else it scrolls.
class SettingsSceneWindow : public SceneWindow
{
    Q_OBJECT

public:
    /// Everything must outlive this.
    SettingsSceneWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine,
                        const Appearance &appearance);
    ~SettingsSceneWindow() override;

Q_SIGNALS:
    /// The user wants to see the first-run window again.
    void onboardingRequested();

private:
    QVariantMap makeState(QObject *owner) override;
    void setSizes(QQuickView &view) const override;

    SettingsStore &settings_;
    NotifierStore &notifier_;
};

} // namespace kelvo
