#include "CommandLine.h"

#include "Version.h"

namespace kelvo {

using namespace Qt::StringLiterals;

std::optional<CommandLineAnswer> commandLineAnswer(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        return std::nullopt;
    }
    if (arguments == QStringList{u"--version"_s}) {
        return CommandLineAnswer{"Kelvo "_L1 + QLatin1StringView(version), 0};
    }
    const bool isHelp = arguments == QStringList{u"--help"_s};
    return CommandLineAnswer{u"Usage: kelvo [--help | --version] (watches AI tools from the tray; no other options)"_s,
                             isHelp ? 0 : 2};
}

} // namespace kelvo
