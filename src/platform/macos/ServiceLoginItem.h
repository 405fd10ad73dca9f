#pragma once

#include "platform/LoginItem.h"

namespace kelvo {

/// The application itself as a login item, registered with the system's service management.
class ServiceLoginItem : public LoginItem
{
public:
    bool isEnabled() const override;
    bool registerItem() override;
    bool unregisterItem() override;
};

} // namespace kelvo
