#include "DesktopWindow.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <QThread>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

std::optional<DesktopWindow> find(const QString &title)
{
    const auto pattern = u'^' + QRegularExpression::escape(title) + u'$';
    const auto id =
        outputOf(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, pattern}).section(u'\n', 0, 0);
    if (id.isEmpty()) {
        return std::nullopt;
    }
    static const QRegularExpression numbers(
        u"Absolute upper-left X: *(-?\\d+)\\s+Absolute upper-left Y: *(-?\\d+).*Width: (\\d+).*Height: (\\d+).*IsViewable"_s,
        QRegularExpression::DotMatchesEverythingOption);
    // There is no match when the window has just been closed.
    const auto match = numbers.match(outputOf(u"xwininfo"_s, {u"-id"_s, id}));
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return DesktopWindow{id,
                         QRect(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt(),
                               match.captured(4).toInt())};
}

} // namespace

std::optional<DesktopWindow> DesktopWindow::titled(const QString &title)
{
    const auto found = find(title);
    if (found) {
        return found;
    }
    // A search misses a new window that the window manager is just putting into its frame.
    QThread::msleep(100);
    return find(title);
}

QString DesktopWindow::activeTitle()
{
    return outputOf(u"xdotool"_s, {u"getactivewindow"_s, u"getwindowname"_s});
}

} // namespace kelvo
