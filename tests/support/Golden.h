#pragma once

#include <QImage>
#include <QString>

namespace kelvo {

/// How far a picture may be from its golden one: antialiasing and fonts differ a little between versions.
struct GoldenTolerance
{
    int channel = 16;         ///< largest difference of a colour channel, of 255, that still counts as equal
    double differing = 0.002; ///< share of the pixels that may be further apart than that
};

/// Pictures that were looked at and found right. Nothing here ever writes into their folder: a new look is accepted by
/// building the target `accept_golden`, which copies what the last failing run left.
class Golden
{
public:
    /// `pictures` holds the golden ones, `<name>.png`; what fails to match is left in `failures`.
    Golden(QString pictures, QString failures);

    /// Empty when `actual` looks like the golden picture `name` (`<name>@2x` when it has two pixels a point); otherwise
    /// what is wrong, with `<name>.png` (the actual picture) and, when the sizes agree, `<name>.diff.png` (differences,
    /// white on black) written to `failures`.
    [[nodiscard]] QString difference(const QImage &actual, const QString &name, GoldenTolerance tolerance = {}) const;

private:
    QString reject(const QString &reason, const QImage &actual, const QString &name, const QImage &diff = {}) const;

    QString pictures_;
    QString failures_;
};

} // namespace kelvo
