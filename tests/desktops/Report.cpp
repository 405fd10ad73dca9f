#include "Report.h"

#include "support/ResultTable.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <algorithm>

namespace kelvo::Report {

using namespace Qt::StringLiterals;
using Verdict = Observation::Verdict;

namespace {

/// What cannot work, or does not work yet: see docs/desktops.md.
struct Limit
{
    QLatin1StringView desktop;
    QLatin1StringView step;
};
constexpr Limit limits[] = {
    {"gnome"_L1, "click elsewhere"_L1},
    {"gnome-plain"_L1, "ring"_L1},
    {"sway"_L1, "click elsewhere"_L1},
};

constexpr QLatin1StringView words[] = {"yes"_L1, "**no**"_L1, "not seen"_L1};

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void overwrite(const QString &name, const QByteArray &content)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(name));
    }
}

} // namespace

void save(const QString &file, const QList<Observation> &seen)
{
    QString lines;
    for (const auto &each : seen) {
        const auto note = each.note.isEmpty() ? QString() : u": "_s + each.note;
        lines += each.step + u'\t' + words[static_cast<int>(each.verdict)] + note + u'\n';
    }
    overwrite(file, lines.toUtf8());
}

bool hasFailed(const QString &desktop, const QList<Observation> &seen)
{
    return std::any_of(seen.begin(), seen.end(), [&desktop](const Observation &each) {
        const bool isLimit = std::any_of(std::begin(limits), std::end(limits), [&](const Limit &limit) {
            return limit.desktop == desktop && limit.step == each.step;
        });
        return each.verdict == Verdict::no && !isLimit;
    });
}

void write(const QString &document, const QStringList &files)
{
    QStringList steps;
    QStringList desktops;
    QMap<QString, QMap<QString, QString>> cells;
    for (const auto &file : files) {
        const auto desktop = QFileInfo(file).baseName();
        desktops.append(desktop);
        const auto lines = QString::fromUtf8(contentOf(file)).split(u'\n', Qt::SkipEmptyParts);
        for (const auto &line : lines) {
            const auto step = line.section(u'\t', 0, 0);
            if (!steps.contains(step)) {
                steps.append(step);
            }
            cells[step][desktop] = line.section(u'\t', 1);
        }
    }
    QString table = u"| | "_s + desktops.join(u" | "_s) + u" |\n|---|"_s + QString(u"---|"_s).repeated(desktops.size())
        + u'\n';
    for (const auto &step : steps) {
        table += u"| "_s + step;
        for (const auto &desktop : desktops) {
            table += u" | "_s + cells[step].value(desktop, u"not run"_s);
        }
        table += u" |\n"_s;
    }

    writeResultTable(document, "./dev desktops", table.toUtf8());
}

} // namespace kelvo::Report
