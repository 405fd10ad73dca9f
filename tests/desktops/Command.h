#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kelvo {

/// Runs a program. Returns its standard output; its errors go to the terminal. A program that fails gives an empty
/// output, with a warning.
QByteArray outputOf(const QString &program, const QStringList &arguments);

/// Kills the processes of this desktop session with this name.
void killInSession(const QString &name);

} // namespace kelvo
