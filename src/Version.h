#pragma once

namespace kelvo {

/// The version of the program. The build system reads it from this file.
inline constexpr char version[] = "1.0.0";

} // namespace kelvo
