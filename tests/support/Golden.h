#pragma once

#include <QImage>
#include <QString>

namespace kelvo {

/// Compares pictures with golden pictures, which a person has reviewed. This class never writes a golden picture: the
/// target `accept_golden` moves the pictures that the last run rejected to the folder of the golden pictures.
class Golden
{
public:
    /// `pictures` is the folder of the golden pictures; rejected pictures are written to the folder `failures`.
    Golden(QString pictures, QString failures);

    /// Compares `actual` with the golden picture `<name>.png` (`<name>@2x.png` when its device pixel ratio is 2). They may
    /// differ by anti-aliasing only: the colour of each pixel must lie between the colours around it in the other picture.
    /// Returns an empty text when they match. Otherwise returns the reason, and writes the actual picture and, if the
    /// sizes are equal, the differences (`<name>.diff.png`, white on black) to `failures`.
    [[nodiscard]] QString difference(const QImage &actual, const QString &name) const;

private:
    QString reject(const QString &reason, const QImage &actual, const QString &name, const QImage &diff = {}) const;

    QString pictures_;
    QString failures_;
};

} // namespace kelvo
