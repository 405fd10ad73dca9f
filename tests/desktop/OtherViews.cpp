#include "OtherViews.h"

#include <cstdio>

namespace kelvo {

namespace {

[[maybe_unused]] const int told = std::fputs("The library of another version is loaded.\n", stderr);

} // namespace

std::unique_ptr<Views> OtherViews::make(StatusStore &, SettingsStore &, NotifierStore &, Platform &)
{
    return nullptr;
}

} // namespace kelvo
