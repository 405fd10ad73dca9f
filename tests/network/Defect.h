#pragma once

#include <QString>

namespace kelvo {

/// What is thrown where a situation cannot be brought about, or something goes wrong in it besides its figure.
struct Defect
{
    QString text;
};

} // namespace kelvo
