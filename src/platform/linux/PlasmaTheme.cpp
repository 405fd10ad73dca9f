#include "platform/linux/PlasmaTheme.h"

#include "platform/linux/KdeConfiguration.h"

#include <QColor>
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
        kdeEntry({colours}, "[Colors:Window]", "BackgroundNormal").value_or(QByteArray()).split(',');
    return components.size() < 3 ? QColor()
                                 : QColor(components[0].toInt(), components[1].toInt(), components[2].toInt());
}

} // namespace

PlasmaTheme::PlasmaTheme()
{
    const auto directories = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (const auto &directory : directories) {
        files_.push_back(std::make_unique<FileWatch>(directory + "/plasmarc"_L1));
        if (directory == directories.constFirst()) {
            files_.push_back(std::make_unique<FileWatch>(directory + "/kdedefaults/plasmarc"_L1));
        }
    }
    for (const auto &file : files_) {
        connect(file.get(), &FileWatch::changed, this, &PlasmaTheme::read);
    }
    read();
}

void PlasmaTheme::read()
{
    QStringList files;
    for (const auto &file : files_) {
        files.push_back(file->file());
    }
    const auto theme = QString::fromUtf8(kdeEntry(files, "[Theme]", "name").value_or(QByteArray()));
    const auto colour = windowColour(theme.isEmpty() ? u"default"_s : theme);
    const auto isDark = colour.isValid() ? std::optional(colour.lightness() < 128) : std::nullopt;
    if (isDark_ != isDark) {
        isDark_ = isDark;
        Q_EMIT changed();
    }
}

} // namespace kelvo
