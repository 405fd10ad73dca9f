#pragma once

#include <QByteArray>
#include <QString>

/// The token with which a tray, a notification or a second start lets the next window take the focus. It is kept in the
/// environment, from where Qt takes it on Wayland.
namespace kelvo::ActivationToken {

inline constexpr auto variable = "XDG_ACTIVATION_TOKEN";
/// The variable with the same purpose on X11.
inline constexpr auto startupIdVariable = "DESKTOP_STARTUP_ID";

inline void keep(const QString &token)
{
    qputenv(variable, token.toUtf8());
}

/// Returns the token and forgets it; empty when there is none.
inline QByteArray take()
{
    for (const auto *name : {variable, startupIdVariable}) {
        const auto token = qgetenv(name);
        if (!token.isEmpty()) {
            qunsetenv(name);
            return token;
        }
    }
    return {};
}

} // namespace kelvo::ActivationToken
