#include "menubar/KelvoApp.h"

#include "menubar/MenuBarIcon.h"

#include <QCoreApplication>
#include <QFontDatabase>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

StatusItemImage imageOf(RingState state)
{
    return {.onLightBar = MenuBarIcon::image(state, false), .onDarkBar = MenuBarIcon::image(state, true)};
}

} // namespace

KelvoApp::KelvoApp(StatusStore &store, SettingsStore &settings, NotifierStore &notifier, Platform &platform,
                   ViewsFactory makeViews)
    : store_(store)
    , settings_(settings)
    , notifier_(notifier)
    , platform_(platform)
    , appearance_(*platform.appearance)
    , statusItem_(*platform.statusItem)
    , makeViews_(makeViews)
{
    makeMenu();
    connect(&statusItem_, &StatusItem::activated, this, &KelvoApp::togglePopover);
    connect(&store, &StatusStore::statusesChanged, this, &KelvoApp::updateStatusItem);
    connect(&store, &StatusStore::heroIDChanged, this, &KelvoApp::updateStatusItem);
    connect(&store, &StatusStore::popoverIsOpenChanged, this, &KelvoApp::updateStatusItem);
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

KelvoApp::~KelvoApp()
{
    if (fonts_) {
        fonts_->wait();
    }
}

void KelvoApp::showFirstRing(StatusItem &statusItem, const Appearance &appearance)
{
    statusItem.setImage(imageOf(RingState::inactive), appearance.panelIsDark());
    statusItem.show();
}

Views *KelvoApp::views()
{
    if (!views_) {
        readFonts();
        views_ = makeViews_(store_, settings_, notifier_, platform_);
        if (views_) {
            connect(views_.get(), &Views::failed, this, &KelvoApp::reportFailedViews);
        } else {
            reportFailedViews();
        }
    }
    return views_.get();
}

void KelvoApp::reportFailedViews()
{
    auto &center = *platform_.notificationCenter;
    if (failedViewsAreReported_ || !center.canServeThisProcess()) {
        return;
    }
    failedViewsAreReported_ = true;
    center.add({u"views"_s, u"Kelvo cannot open its windows"_s,
                u"Quit Kelvo and start it again. If that does not help, install it again."_s});
}

/// Makes Qt read the list of the installed fonts, in a thread of its own. The first text needs it, and reading it takes
/// about as long as loading the views.
void KelvoApp::readFonts()
{
    if (!fonts_) {
        fonts_.reset(QThread::create([] { QFontDatabase::families(); }));
        fonts_->start();
    }
}

void KelvoApp::togglePopover(std::optional<QPoint> point)
{
    if (auto *shown = views()) {
        shown->togglePopover({statusItem_.geometry(), point});
    }
}

void KelvoApp::openPopover()
{
    if (auto *shown = views()) {
        shown->openPopover({statusItem_.geometry(), {}});
    }
}

void KelvoApp::openSettings()
{
    if (auto *shown = views()) {
        shown->openSettings();
    }
}

void KelvoApp::openOnboarding()
{
    if (auto *shown = views()) {
        shown->openOnboarding();
    }
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
    statusItem_.setImage(imageOf(next.state), next.onDarkBar);
}

void KelvoApp::updateToolTip()
{
    // The tool tip would cover the popover, which says the same.
    if (store_.popoverIsOpen()) {
        showToolTip({});
        return;
    }
    const auto hero = store_.hero();
    const auto label = store_.heroStatusLabel();
    showToolTip(hero ? u"%1: %2"_s.arg(hero->name, label) : label);
}

void KelvoApp::showToolTip(const QString &toolTip)
{
    if (toolTip == toolTip_) {
        return;
    }
    toolTip_ = toolTip;
    statusItem_.setToolTip(toolTip);
}

} // namespace kelvo
