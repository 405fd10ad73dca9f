#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace kelvo {

/// What the program prints instead of starting.
struct CommandLineAnswer
{
    QString line;
    int exitCode; ///< 0 for standard output, 2 for standard error

    bool operator==(const CommandLineAnswer &) const = default;
};

/// Returns the answer to the arguments after the program's name: the version, the help, or an error for anything else.
/// Returns nullopt when there are no arguments but Qt's and the program should start.
std::optional<CommandLineAnswer> commandLineAnswer(const QStringList &arguments);

} // namespace kelvo
