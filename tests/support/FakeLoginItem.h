#pragma once

#include "platform/LoginItem.h"

namespace kelvo {

/// A login item whose state a test sees and sets, and which refuses on demand.
class FakeLoginItem : public LoginItem
{
public:
    bool isEnabled() const override
    {
        ++reads;
        return enabled;
    }

    bool registerItem() override
    {
        ++registrations;
        if (refuses)
            return false;
        enabled = true;
        return true;
    }

    bool unregisterItem() override
    {
        ++removals;
        if (refuses)
            return false;
        enabled = false;
        return true;
    }

    bool enabled = false; ///< what the system holds; the user may change it behind the application's back
    bool refuses = false; ///< the system turns every change down

    mutable int reads = 0; ///< calls of `isEnabled`
    int registrations = 0; ///< calls of `registerItem`, refused ones too
    int removals = 0;      ///< calls of `unregisterItem`, refused ones too
};

} // namespace kelvo
