#include "menubar/KelvoApp.h"

#include "menubar/MenuBarIcon.h"

#include <QCoreApplication>

namespace kelvo {

using namespace Qt::StringLiterals;

KelvoApp::KelvoApp(StatusStore &store, SettingsStore &settings, Appearance &appearance, StatusItem &statusItem)
    : store_(store)
    , appearance_(appearance)
    , statusItem_(statusItem)
{
    menu_.addAction(u"Quit Kelvo"_s, qApp, &QCoreApplication::quit);

    connect(&store, &StatusStore::statusesChanged, this, &KelvoApp::updateStatusItem);
    connect(&store, &StatusStore::heroIDChanged, this, &KelvoApp::updateStatusItem);
    connect(&store, &StatusStore::peekedIDChanged, this, &KelvoApp::updateStatusItem);
    connect(&settings, &SettingsStore::objectDidChange, this, &KelvoApp::updateStatusItem);
    connect(&appearance, &Appearance::changed, this, &KelvoApp::updateStatusItem);

    updateStatusItem();
    statusItem.setMenu(&menu_);
    statusItem.show();
}

KelvoApp::~KelvoApp() = default;

void KelvoApp::showFirstRing(StatusItem &statusItem, const Appearance &appearance)
{
    statusItem.setIcon(MenuBarIcon::image(RingState::inactive, appearance.panelIsDark()));
    statusItem.show();
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
