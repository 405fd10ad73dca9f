#pragma once

#include "platform/LoginItem.h"

#include <memory>

namespace kelvo {

/// Registers the application as a login item with SMAppService. When the system asks the user for approval first, the
/// registration fails for now and the system's settings open; `changed` is emitted when the user comes back.
class ServiceLoginItem : public LoginItem
{
    Q_OBJECT

public:
    ServiceLoginItem();
    ~ServiceLoginItem() override;

    bool isEnabled() const override;
    bool registerItem() override;
    bool unregisterItem() override;

private:
    class Observers;
    std::unique_ptr<Observers> observers_;
};

} // namespace kelvo
