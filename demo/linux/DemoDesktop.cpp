#include "DemoDesktop.h"

#include "linux/BusNotificationWatch.h"

#include "platform/linux/IniPreferences.h"

#include <QStandardPaths>
#include <QTemporaryDir>

namespace kelvo::DemoDesktop {

using namespace Qt::StringLiterals;

std::unique_ptr<Preferences> makePreferences()
{
    const auto directory = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<IniPreferences>(directory + "/Kelvo/Demo.conf"_L1);
}

std::unique_ptr<NotificationWatch> makeNotificationWatch(Platform &)
{
    return std::make_unique<BusNotificationWatch>();
}

std::optional<QDir> makePictureFolder()
{
    QTemporaryDir pictures(QDir::tempPath() + "/kelvo-demo-XXXXXX"_L1);
    pictures.setAutoRemove(false);
    return QDir(pictures.path());
}

} // namespace kelvo::DemoDesktop
