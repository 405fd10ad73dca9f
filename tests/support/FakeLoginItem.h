#pragma once

#include "platform/LoginItem.h"

namespace kelvo {

/// A login item whose state a test reads and sets, and that can refuse changes.
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

    bool enabled = false; ///< the state in the system; the user can change it outside of the application
    bool refuses = false; ///< whether the system refuses every change

    mutable int reads = 0; ///< calls of `isEnabled`
    int registrations = 0; ///< calls of `registerItem`, including refused ones
    int removals = 0;      ///< calls of `unregisterItem`, including refused ones
};

} // namespace kelvo
