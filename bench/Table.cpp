#include "Table.h"

#include "support/ResultTable.h"

#include <QRegularExpression>
#include <QTextStream>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

constexpr int whatWidth = 46;
constexpr int numberWidth = 12;

QString number(double value, const QString &unit)
{
    return u"%1 %2"_s.arg(value, 0, 'f', value < 10 ? 2 : 1).arg(unit).trimmed();
}

/// The cells of a figure: what, Kelvo, bare, ratio, bare program, target. Cells without a content are empty.
QStringList cells(const Figure &figure)
{
    const bool compared = !figure.bareProgram.isEmpty();
    return {figure.what,
            number(figure.kelvo, figure.unit),
            compared ? number(figure.bare, figure.unit) : QString(),
            compared && figure.bare > 0 ? u"%1 x"_s.arg(figure.kelvo / figure.bare, 0, 'f', 2) : QString(),
            figure.bareProgram,
            figure.target};
}

} // namespace

void printTable(const QList<Figure> &figures)
{
    QTextStream out(stdout);
    const auto line = [&out](const QString &what, const QString &kelvo, const QString &bare, const QString &ratio,
                             const QString &rest) {
        out << what.leftJustified(whatWidth) << kelvo.rightJustified(numberWidth) << bare.rightJustified(numberWidth)
            << ratio.rightJustified(8) << "  " << rest << Qt::endl;
    };
    line(u"What"_s, u"Kelvo"_s, u"bare"_s, u"ratio"_s, u"target; compared with"_s);
    for (const auto &figure : figures) {
        const auto cell = cells(figure);
        line(cell[0], cell[1], cell[2], cell[3],
             QStringList{cell[5], cell[4]}.filter(QRegularExpression(u"."_s)).join("; "_L1));
    }
}

void writeTable(const QString &document, const QString &measurement, const QList<Figure> &figures)
{
    QString table = u"\n| What | Kelvo | Bare | Ratio | Compared with | Target |\n|---|---|---|---|---|---|\n"_s;
    for (const auto &figure : figures) {
        table += "| "_L1 + cells(figure).join(" | "_L1) + " |\n"_L1;
    }
    writeResultTable(document, "./dev bench " + measurement.toUtf8(), table.toUtf8() + '\n');
}

} // namespace kelvo
