#include "platform/linux/PlasmaTheme.h"

#include <QColor>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// Returns the window colour of a theme of Plasma; invalid when the theme follows the colour scheme of the windows.
QColor windowColour(const QString &theme)
{
    const auto colours = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                u"plasma/desktoptheme/%1/colors"_s.arg(theme));
    if (colours.isEmpty()) {
        return {};
    }
    const auto components =
        QSettings(colours, QSettings::IniFormat).value(u"Colors:Window/BackgroundNormal"_s).toStringList();
    return components.size() < 3 ? QColor()
                                 : QColor(components[0].toInt(), components[1].toInt(), components[2].toInt());
}

} // namespace

PlasmaTheme::PlasmaTheme()
{
    const auto directories = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (const auto &directory : directories) {
        files_.append(directory + "/plasmarc"_L1);
        if (directory == directories.constFirst()) {
            files_.append(directory + "/kdedefaults/plasmarc"_L1);
        }
    }
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &PlasmaTheme::read);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &PlasmaTheme::read);
    read();
}

void PlasmaTheme::read()
{
    QString theme;
    QStringList watched;
    for (const auto &file : files_) {
        const QFileInfo info(file);
        // Programs replace these files, which ends the watch of a file. A directory changes more often, so watch it only
        // while the file does not exist.
        watched.append(info.exists() ? file : info.absolutePath());
        if (theme.isEmpty() && info.exists()) {
            theme = QSettings(file, QSettings::IniFormat).value(u"Theme/name"_s).toString();
        }
    }
    watched.removeDuplicates();
    watched.removeIf([](const QString &path) { return !QFileInfo::exists(path); });
    const auto before = watcher_.files() + watcher_.directories();
    for (const auto &path : before) {
        if (!watched.contains(path)) {
            watcher_.removePath(path);
        }
    }
    for (const auto &path : watched) {
        if (!before.contains(path)) {
            watcher_.addPath(path);
        }
    }

    const auto colour = windowColour(theme.isEmpty() ? u"default"_s : theme);
    const auto isDark = colour.isValid() ? std::optional(colour.lightness() < 128) : std::nullopt;
    if (isDark_ != isDark) {
        isDark_ = isDark;
        Q_EMIT changed();
    }
}

} // namespace kelvo
