#pragma once

#include "platform/LoginItem.h"

namespace kelvo {

/// Registers the application as a login item with SMAppService.
class ServiceLoginItem : public LoginItem
{
public:
    bool isEnabled() const override;
    bool registerItem() override;
    bool unregisterItem() override;
};

} // namespace kelvo
