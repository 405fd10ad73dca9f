#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

/// What can be found in pictures of the screen.
namespace kelvo::Picture {

/// The rectangle that contains all pixels whose lightness differs by more than `tolerance` (of 255). Empty when none does
/// or when the pictures have different sizes.
QRect change(const QImage &before, const QImage &after, int tolerance);

/// The largest rectangle of changed pixels after all others were left out: it drops rows and columns with fewer than
/// `least` changed pixels, such as a clock or a shadow.
QRect bulkOfChange(const QImage &before, const QImage &after, int tolerance, int least);

/// The dot of the ring: a round spot of this colour among the pixels that changed since `before`. Empty when there is
/// none.
QRect dot(const QImage &before, const QImage &after, const QColor &colour);

/// The mean lightness of the rectangle, from 0 to 255.
int lightness(const QImage &picture, const QRect &rectangle);

} // namespace kelvo::Picture
