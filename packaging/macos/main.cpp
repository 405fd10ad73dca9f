// kelvo-icns FILE: writes the application icon as an Apple icon file. The build calls it for the bundle.

#include "AppleIcon.h"

#include "menubar/AppIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QSaveFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    // A build has no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("Usage: kelvo-icns FILE\n", stderr);
        return 2;
    }
    const auto icon = kelvo::appleIcon(kelvo::AppIcon::image());
    QSaveFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::WriteOnly) || file.write(icon) != icon.size() || !file.commit()) {
        std::fprintf(stderr, "Cannot write %s: %s\n", argv[1], qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
