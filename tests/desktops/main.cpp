// Tells the story of the program on the desktop that it runs on (see tools/desktop-session), or collects the results of
// such runs in a document.
//
//   kelvo-desktops RESULTS PICTURES      tells the story; writes the results to a file and the pictures to a directory
//   kelvo-desktops --write DOCUMENT RESULTS…

#include "Report.h"
#include "Story.h"

#include <QGuiApplication>

#include <cstdio>

int main(int count, char *arguments[])
{
    QStringList given;
    for (int i = 1; i < count; ++i) {
        given.append(QString::fromLocal8Bit(arguments[i]));
    }
    if (given.size() >= 2 && given[0] == QLatin1StringView("--write")) {
        kelvo::Report::write(given[1], given.sliced(2));
        return 0;
    }
    if (given.size() != 2) {
        std::fputs("kelvo-desktops: see ./dev --help\n", stderr);
        return 2;
    }
    // The story looks at the screen from outside and needs no window.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(count, arguments);
    qunsetenv("QT_QPA_PLATFORM");
    const auto desktop = kelvo::Desktop::current();
    const auto seen = kelvo::Story(*desktop, QDir(given[1])).tell();
    kelvo::Report::save(given[0], seen);
    return kelvo::Report::hasFailed(qEnvironmentVariable("KELVO_DESKTOP"), seen) ? 1 : 0;
}
