#include "platform/Platform.h"

#include "platform/macos/AquaAppearance.h"
#include "platform/macos/ConfigurationNetworkWatch.h"
#include "platform/macos/DispatchClock.h"
#include "platform/macos/MenuBarStatusItem.h"
#include "platform/macos/RunningApplicationInstance.h"
#include "platform/macos/ServiceLoginItem.h"
#include "platform/macos/UserDefaultsPreferences.h"
#include "platform/macos/UserNotificationCenter.h"
#include "platform/macos/WorkspaceSleepWake.h"

#include <QCoreApplication>

#import <AppKit/AppKit.h>

namespace kelvo {

using namespace Qt::StringLiterals;

Platform makePlatform()
{
    // LSUIElement in the bundle does the same. This is for an executable that is started without its bundle; it would
    // otherwise appear in the Dock.
    [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];

    auto appearance = std::make_unique<AquaAppearance>();
    auto statusItem = std::make_unique<MenuBarStatusItem>();
    QObject::connect(statusItem.get(), &MenuBarStatusItem::shown, appearance.get(),
                     [item = statusItem.get(), bar = appearance.get()] { bar->followMenuBar(item->view()); });

    return {
        .clock = std::make_unique<DispatchClock>(),
        .sleepWake = std::make_unique<WorkspaceSleepWake>(),
        .networkWatch = std::make_unique<ConfigurationNetworkWatch>(),
        .notificationCenter = std::make_unique<UserNotificationCenter>(),
        .loginItem = std::make_unique<ServiceLoginItem>(),
        .preferences = std::make_unique<UserDefaultsPreferences>(),
        .appearance = std::move(appearance),
        .statusItem = std::move(statusItem),
    };
}

std::unique_ptr<SingleInstance> makeSingleInstance()
{
    return std::make_unique<RunningApplicationInstance>();
}

QString openLibrary(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u"/../PlugIns/"_s + name + u".dylib"_s;
}

} // namespace kelvo
