#pragma once

#include <QString>

namespace kelvo {

/// Thrown when a situation cannot be set up, or when something other than its measured value is wrong.
struct Defect
{
    QString text;
};

} // namespace kelvo
