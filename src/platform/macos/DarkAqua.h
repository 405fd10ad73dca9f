#pragma once

#import <AppKit/AppKit.h>

namespace kelvo {

/// Whether the appearance matches Dark Aqua better than Aqua. False when it matches neither.
inline bool isDarkAqua(NSAppearance *appearance)
{
    NSArray<NSAppearanceName> *names = @[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ];
    NSAppearanceName match = [appearance bestMatchFromAppearancesWithNames:names];
    return [match isEqualToString:NSAppearanceNameDarkAqua];
}

} // namespace kelvo
