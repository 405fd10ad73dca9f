#include "Table.h"

#include <QRegularExpression>
#include <QTextStream>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

constexpr int whatWidth = 46;
constexpr int numberWidth = 12;

QString number(double value, const QString &unit)
{
    return u"%1 %2"_s.arg(value, 0, 'f', value < 10 ? 2 : 1).arg(unit);
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
        const bool compared = !figure.bareProgram.isEmpty();
        const bool hasRatio = compared && figure.bare > 0;
        line(figure.what, number(figure.kelvo, figure.unit), compared ? number(figure.bare, figure.unit) : u"-"_s,
             hasRatio ? u"%1 x"_s.arg(figure.kelvo / figure.bare, 0, 'f', 2) : u"-"_s,
             QStringList{figure.target, figure.bareProgram}.filter(QRegularExpression(u"."_s)).join("; "_L1));
    }
}

} // namespace kelvo
