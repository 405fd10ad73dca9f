#include "Hand.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QStringList>
#include <QTest>

#include <chrono>

namespace kelvo::Hand {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Longer than the double-click interval of Qt (400 ms).
constexpr auto doubleClickTime = 500ms;

void run(const QStringList &commands)
{
    if (QProcess::execute(u"xdotool"_s, commands) != 0) {
        qFatal("xdotool failed");
    }
}

QStringList move(const QPoint &point)
{
    return {u"mousemove"_s, QString::number(point.x()), QString::number(point.y())};
}

} // namespace

void moveTo(const QPoint &point)
{
    run(move(point));
}

void click(const QPoint &point)
{
    // Two quick clicks on one thing are a double click for the programs.
    static QDeadlineTimer doubleClickPossible;
    if (!doubleClickPossible.hasExpired()) {
        QTest::qWait(static_cast<int>(doubleClickPossible.remainingTime()));
    }
    run(move(point) + QStringList{u"click"_s, u"1"_s});
    doubleClickPossible.setRemainingTime(doubleClickTime);
}

void waitOutDoubleClick()
{
    QTest::qWait(static_cast<int>(doubleClickTime.count()));
}

void drag(const QPoint &from, const QPoint &to)
{
    constexpr int steps = 10;
    auto commands = move(from) + QStringList{u"mousedown"_s, u"1"_s};
    for (int step = 1; step <= steps; ++step) {
        commands += move(from + (to - from) * step / steps);
    }
    run(commands + QStringList{u"mouseup"_s, u"1"_s});
}

void press(const QString &key)
{
    run({u"key"_s, key});
}

void type(const QString &text)
{
    run({u"type"_s, u"--"_s, text});
}

} // namespace kelvo::Hand
