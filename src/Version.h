#pragma once

namespace kelvo {

/// The one place where the version stands; the build reads it from here.
inline constexpr char version[] = "1.0.0";

} // namespace kelvo
