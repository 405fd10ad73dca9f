#pragma once

#include "windows/SceneWindow.h"
#include "windows/SettingsState.h"

namespace kelvo {

/// The settings window. As high as its content where the screen allows, else it scrolls.
class SettingsWindow : public SceneWindow
{
    Q_OBJECT

public:
    /// Everything must outlive this.
    SettingsWindow(SettingsStore &settings, NotifierStore &notifier, ViewEngine &engine, const Appearance &appearance);
    ~SettingsWindow() override;

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
