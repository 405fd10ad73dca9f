#include "CommandLine.h"

#include "Version.h"

#include <algorithm>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

/// The options that Qt removes from the arguments, with one hyphen or two.
constexpr QLatin1StringView qtFlags[] = {"dograb"_L1, "nograb"_L1, "reverse"_L1, "widgetcount"_L1};
constexpr QLatin1StringView qtOptionsWithValue[] = {
    "display"_L1,       "geometry"_L1,
    "icon"_L1,          "name"_L1,
    "platform"_L1,      "platformpluginpath"_L1,
    "platformtheme"_L1, "plugin"_L1,
    "qmljsdebugger"_L1, "qwindowgeometry"_L1,
    "qwindowicon"_L1,   "qwindowtitle"_L1,
    "session"_L1,       "style"_L1,
    "stylesheet"_L1,    "title"_L1,
    "visual"_L1,
};
/// The options that also take their value after an equals sign.
constexpr QLatin1StringView qtAssignments[] = {"qmljsdebugger="_L1, "style="_L1, "stylesheet="_L1};

/// Whether all arguments are Qt's. Qt itself can tell only when it has a display.
bool areQts(const QStringList &arguments)
{
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const auto &argument = arguments.at(i);
        if (!argument.startsWith(u'-')) {
            return false;
        }
        const auto option = QStringView(argument).sliced(argument.startsWith("--"_L1) ? 2 : 1);
        const auto isOption = [option](QLatin1StringView name) { return option == name; };
        const auto begins = [option](QLatin1StringView name) { return option.startsWith(name); };
        if (std::ranges::any_of(qtOptionsWithValue, isOption) && i + 1 < arguments.size()) {
            ++i;
        } else if (std::ranges::none_of(qtFlags, isOption) && std::ranges::none_of(qtAssignments, begins)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<CommandLineAnswer> commandLineAnswer(const QStringList &arguments)
{
    if (areQts(arguments)) {
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
