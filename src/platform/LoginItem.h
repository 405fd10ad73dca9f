#pragma once

namespace kelvo {

/// The registration of this application to start at login. The system owns the state.
class LoginItem
{
public:
    LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;
    virtual ~LoginItem() = default;

    /// Whether the application is registered. Each call reads the state from the system.
    virtual bool isEnabled() const = 0;
    /// Registers the application. Returns false, and changes nothing, when the system refuses.
    [[nodiscard]] virtual bool registerItem() = 0;
    /// Removes the registration. Returns true when there is none, false when the system refuses.
    [[nodiscard]] virtual bool unregisterItem() = 0;
};

} // namespace kelvo
