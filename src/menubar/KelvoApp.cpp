#include "menubar/KelvoApp.h"

#include "menubar/MenuBarIcon.h"

#include <QCoreApplication>

namespace kelvo {

using namespace Qt::StringLiterals;

KelvoApp::KelvoApp(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform)
    : store_(store)
    , appearance_(*platform.appearance)
    , statusItem_(*platform.statusItem)
    , engine_(appearance_)
    , popover_(store, settings, engine_, *platform.clock)
    , settingsWindow_(settings, notifier, engine_, appearance_)
    , onboardingWindow_(settings, notifier, engine_, appearance_)
    , opener_(*platform.clock)
{
    makeMenu();
    connect(&statusItem_, &StatusItem::activated, this, [this] { popover_.toggle(statusItem_.geometry()); });
    connect(&popover_, &PopoverWindow::settingsRequested, this, &KelvoApp::openSettings);
    for (SceneWindow *window : std::initializer_list<SceneWindow *>{&settingsWindow_, &onboardingWindow_}) {
        connect(window, &SceneWindow::settingsRequested, this, &KelvoApp::openSettings);
    }
    connect(&settingsWindow_, &SettingsWindow::onboardingRequested, this, &KelvoApp::openOnboarding);

    connect(&store, &StatusStore::statusesChanged, this, &KelvoApp::updateStatusItem);
    connect(&store, &StatusStore::heroIDChanged, this, &KelvoApp::updateStatusItem);
    connect(&store, &StatusStore::peekedIDChanged, this, &KelvoApp::updateStatusItem);
    connect(&settings, &SettingsStore::objectDidChange, this, &KelvoApp::updateStatusItem);
    connect(&appearance_, &Appearance::changed, this, &KelvoApp::updateStatusItem);

    updateStatusItem();
    statusItem_.setMenu(&menu_);
    statusItem_.show();
    if (!settings.hasOnboarded()) {
        openOnboarding();
    }
}

KelvoApp::~KelvoApp() = default;

void KelvoApp::showFirstRing(StatusItem &statusItem, const Appearance &appearance)
{
    statusItem.setIcon(MenuBarIcon::image(RingState::inactive, appearance.panelIsDark()));
    statusItem.show();
}

void KelvoApp::openPopover()
{
    popover_.open();
}

void KelvoApp::openSettings()
{
    settingsWindow_.open();
    opener_.bringSettingsForward();
}

void KelvoApp::openOnboarding()
{
    onboardingWindow_.open();
    opener_.bringForward(WindowOpener::onboardingTitle());
}

void KelvoApp::makeMenu()
{
    menu_.addAction(u"Open Kelvo"_s, this, &KelvoApp::openPopover);
    menu_.addAction(u"Settings…"_s, this, &KelvoApp::openSettings);
    menu_.addSeparator();
    menu_.addAction(u"Quit Kelvo"_s, qApp, &QCoreApplication::quit);
}

void KelvoApp::updateStatusItem()
{
    updateIcon();
    updateToolTip();
}

void KelvoApp::updateIcon()
{
    const Shown next{store_.ringState(), appearance_.panelIsDark()};
    if (next == shown_) {
        return;
    }
    shown_ = next;
    statusItem_.setIcon(MenuBarIcon::image(next.state, next.onDarkBar));
}

void KelvoApp::updateToolTip()
{
    const auto hero = store_.hero();
    const auto label = store_.heroStatusLabel();
    const auto toolTip = hero ? u"%1: %2"_s.arg(hero->name, label) : label;
    if (toolTip == toolTip_) {
        return;
    }
    toolTip_ = toolTip;
    statusItem_.setToolTip(toolTip);
}

} // namespace kelvo
