#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace kelvo {

/// One figure of Kelvo's, beside the same of a bare program where there is one.
struct Figure
{
    QString what;
    QString unit;
    double kelvo;
    QString bareProgram; ///< what it is compared with; empty where with nothing
    double bare = 0;
    QString target; ///< as words; empty where there is none
};

/// Prints the figures as a table with their ratios.
void printTable(const QList<Figure> &figures);

} // namespace kelvo
