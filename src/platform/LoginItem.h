#pragma once

namespace kelvo {

/// The registration of this application as one that starts at login. The system owns the state.
class LoginItem
{
public:
    LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;
    virtual ~LoginItem() = default;

    /// Whether the application is registered now, read afresh from the system.
    virtual bool isEnabled() const = 0;
    /// Registers the application. False when the system refused; nothing has changed then.
    [[nodiscard]] virtual bool registerItem() = 0;
    /// Removes the registration; removing an absent one succeeds. False when the system refused.
    [[nodiscard]] virtual bool unregisterItem() = 0;
};

} // namespace kelvo
