#pragma once

#include "platform/LoginItem.h"
#include "platform/linux/BusConnection.h"

#include <QVariantMap>

#include <memory>

namespace kelvo {

/// Start at login from inside a sandbox: asks the background portal of the desktop. The desktop may ask the user, so the
/// answer comes later.
class PortalLoginItem : public LoginItem
{
    Q_OBJECT

public:
    /// The portal cannot be asked for the state, so its last answer is kept in `record`.
    PortalLoginItem(std::shared_ptr<BusConnection> sessionBus, std::unique_ptr<LoginItem> record);

    /// Whether this process runs in a sandbox that hides the autostart directory of the session.
    static bool isNeeded();

    bool isEnabled() const override;
    bool registerItem() override;
    bool unregisterItem() override;

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap &results);

private:
    bool request(bool autostart);
    void end();

    std::shared_ptr<BusConnection> bus_;
    std::unique_ptr<LoginItem> record_;
    QString request_; ///< the object path of the pending request; empty when there is none
};

} // namespace kelvo
