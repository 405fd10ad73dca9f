#include "platform/linux/NotificationSettings.h"

#include "ReadyFuture.h"
#include "platform/linux/KdeConfiguration.h"

#include <QProcess>
#include <QPromise>
#include <QStandardPaths>

#include <memory>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// A setting of GNOME that hides notifications when it is false.
struct GnomeSwitch
{
    QString schema;
    QString key;
};

// GNOME Shell makes the last part of the path from the name of the desktop entry.
const GnomeSwitch gnomeSwitches[] = {
    {u"org.gnome.desktop.notifications"_s, u"show-banners"_s},
    {u"org.gnome.desktop.notifications.application:/org/gnome/desktop/notifications/application/app-kelvo-kelvo/"_s,
     u"enable"_s},
};

/// Gives true if the setting is false, and false if it is true or cannot be read.
QFuture<bool> isOff(const GnomeSwitch &setting, QObject *parent)
{
    const auto promise = std::make_shared<QPromise<bool>>();
    promise->start();
    auto *reader = new QProcess(parent);
    const auto finish = [reader, promise] {
        promise->addResult(reader->readAllStandardOutput().trimmed() == "false");
        promise->finish();
        reader->deleteLater();
    };
    QObject::connect(reader, &QProcess::finished, reader, finish);
    QObject::connect(reader, &QProcess::errorOccurred, reader, [finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            finish();
        }
    });
    reader->start(u"gsettings"_s, {u"get"_s, setting.schema, setting.key}, QIODevice::ReadOnly);
    return promise->future();
}

bool areOffInPlasma()
{
    const auto files = QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation, u"plasmanotifyrc"_s);
    return kdeEntry(files, "[Applications][app.kelvo.Kelvo]", "ShowPopups") == "false";
}

} // namespace

NotificationSettings::NotificationSettings(const QStringList &desktops)
    : isGnome_(desktops.contains("GNOME"_L1, Qt::CaseInsensitive))
    , isPlasma_(desktops.contains("KDE"_L1, Qt::CaseInsensitive))
{
}

NotificationSettings::~NotificationSettings()
{
    for (auto *reader : findChildren<QProcess *>()) {
        reader->disconnect();
        reader->kill();
        reader->waitForFinished();
    }
}

QFuture<QString> NotificationSettings::turnedOffIn()
{
    if (isGnome_) {
        return areOffInGnome().then([](bool off) { return off ? u"Settings › Notifications"_s : QString(); });
    }
    return readyFuture(isPlasma_ && areOffInPlasma() ? u"System Settings › Notifications"_s : QString());
}

QFuture<bool> NotificationSettings::areOffInGnome()
{
    return isOff(gnomeSwitches[0], this)
        .then([this](bool off) { return off ? readyFuture(true) : isOff(gnomeSwitches[1], this); })
        .unwrap();
}

} // namespace kelvo
