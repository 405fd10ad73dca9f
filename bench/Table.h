#pragma once

#include <QList>
#include <QString>

namespace kelvo {

/// A measurement of Kelvo and, if there is one, the same measurement of a bare program.
struct Figure
{
    QString what;
    QString unit;
    double kelvo;
    QString bareProgram; ///< the program that Kelvo is compared with; empty when there is none
    double bare = 0;
    QString target; ///< the target in words; empty when there is none
};

/// Prints the figures and their ratios as a table.
void printTable(const QList<Figure> &figures);
/// Replaces the table of this measurement in a document, in Markdown. Ends the program when that fails.
void writeTable(const QString &document, const QString &measurement, const QList<Figure> &figures);

} // namespace kelvo
