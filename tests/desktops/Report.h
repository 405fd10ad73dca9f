#pragma once

#include "Story.h"

#include <QStringList>

/// The results of the story on several desktops, as a table in a document.
namespace kelvo::Report {

/// Writes the observations to a file, one line each.
void save(const QString &file, const QList<Observation> &seen);
/// Whether something did not work on the desktop that is not a known limit of it.
bool hasFailed(const QString &desktop, const QList<Observation> &seen);

/// Writes the table of these files, each named like its desktop, between the two marks of the document.
void write(const QString &document, const QStringList &files);

} // namespace kelvo::Report
